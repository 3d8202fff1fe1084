// The OBJECTS section: dictionaries, layouts, plot settings, the clip
// boundaries of block references, draw orders, the image definitions and the
// wipeout and raster variables. Only what the layouts, the named page setups,
// the clipped references, the draw orders, the images and the frames need is
// kept; they are linked up in FinishDrawing.

#include <string>

#include "embedded/dxf/clips_and_order.h"
#include "embedded/dxf/plot_settings_codes.h"
#include "embedded/dxf/reader.h"
#include "embedded/dxf/sections.h"

namespace sheafwork::embedded {
namespace {

std::string HandleOf(const Record& r) {
  const Tag* h = r.Find(5);
  return h != nullptr ? HandleKey(h->value) : std::string();
}

void ReadDictionary(Context& ctx, const Record& r) {
  const std::string handle = HandleOf(r);
  if (handle.empty()) return;
  if (ctx.rootDictionary.empty()) ctx.rootDictionary = handle;
  DictionaryObject dict;
  std::string key;
  bool hasKey = false;
  for (const DataTag& d : r.data) {
    const Tag& t = d.tag;
    if (t.code == 3) {
      key = ctx.Text(t);
      hasKey = true;
    } else if ((t.code == 350 || t.code == 360) && hasKey) {
      dict.entries.emplace_back(std::move(key), HandleKey(t.value));
      hasKey = false;
    }
  }
  ctx.dictionaries[handle] = std::move(dict);
}

// LAYOUT: the plot settings, then the layout's own part. Codes 1, 70, 76 and
// 330 mean different things in the two.
void ReadLayout(Context& ctx, const Record& r) {
  LayoutObject object;
  object.handle = HandleOf(r);
  Layout& layout = object.layout;
  layout.handle = object.handle;
  for (const DataTag& d : r.data) {
    const Tag& t = d.tag;
    const std::string_view sub = r.SubclassOf(d);
    if (sub == "AcDbPlotSettings") {
      ApplyPlotSettingsTag(ctx, t, layout.settings);
      continue;
    }
    if (sub != "AcDbLayout") continue;
    if (SetPoint(ctx, t, 10, layout.limMin) || SetPoint(ctx, t, 11, layout.limMax) ||
        SetPoint(ctx, t, 12, layout.insBase)) {
      continue;
    }
    switch (t.code) {
      case 1:
        layout.name = ctx.Text(t);
        break;
      case 71:
        layout.tabOrder = ctx.Short(t);
        break;
      case 330:
        object.blockRecord = HandleKey(t.value);
        break;
      default:
        break;
    }
  }
  if (!object.handle.empty()) ctx.layoutObjects.push_back(std::move(object));
}

void ReadPlotSettings(Context& ctx, const Record& r) {
  const std::string handle = HandleOf(r);
  if (handle.empty()) return;
  PlotSettings settings;
  for (const DataTag& d : r.data) {
    if (r.SubclassOf(d) == "AcDbPlotSettings") ApplyPlotSettingsTag(ctx, d.tag, settings);
  }
  ctx.plotSettings[handle] = std::move(settings);
}

// IMAGEDEF: the file an image shows.
void ReadImageDefinition(Context& ctx, const Record& r) {
  const std::string handle = HandleOf(r);
  if (handle.empty()) return;
  ImageDefinition definition;
  for (const DataTag& d : r.data) {
    const std::string_view sub = r.SubclassOf(d);
    if (d.tag.code == 1 && (sub.empty() || sub == "AcDbRasterImageDef")) {
      definition.storedPath = ctx.Text(d.tag);
    }
  }
  ctx.drawing.images[handle] = std::move(definition);
}

}  // namespace

void ReadObjectsSection(Context& ctx, const Tag& start) {
  Record r;
  // A section that lost its ENDSEC ends where the next one starts.
  while (!ctx.stream.AtRecord("SECTION") && ReadRecord(ctx.stream, r)) {
    if (r.type == "ENDSEC") return;
    if (r.type == "DICTIONARY" || r.type == "ACDBDICTIONARYWDFLT") {
      ReadDictionary(ctx, r);
    } else if (r.type == "LAYOUT") {
      ReadLayout(ctx, r);
    } else if (r.type == "PLOTSETTINGS") {
      ReadPlotSettings(ctx, r);
    } else if (r.type == "SPATIAL_FILTER") {
      ReadSpatialFilter(ctx, r);
    } else if (r.type == "XRECORD") {
      ReadClipHoleRecord(ctx, r);
    } else if (r.type == "SORTENTSTABLE") {
      ReadSortentsTable(ctx, r);
    } else if (r.type == "WIPEOUTVARIABLES") {
      if (const Tag* frame = r.Find(70)) ctx.drawing.header.wipeoutFrame = ctx.Short(*frame);
    } else if (r.type == "IMAGEDEF") {
      ReadImageDefinition(ctx, r);
    } else if (r.type == "RASTERVARIABLES") {
      if (const Tag* frame = r.Find(70)) ctx.drawing.header.imageFrame = ctx.Short(*frame);
    }
  }
  if (ctx.stream.AtRecord("SECTION")) return;
  throw DxfError(dxfmsg::SectionWithoutEnd(ctx.stream.PlaceOf(start), "OBJECTS"));
}

}  // namespace sheafwork::embedded
