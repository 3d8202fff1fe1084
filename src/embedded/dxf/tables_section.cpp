// The TABLES section: layers, linetypes, text styles, views, the active
// viewport and the block records.

#include <cstdlib>
#include <string>

#include "embedded/dxf/reader.h"
#include "embedded/dxf/sections.h"

namespace sheafwork::embedded {
namespace {

void ReadLayer(Context& ctx, const Record& r) {
  Layer layer;
  for (const DataTag& d : r.data) {
    const Tag& t = d.tag;
    switch (t.code) {
      case 2:
        layer.name = ctx.Text(t);
        break;
      case 5:
        layer.handle = std::string(TrimSpaces(t.value));
        break;
      case 6:
        layer.linetype = ctx.Text(t);
        break;
      case 62: {
        const int color = ctx.Short(t);
        layer.on = color >= 0;
        const int index = std::abs(color);
        layer.color = static_cast<std::int16_t>(index >= 1 && index <= 255 ? index : 7);
        break;
      }
      case 70: {
        const int flags = ctx.Short(t);
        layer.frozen = (flags & 1) != 0;
        layer.locked = (flags & 4) != 0;
        break;
      }
      case 290:
        layer.plottable = ctx.Flag(t);
        break;
      case 370: {
        const std::int16_t weight = ctx.Short(t);
        // By layer and by block mean nothing on a layer.
        layer.lineweight = weight < 0 ? kLineweightDefault : weight;
        break;
      }
      case 420:
        layer.trueColor = static_cast<std::uint32_t>(ctx.Long(t)) & 0xFFFFFF;
        break;
      default:
        break;
    }
  }
  if (layer.name.empty()) return;
  if (!layer.handle.empty()) ctx.layerNames[HandleKey(layer.handle)] = layer.name;
  if (!ctx.layerKeys.insert(NameKey(layer.name)).second) return;
  ctx.drawing.layers.push_back(std::move(layer));
}

void ReadLinetype(Context& ctx, const Record& r) {
  Linetype lt;
  for (const DataTag& d : r.data) {
    const Tag& t = d.tag;
    if (t.code == 2) lt.name = ctx.Text(t);
    if (t.code == 3) lt.description = ctx.Text(t);
    if (t.code == 40) lt.patternLength = ctx.Real(t);
    if (t.code == 49) lt.dashes.push_back(ctx.Real(t));
  }
  if (!lt.name.empty()) ctx.drawing.linetypes.push_back(std::move(lt));
}

void ReadTextStyle(Context& ctx, const Record& r) {
  TextStyle style;
  for (const DataTag& d : r.data) {
    const Tag& t = d.tag;
    switch (t.code) {
      case 2:
        style.name = ctx.Text(t);
        break;
      case 3:
        style.fontFile = ctx.Text(t);
        break;
      case 4:
        style.bigFontFile = ctx.Text(t);
        break;
      case 40:
        style.fixedHeight = ctx.Real(t);
        break;
      case 41:
        style.widthFactor = ctx.Real(t);
        break;
      case 50:
        style.oblique = ctx.Real(t);
        break;
      case 70:
        style.isShapeFile = (ctx.Short(t) & 1) != 0;
        break;
      case 71:
        style.generation = ctx.Short(t);
        break;
      default:
        break;
    }
  }
  for (const Tag& t : r.XData("ACAD")) {
    if (t.code == 1000) {
      style.trueTypeFamily = ctx.Text(t);
      break;
    }
  }
  if (const Tag* handle = r.Find(5); handle != nullptr && !style.name.empty()) {
    ctx.textStyleNames[HandleKey(handle->value)] = style.name;
  }
  // A shape-file record has no name; it is kept so that the renderer can
  // find the shapes a linetype uses.
  ctx.drawing.textStyles.push_back(std::move(style));
}

void ReadView(Context& ctx, const Record& r) {
  View view;
  for (const DataTag& d : r.data) {
    const Tag& t = d.tag;
    if (SetPoint(ctx, t, 10, view.center) || SetPoint(ctx, t, 11, view.direction) ||
        SetPoint(ctx, t, 12, view.target)) {
      continue;
    }
    switch (t.code) {
      case 2:
        view.name = ctx.Text(t);
        break;
      case 70:
        view.paperSpace = (ctx.Short(t) & 1) != 0;
        break;
      case 40:
        view.height = ctx.Real(t);
        break;
      case 41:
        view.width = ctx.Real(t);
        break;
      case 50:
        view.twist = ctx.Real(t);
        break;
      default:
        break;
    }
  }
  if (!view.name.empty()) ctx.drawing.views.push_back(std::move(view));
}

void ReadViewportRecord(Context& ctx, const Record& r) {
  if (ctx.drawing.activeView) return;  // the first *ACTIVE is the current one
  const Tag* name = r.Find(2);
  if (name == nullptr || NameKey(TrimSpaces(name->value)) != "*ACTIVE") return;
  ActiveView view;
  for (const DataTag& d : r.data) {
    const Tag& t = d.tag;
    if (SetPoint(ctx, t, 12, view.center) || SetPoint(ctx, t, 17, view.target)) continue;
    switch (t.code) {
      case 40:
        view.height = ctx.Real(t);
        break;
      case 41:
        view.aspect = ctx.Real(t);
        break;
      case 51:
        view.twist = ctx.Real(t);
        break;
      default:
        break;
    }
  }
  ctx.drawing.activeView = view;
}

void ReadBlockRecord(Context& ctx, const Record& r) {
  std::string handle;
  std::string name;
  std::string layout;
  for (const DataTag& d : r.data) {
    if (d.tag.code == 5) handle = HandleKey(d.tag.value);
    if (d.tag.code == 2) name = ctx.Text(d.tag);
    if (d.tag.code == 340) layout = HandleKey(d.tag.value);
  }
  if (handle.empty() || name.empty()) return;
  ctx.blockRecordNames[handle] = name;
  if (!layout.empty() && layout != "0") ctx.blockRecordLayouts[handle] = layout;
}

void ReadRecordOf(Context& ctx, const Record& r) {
  if (r.type == "LAYER") return ReadLayer(ctx, r);
  if (r.type == "LTYPE") return ReadLinetype(ctx, r);
  if (r.type == "STYLE") return ReadTextStyle(ctx, r);
  if (r.type == "VIEW") return ReadView(ctx, r);
  if (r.type == "VPORT") return ReadViewportRecord(ctx, r);
  if (r.type == "BLOCK_RECORD") return ReadBlockRecord(ctx, r);
}

}  // namespace

void ReadTablesSection(Context& ctx, const Tag& start) {
  Record r;
  std::string table;
  Tag tableStart;
  bool inTable = false;
  // A section that lost its ENDSEC ends where the next one starts.
  while (!ctx.stream.AtRecord("SECTION") && ReadRecord(ctx.stream, r)) {
    if (r.type == "ENDSEC") return;
    if (r.type == "TABLE") {
      const Tag* name = r.Find(2);
      table = name != nullptr ? std::string(TrimSpaces(name->value)) : std::string();
      tableStart = r.start;
      inTable = true;
    } else if (r.type == "ENDTAB") {
      inTable = false;
    } else {
      // A record is read by its own type, also where its table's header was
      // lost in a damaged file.
      ReadRecordOf(ctx, r);
    }
  }
  if (ctx.stream.AtRecord("SECTION")) return;
  if (inTable) throw DxfError(dxfmsg::TableWithoutEnd(ctx.stream.PlaceOf(tableStart), table));
  throw DxfError(dxfmsg::SectionWithoutEnd(ctx.stream.PlaceOf(start), "TABLES"));
}

}  // namespace sheafwork::embedded
