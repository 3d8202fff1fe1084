// The HEADER section: the variables the host uses.

#include <cmath>
#include <string>

#include "embedded/dxf/reader.h"
#include "embedded/dxf/sections.h"

namespace sheafwork::embedded {
namespace {

void SetCoordinate(Vec3& p, int code, double v) {
  switch (code % 10 == 0 ? code / 10 : 0) {
    case 1:
      p.x = v;
      break;
    case 2:
      p.y = v;
      break;
    case 3:
      p.z = v;
      break;
    default:
      break;
  }
}

void SetCoordinate(Vec2& p, int code, double v) {
  if (code == 10) p.x = v;
  if (code == 20) p.y = v;
}

bool IsPointCode(int code) { return code == 10 || code == 20 || code == 30; }

void Apply(Context& ctx, std::string_view var, const Tag& tag) {
  Header& h = ctx.drawing.header;
  const int code = tag.code;
  if (var == "$ACADVER" && code == 1) {
    h.acadVer = std::string(TrimSpaces(tag.value));
    ctx.text.SetVersion(h.acadVer);
  } else if (var == "$DWGCODEPAGE" && code == 3) {
    h.codePage = std::string(TrimSpaces(tag.value));
  } else if (var == "$INSBASE" && IsPointCode(code)) {
    SetCoordinate(h.insBase, code, ctx.Real(tag));
  } else if (var == "$EXTMIN" && IsPointCode(code)) {
    SetCoordinate(ctx.extMin, code, ctx.Real(tag));
  } else if (var == "$EXTMAX" && IsPointCode(code)) {
    SetCoordinate(ctx.extMax, code, ctx.Real(tag));
  } else if (var == "$LIMMIN" && IsPointCode(code)) {
    SetCoordinate(h.limMin, code, ctx.Real(tag));
  } else if (var == "$LIMMAX" && IsPointCode(code)) {
    SetCoordinate(h.limMax, code, ctx.Real(tag));
  } else if (var == "$PLIMMIN" && IsPointCode(code)) {
    SetCoordinate(h.pLimMin, code, ctx.Real(tag));
  } else if (var == "$PLIMMAX" && IsPointCode(code)) {
    SetCoordinate(h.pLimMax, code, ctx.Real(tag));
  } else if (var == "$INSUNITS" && code == 70) {
    h.insUnits = ctx.Short(tag);
  } else if (var == "$MEASUREMENT" && code == 70) {
    h.measurement = ctx.Short(tag);
  } else if (var == "$LTSCALE" && code == 40) {
    h.ltScale = ctx.Real(tag);
  } else if (var == "$PSLTSCALE" && code == 70) {
    h.psLtScale = ctx.Flag(tag);
  } else if (var == "$PDMODE" && code == 70) {
    h.pdMode = ctx.Short(tag);
  } else if (var == "$PDSIZE" && code == 40) {
    h.pdSize = ctx.Real(tag);
  } else if (var == "$FILLMODE" && code == 70) {
    h.fillMode = ctx.Flag(tag);
  } else if (var == "$TILEMODE" && code == 70) {
    h.tileMode = ctx.Flag(tag);
  } else if (var == "$STYLESHEET" && code == 1) {
    h.styleSheet = ctx.Text(tag);
  }
}

// Extents the writer left unset are ±1e20 (Z may be left out).
std::optional<Vec3> SetExtent(const Vec3& p) {
  constexpr double kUnset = 1e19;
  if (std::fabs(p.x) >= kUnset || std::fabs(p.y) >= kUnset) {
    return std::nullopt;
  }
  return p;
}

}  // namespace

void ReadHeaderSection(Context& ctx, const Tag& start) {
  std::string var;
  Tag tag;
  while (ctx.stream.Next(tag)) {
    if (tag.code == 0) {
      if (TrimSpaces(tag.value) != "ENDSEC") break;
      Header& h = ctx.drawing.header;
      h.extMin = SetExtent(ctx.extMin);
      h.extMax = SetExtent(ctx.extMax);
      if (h.extMin && h.extMax && (h.extMin->x > h.extMax->x || h.extMin->y > h.extMax->y)) {
        h.extMin.reset();
        h.extMax.reset();
      }
      return;
    }
    if (tag.code == 9) {
      var = TrimSpaces(tag.value);
      continue;
    }
    Apply(ctx, var, tag);
  }
  throw DxfError(dxfmsg::SectionWithoutEnd(ctx.stream.PlaceOf(start), "HEADER"));
}

}  // namespace sheafwork::embedded
