// MTEXT: placement, contents, background and columns. Columns come in
// three forms: codes 75-79, 48-50 of the entity itself, the embedded object
// after its 101 marker (71-74, 44-46), and for releases before 2018 the
// ACAD_MTEXT_COLUMN_INFO group of the "ACAD" extended data (the same codes
// as the entity's, each given as a 1070 followed by its value).

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <string>

#include "embedded/dxf/entity_decoders.h"
#include "text/strings.h"

namespace sheafwork::embedded {
namespace {

constexpr std::size_t kMaxColumns = 1000;

// Applies one column value given by its entity code; false for other codes.
bool ApplyColumnCode(int code, double value, MTextColumns& c) {
  switch (code) {
    case 75:
      c.type = static_cast<std::int16_t>(std::clamp(value, 0.0, 2.0));
      return true;
    case 76:
      c.count = static_cast<std::int16_t>(std::clamp(value, 0.0, static_cast<double>(kMaxColumns)));
      return true;
    case 78:
      c.reversed = value != 0;
      return true;
    case 79:
      c.autoHeight = value != 0;
      return true;
    case 48:
      c.width = value;
      return true;
    case 49:
      c.gutter = value;
      return true;
    default:
      return false;
  }
}

void AddColumnHeight(double h, MTextColumns& c) {
  if (c.heights.size() < kMaxColumns) c.heights.push_back(h);
}

// The embedded object of release 2018 files: the column layout in codes of
// its own.
void ReadEmbeddedColumns(const Context& ctx, std::span<const Tag> tags, MTextColumns& c) {
  for (const Tag& t : tags) {
    switch (t.code) {
      case 41:
        c.height = ctx.Real(t);
        break;
      case 71:
        ApplyColumnCode(75, ctx.Short(t), c);
        break;
      case 72:
        ApplyColumnCode(76, ctx.Short(t), c);
        break;
      case 44:
        c.width = ctx.Real(t);
        break;
      case 45:
        c.gutter = ctx.Real(t);
        break;
      case 73:
        c.autoHeight = ctx.Short(t) != 0;
        break;
      case 74:
        c.reversed = ctx.Short(t) != 0;
        break;
      case 46:
        AddColumnHeight(ctx.Real(t), c);
        break;
      default:
        break;
    }
  }
}

// A number of the extended data; another program's data that is not one
// changes nothing rather than failing the drawing.
double Number(const Tag& t) { return t.Double().value_or(0); }

// The column groups of the "ACAD" extended data.
void ReadXDataColumns(std::span<const Tag> tags, MTextColumns& c) {
  enum class Group { None, Info, DefinedHeight } group = Group::None;
  for (std::size_t i = 0; i < tags.size(); ++i) {
    const Tag& t = tags[i];
    if (t.code == 1000) {
      const std::string_view v = TrimSpaces(t.value);
      group = v == "ACAD_MTEXT_COLUMN_INFO_BEGIN"      ? Group::Info
              : v == "ACAD_MTEXT_DEFINED_HEIGHT_BEGIN" ? Group::DefinedHeight
                                                       : Group::None;
      continue;
    }
    if (group == Group::None || t.code != 1070 || i + 1 >= tags.size()) continue;
    const auto code = static_cast<int>(Number(t));
    const Tag& value = tags[++i];
    if (group == Group::DefinedHeight) {
      if (code == 46) c.height = Number(value);
      continue;
    }
    if (code == 50) {  // a count, then that many heights
      const double count = Number(value);
      for (double k = 0; k < count && i + 1 < tags.size() && tags[i + 1].code == 1040; ++k) {
        AddColumnHeight(Number(tags[++i]), c);
      }
      continue;
    }
    ApplyColumnCode(code, Number(value), c);
  }
}

}  // namespace

MText DecodeMText(Context& ctx, const Record& r, std::span<const DataTag* const> own) {
  MText g;
  MText::Extras extras;
  MTextColumns& columns = extras.columns;
  MTextBackground& background = extras.background;
  std::string raw;  // chunks (3) in order, then the last piece (1)
  std::string_view last;
  bool columnCodes = false;  // 50 is the rotation until a column type came
  bool heightCount = false;  // the first 50 after it counts the heights
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    if (SetPoint(ctx, t, 10, g.insert) || SetPoint(ctx, t, 210, g.extrusion)) continue;
    if (SetPoint(ctx, t, 11, g.xAxis)) {
      g.hasXAxis = true;
      continue;
    }
    if (columnCodes && ApplyColumnCode(t.code, ctx.Real(t), columns)) continue;
    switch (t.code) {
      case 1:
        last = t.value;
        break;
      case 3:
        raw.append(t.value);
        break;
      case 7:
        g.style = ctx.Text(t);
        break;
      case 40:
        g.height = ctx.Real(t);
        break;
      case 41:
        g.width = ctx.Real(t);
        break;
      case 44:
        g.lineSpacing = ctx.Real(t);
        break;
      case 45:
        background.scale = ctx.Real(t);
        break;
      case 46:
        columns.height = ctx.Real(t);
        break;
      case 50:
        if (!columnCodes) {
          g.rotation = ctx.Real(t);
        } else if (!heightCount) {
          heightCount = true;
        } else {
          AddColumnHeight(ctx.Real(t), columns);
        }
        break;
      case 63:
        background.color = ctx.Short(t);
        break;
      case 71:
        g.attachment = ctx.Short(t);
        break;
      case 75:
        columnCodes = true;
        ApplyColumnCode(75, ctx.Real(t), columns);
        break;
      case 90:
        background.flags = ctx.Long(t);
        break;
      case 421:
        background.trueColor = static_cast<std::uint32_t>(ctx.Long(t)) & 0xFFFFFF;
        break;
      case 441:
        background.transparency = ctx.Long(t);
        break;
      default:
        break;
    }
  }
  raw.append(last);
  g.text = ctx.text.Decode(raw);
  if (!r.embedded.empty()) ReadEmbeddedColumns(ctx, r.embedded, columns);
  if (columns.type == 0) ReadXDataColumns(r.XData("ACAD"), columns);
  if (columns.type != 0 || background.flags != 0) {
    g.extras = std::make_shared<const MText::Extras>(std::move(extras));
  }
  // Keep the direction and the angle in step where the object's plane is
  // the world's; elsewhere the direction (a world vector) is what counts.
  if (g.hasXAxis && g.xAxis.x == 0 && g.xAxis.y == 0 && g.xAxis.z == 0) g.hasXAxis = false;
  constexpr double kDegrees = 180 / std::numbers::pi;
  const bool flat = g.extrusion.x == 0 && g.extrusion.y == 0 && g.extrusion.z > 0;
  if (g.hasXAxis && flat && (g.xAxis.x != 0 || g.xAxis.y != 0)) {
    g.rotation = std::atan2(g.xAxis.y, g.xAxis.x) * kDegrees;
  } else if (!g.hasXAxis) {
    g.xAxis = {std::cos(g.rotation / kDegrees), std::sin(g.rotation / kDegrees), 0};
  }
  return g;
}

}  // namespace sheafwork::embedded
