#include "embedded/dxf/multileader_decoder.h"

#include <cmath>
#include <numbers>
#include <string_view>

namespace sheafwork::embedded {
namespace {

// The nesting of the context data: "300 CONTEXT_DATA{" ... "301 }", within
// it "302 LEADER{" ... "303 }", within that "304 LEADER_LINE{" ... "305 }".
// The same codes mean different things at each level.
enum class Level { Entity, Context, Leader, LeaderLine };

// One leader while it is read: its lines, its landing point and dogleg.
struct LeaderRead {
  std::vector<std::vector<Vec3>> lines;
  bool hasLast = false;
  Vec3 last;
  bool hasDogleg = false;
  Vec3 dogleg;
  double doglegLength = 0;
};

Vec3 Scaled(const Vec3& v, double length) {
  const double n = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
  if (n <= 0) return {};
  return {v.x / n * length, v.y / n * length, v.z / n * length};
}

}  // namespace

MultiLeader DecodeMultiLeader(Context& ctx, std::span<const DataTag* const> own) {
  MultiLeader g;
  Level level = Level::Entity;
  std::vector<LeaderRead> leaders;
  MText text;
  bool hasText = false;
  bool hasBlock = false;
  bool textStyleGiven = false;
  std::string blockHandle;
  int leaderType = 1;  // 0 invisible, 1 straight, 2 spline
  bool doglegOn = true;
  double contextArrowSize = -1;
  double entityArrowSize = -1;
  std::string entityTextStyle;
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    if (t.code == 300) {
      level = Level::Context;
      continue;
    }
    switch (level) {
      case Level::Entity:
        if (t.code == 170) leaderType = ctx.Short(t);
        if (t.code == 291) doglegOn = ctx.Flag(t);
        if (t.code == 42) entityArrowSize = ctx.Real(t);
        if (t.code == 343) {
          const auto it = ctx.textStyleNames.find(HandleKey(t.value));
          if (it != ctx.textStyleNames.end()) entityTextStyle = it->second;
        }
        break;
      case Level::Context:
        switch (t.code) {
          case 301:
            level = Level::Entity;
            break;
          case 302:
            leaders.emplace_back();
            level = Level::Leader;
            break;
          case 41:
            text.height = ctx.Real(t);
            break;
          case 140:
            contextArrowSize = ctx.Real(t);
            break;
          case 290:
            hasText = ctx.Flag(t);
            break;
          case 296:
            hasBlock = ctx.Flag(t);
            break;
          case 304:
            text.text = ctx.text.Decode(t.value);
            break;
          case 340: {
            const auto it = ctx.textStyleNames.find(HandleKey(t.value));
            if (it != ctx.textStyleNames.end()) {
              text.style = it->second;
              textStyleGiven = true;
            }
            break;
          }
          case 43:
            text.width = ctx.Real(t);
            break;
          case 45:
            text.lineSpacing = ctx.Real(t);
            break;
          case 171:
            text.attachment = ctx.Short(t);
            break;
          case 341:
            blockHandle = HandleKey(t.value);
            break;
          case 46:
            g.blockRotation = ctx.Real(t) * 180 / std::numbers::pi;
            break;
          default:
            SetPoint(ctx, t, 11, text.extrusion) || SetPoint(ctx, t, 12, text.insert) ||
                SetPoint(ctx, t, 13, text.xAxis) || SetPoint(ctx, t, 15, g.blockInsert) ||
                SetPoint(ctx, t, 16, g.blockScale);
            break;
        }
        break;
      case Level::Leader: {
        LeaderRead& leader = leaders.back();
        switch (t.code) {
          case 303:
            level = Level::Context;
            break;
          case 304:
            leader.lines.emplace_back();
            level = Level::LeaderLine;
            break;
          case 290:
            leader.hasLast = ctx.Flag(t);
            break;
          case 291:
            leader.hasDogleg = ctx.Flag(t);
            break;
          case 40:
            leader.doglegLength = ctx.Real(t);
            break;
          default:
            SetPoint(ctx, t, 10, leader.last) || SetPoint(ctx, t, 11, leader.dogleg);
            break;
        }
        break;
      }
      case Level::LeaderLine: {
        std::vector<Vec3>& line = leaders.back().lines.back();
        if (t.code == 305) {
          level = Level::Leader;
        } else if (t.code == 10) {
          line.emplace_back().x = ctx.Real(t);
        } else if ((t.code == 20 || t.code == 30) && !line.empty()) {
          SetPoint(ctx, t, 10, line.back());
        }
        break;
      }
    }
  }
  // Each line runs from its arrow to the leader's landing point, then
  // along the dogleg. Spline leaders are drawn through the same points.
  if (leaderType != 0) {
    for (const LeaderRead& leader : leaders) {
      for (const std::vector<Vec3>& line : leader.lines) {
        g.points.insert(g.points.end(), line.begin(), line.end());
        if (leader.hasLast) {
          g.points.push_back(leader.last);
          if (doglegOn && leaderType == 1 && leader.hasDogleg && leader.doglegLength > 0) {
            const Vec3 v = Scaled(leader.dogleg, leader.doglegLength);
            g.points.push_back({leader.last.x + v.x, leader.last.y + v.y, leader.last.z + v.z});
          }
        }
        g.lineEnds.push_back(static_cast<std::uint32_t>(g.points.size()));
      }
    }
  }
  g.arrowSize = contextArrowSize >= 0 ? contextArrowSize : std::max(entityArrowSize, 0.0);
  g.arrowhead = g.arrowSize > 0;
  if (hasText && !text.text.empty()) {
    if (!textStyleGiven && !entityTextStyle.empty()) text.style = entityTextStyle;
    const double a = std::atan2(text.xAxis.y, text.xAxis.x);
    text.rotation = a * 180 / std::numbers::pi;
    g.text.push_back(std::move(text));
  }
  if (hasBlock && !blockHandle.empty()) {
    const auto it = ctx.blockRecordNames.find(blockHandle);
    if (it != ctx.blockRecordNames.end()) g.block = it->second;
  }
  return g;
}

}  // namespace sheafwork::embedded
