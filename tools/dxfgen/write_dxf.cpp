// Writes a Document as an ASCII DXF file. Release 2000 and 2004 files carry
// handles, owners and subclass markers, the block records and layouts that
// tie each paper space to its layout, and the named page setups; release 12
// files are the plain tag lists of that release.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "dxfgen/document.h"
#include "dxfgen/tag_writer.h"

namespace sheafwork::dxfgen {

namespace {

using Handle = std::uint64_t;

struct Extents {
  P2 min{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
  P2 max{-std::numeric_limits<double>::max(), -std::numeric_limits<double>::max()};
  bool empty = true;

  void Add(P2 p) {
    min = {std::min(min.x, p.x), std::min(min.y, p.y)};
    max = {std::max(max.x, p.x), std::max(max.y, p.y)};
    empty = false;
  }
};

Extents ModelExtents(const Document& doc) {
  Extents e;
  for (const auto& entity : doc.model) {
    for (const auto& p : entity.extentPoints) e.Add(p);
  }
  if (e.empty) e.Add({0, 0});
  return e;
}

// The sheet of a layout in paper units, relative to the plot origin: the
// corners of the paper as the plot is turned.
struct Sheet {
  P2 min, max;
};

Sheet LayoutSheet(const PlotSetup& s) {
  const bool turned = s.rotation == 1 || s.rotation == 3;
  const double w = turned ? s.paperHeight : s.paperWidth;
  const double h = turned ? s.paperWidth : s.paperHeight;
  const P2 min{-(s.marginLeft + s.origin.x), -(s.marginBottom + s.origin.y)};
  return {min, {min.x + w, min.y + h}};
}

// The default tables every drawing has, merged with the document's own.
std::vector<LayerDef> AllLayers(const Document& doc) {
  std::vector<LayerDef> layers;
  auto has = [&](const std::string& name) {
    return std::any_of(doc.layers.begin(), doc.layers.end(),
                       [&](const LayerDef& l) { return l.name == name; });
  };
  if (!has("0")) layers.push_back({"0", 7, "Continuous", -3, true});
  layers.insert(layers.end(), doc.layers.begin(), doc.layers.end());
  if (!has("Defpoints")) layers.push_back({"Defpoints", 7, "Continuous", -3, false});
  return layers;
}

std::vector<StyleDef> AllStyles(const Document& doc) {
  std::vector<StyleDef> styles;
  const bool hasStandard = std::any_of(doc.styles.begin(), doc.styles.end(),
                                       [](const StyleDef& s) { return s.name == "Standard"; });
  if (!hasStandard) styles.push_back({"Standard", "txt", 1});
  styles.insert(styles.end(), doc.styles.begin(), doc.styles.end());
  return styles;
}

std::vector<LinetypeDef> AllLinetypes(const Document& doc, bool withByNames) {
  std::vector<LinetypeDef> linetypes;
  if (withByNames) {
    linetypes.push_back({"ByBlock", "", {}});
    linetypes.push_back({"ByLayer", "", {}});
  }
  linetypes.push_back({"Continuous", "Solid line", {}});
  linetypes.insert(linetypes.end(), doc.linetypes.begin(), doc.linetypes.end());
  return linetypes;
}

void WriteHeaderPoint(TagWriter& w, const char* name, P2 p, bool is3d) {
  w.Text(9, name);
  if (is3d) {
    w.Point(10, p);
  } else {
    w.Point2d(10, p);
  }
}

void BeginSection(TagWriter& w, const char* name) {
  w.Text(0, "SECTION");
  w.Text(2, name);
}

// The header variables both releases start with, from the section start.
void BeginHeader(TagWriter& w, const Document& doc) {
  const Extents ext = ModelExtents(doc);
  BeginSection(w, "HEADER");
  w.Text(9, "$ACADVER");
  w.Text(1, doc.version);
  w.Text(9, "$DWGCODEPAGE");
  w.Text(3, "ANSI_1252");
  WriteHeaderPoint(w, "$INSBASE", {0, 0}, true);
  WriteHeaderPoint(w, "$EXTMIN", ext.min, true);
  WriteHeaderPoint(w, "$EXTMAX", ext.max, true);
  WriteHeaderPoint(w, "$LIMMIN", doc.limMin, false);
  WriteHeaderPoint(w, "$LIMMAX", doc.limMax, false);
  w.Text(9, "$LTSCALE");
  w.Real(40, 1);
  w.Text(9, "$TILEMODE");
  w.Int(70, doc.activeLayout < 0 ? 1 : 0);
  w.Text(9, "$CLAYER");
  w.Text(8, "0");
}

// The *ACTIVE viewport record up to its view centre, which shows the middle
// of the model's extents.
void BeginActiveViewport(TagWriter& w, const Extents& ext) {
  w.Text(2, "*ACTIVE");
  w.Int(70, 0);
  w.Point2d(10, {0, 0});
  w.Point2d(11, {1, 1});
  w.Point2d(12, {(ext.min.x + ext.max.x) / 2, (ext.min.y + ext.max.y) / 2});
}

double ActiveViewHeight(const Extents& ext) { return std::max(ext.max.y - ext.min.y, 1.0) * 1.1; }

// The data of a linetype record up to its dashes, which the releases write
// differently.
void WriteLinetypeHead(TagWriter& w, const LinetypeDef& lt) {
  w.Text(2, lt.name);
  w.Int(70, 0);
  w.Text(3, lt.description);
  w.Int(72, 65);
  w.Int(73, static_cast<std::int64_t>(lt.dashes.size()));
  double total = 0;
  for (double d : lt.dashes) total += d < 0 ? -d : d;
  w.Real(40, total);
}

void WriteLayerHead(TagWriter& w, const LayerDef& layer) {
  w.Text(2, layer.name);
  w.Int(70, 0);
  w.Int(62, layer.color);
  w.Text(6, layer.linetype);
}

void WriteStyleData(TagWriter& w, const StyleDef& style) {
  w.Text(2, style.name);
  w.Int(70, 0);
  w.Real(40, 0);
  w.Real(41, style.widthFactor);
  w.Real(50, 0);
  w.Int(71, 0);
  w.Real(42, 2.5);
  w.Text(3, style.fontFile);
  w.Text(4, "");
}

// ---------------------------------------------------------------------------
// Release 2000 and 2004

class Writer2000 {
 public:
  explicit Writer2000(const Document& doc)
      : doc_(doc),
        layers_(AllLayers(doc)),
        styles_(AllStyles(doc)),
        linetypes_(AllLinetypes(doc, true)) {}

  std::string Write() {
    AssignHandles();
    std::string body;
    TagWriter w(body);
    WriteClasses(w);
    WriteTables(w);
    WriteBlocks(w);
    WriteEntities(w);
    WriteObjects(w);
    w.Text(0, "EOF");

    std::string file;
    TagWriter h(file);
    WriteHeader(h);
    return file + body;
  }

 private:
  struct Record {
    std::string name;
    Handle handle = 0;
    Handle layout = 0;  ///< the layout it holds, for model and paper spaces
    Handle begin = 0, end = 0;
    const BlockDef* block = nullptr;
    const std::vector<Entity>* entities = nullptr;  ///< written in BLOCKS
    bool paper = false;
  };

  Handle Next() { return next_++; }
  std::vector<Handle> NextHandles(std::size_t count) {
    std::vector<Handle> handles;
    for (std::size_t i = 0; i < count; ++i) handles.push_back(Next());
    return handles;
  }

  int PaperCount() const { return static_cast<int>(Layouts().size()); }
  const std::vector<LayoutDef>& Layouts() const { return layoutsView_; }
  int ActivePaper() const { return doc_.activeLayout >= 0 ? doc_.activeLayout : 0; }

  void AssignHandles() {
    // Every release-2000 drawing has a paper layout for *Paper_Space.
    layoutsView_ = doc_.layouts;
    if (layoutsView_.empty()) layoutsView_.push_back({"Présentation1", {}, {}});

    for (auto& t : tables_) t = Next();
    vportRecord_ = Next();
    linetypeHandles_ = NextHandles(linetypes_.size());
    layerHandles_ = NextHandles(layers_.size());
    styleHandles_ = NextHandles(styles_.size());
    viewHandles_ = NextHandles(doc_.views.size());
    appIdRecord_ = Next();
    dimStyleRecord_ = Next();

    rootDict_ = Next();
    groupDict_ = Next();
    layoutDict_ = Next();
    setupDict_ = Next();
    modelLayout_ = Next();
    paperLayouts_ = NextHandles(layoutsView_.size());
    setupHandles_ = NextHandles(doc_.pageSetups.size());

    // The model space, the active paper space, then the others in tab order.
    records_.push_back({"*Model_Space", Next(), modelLayout_, 0, 0, nullptr, nullptr, false});
    records_.push_back({"*Paper_Space", Next(),
                        paperLayouts_[static_cast<std::size_t>(ActivePaper())], 0, 0, nullptr,
                        nullptr, true});
    int n = 0;
    for (int i = 0; i < PaperCount(); ++i) {
      if (i == ActivePaper()) continue;
      records_.push_back({"*Paper_Space" + std::to_string(n++), Next(),
                          paperLayouts_[static_cast<std::size_t>(i)], 0, 0, nullptr,
                          &Layouts()[static_cast<std::size_t>(i)].entities, true});
    }
    for (const auto& block : doc_.blocks) {
      records_.push_back({block.name, Next(), 0, 0, 0, &block, &block.entities, false});
    }
    for (auto& r : records_) {
      r.begin = Next();
      r.end = Next();
    }
  }

  Handle LayoutRecord(int paperIndex) const {
    for (const auto& r : records_) {
      if (r.layout == paperLayouts_[static_cast<std::size_t>(paperIndex)]) return r.handle;
    }
    return 0;
  }

  void WriteHeader(TagWriter& w) {
    const Sheet sheet = LayoutSheet(Layouts()[static_cast<std::size_t>(ActivePaper())].settings);
    BeginHeader(w, doc_);
    w.Text(9, "$HANDSEED");
    w.Handle(5, next_);
    w.Text(9, "$MEASUREMENT");
    w.Int(70, 1);
    w.Text(9, "$INSUNITS");
    w.Int(70, doc_.insUnits);
    w.Text(9, "$PSLTSCALE");
    w.Int(70, 1);
    WriteHeaderPoint(w, "$PINSBASE", {0, 0}, true);
    WriteHeaderPoint(w, "$PLIMMIN", sheet.min, false);
    WriteHeaderPoint(w, "$PLIMMAX", sheet.max, false);
    for (const auto& v : doc_.headerVariables) {
      w.Text(9, v.name);
      w.Text(v.code, v.value);
    }
    w.Text(0, "ENDSEC");
  }

  static void WriteClasses(TagWriter& w) {
    BeginSection(w, "CLASSES");
    w.Text(0, "ENDSEC");
  }

  enum TableIndex { kVport, kLtype, kLayer, kStyle, kView, kUcs, kAppId, kDimStyle, kBlockRecord };

  void BeginTable(TagWriter& w, TableIndex index, const char* name, std::size_t count) {
    w.Text(0, "TABLE");
    w.Text(2, name);
    w.Handle(5, tables_[index]);
    w.Text(330, "0");
    w.Text(100, "AcDbSymbolTable");
    w.Int(70, static_cast<std::int64_t>(count));
  }

  void BeginRecord(TagWriter& w, const char* type, Handle handle, TableIndex table,
                   const char* subclass) {
    w.Text(0, type);
    w.Handle(5, handle);
    w.Handle(330, tables_[table]);
    w.Text(100, "AcDbSymbolTableRecord");
    w.Text(100, subclass);
  }

  void WriteTables(TagWriter& w) {
    BeginSection(w, "TABLES");

    const Extents ext = ModelExtents(doc_);
    BeginTable(w, kVport, "VPORT", 1);
    BeginRecord(w, "VPORT", vportRecord_, kVport, "AcDbViewportTableRecord");
    BeginActiveViewport(w, ext);
    w.Point2d(13, {0, 0});
    w.Point2d(14, {10, 10});
    w.Point2d(15, {10, 10});
    w.Point(16, P3{0, 0, 1});
    w.Point(17, P3{0, 0, 0});
    const double height = ActiveViewHeight(ext);
    w.Real(40, height);
    w.Real(41, std::max((ext.max.x - ext.min.x) * 1.1 / height, 1.0));
    w.Real(42, 50);
    w.Real(43, 0);
    w.Real(44, 0);
    w.Real(50, 0);
    w.Real(51, 0);
    w.Int(71, 0);
    w.Int(72, 1000);
    w.Int(73, 1);
    w.Int(74, 3);
    w.Int(75, 0);
    w.Int(76, 0);
    w.Int(77, 0);
    w.Int(78, 0);
    w.Text(0, "ENDTAB");

    BeginTable(w, kLtype, "LTYPE", linetypes_.size());
    for (std::size_t i = 0; i < linetypes_.size(); ++i) {
      const auto& lt = linetypes_[i];
      BeginRecord(w, "LTYPE", linetypeHandles_[i], kLtype, "AcDbLinetypeTableRecord");
      WriteLinetypeHead(w, lt);
      for (double d : lt.dashes) {
        w.Real(49, d);
        w.Int(74, 0);
      }
    }
    w.Text(0, "ENDTAB");

    BeginTable(w, kLayer, "LAYER", layers_.size());
    for (std::size_t i = 0; i < layers_.size(); ++i) {
      const auto& layer = layers_[i];
      BeginRecord(w, "LAYER", layerHandles_[i], kLayer, "AcDbLayerTableRecord");
      WriteLayerHead(w, layer);
      if (!layer.plottable) w.Int(290, 0);
      w.Int(370, layer.lineweight);
    }
    w.Text(0, "ENDTAB");

    BeginTable(w, kStyle, "STYLE", styles_.size());
    for (std::size_t i = 0; i < styles_.size(); ++i) {
      BeginRecord(w, "STYLE", styleHandles_[i], kStyle, "AcDbTextStyleTableRecord");
      WriteStyleData(w, styles_[i]);
    }
    w.Text(0, "ENDTAB");

    BeginTable(w, kView, "VIEW", doc_.views.size());
    for (std::size_t i = 0; i < doc_.views.size(); ++i) {
      const auto& view = doc_.views[i];
      BeginRecord(w, "VIEW", viewHandles_[i], kView, "AcDbViewTableRecord");
      w.Text(2, view.name);
      w.Int(70, 0);
      w.Real(40, view.height);
      w.Point2d(10, view.center);
      w.Real(41, view.width);
      w.Point(11, P3{0, 0, 1});
      w.Point(12, P3{0, 0, 0});
      w.Real(42, 50);
      w.Real(43, 0);
      w.Real(44, 0);
      w.Real(50, 0);
      w.Int(71, 0);
      w.Int(281, 0);
      w.Int(72, 0);
    }
    w.Text(0, "ENDTAB");

    BeginTable(w, kUcs, "UCS", 0);
    w.Text(0, "ENDTAB");

    BeginTable(w, kAppId, "APPID", 1);
    BeginRecord(w, "APPID", appIdRecord_, kAppId, "AcDbRegAppTableRecord");
    w.Text(2, "ACAD");
    w.Int(70, 0);
    w.Text(0, "ENDTAB");

    BeginTable(w, kDimStyle, "DIMSTYLE", 1);
    w.Text(100, "AcDbDimStyleTable");
    w.Int(71, 0);
    w.Text(0, "DIMSTYLE");
    w.Handle(105, dimStyleRecord_);
    w.Handle(330, tables_[kDimStyle]);
    w.Text(100, "AcDbSymbolTableRecord");
    w.Text(100, "AcDbDimStyleTableRecord");
    w.Text(2, "Standard");
    w.Int(70, 0);
    w.Text(0, "ENDTAB");

    BeginTable(w, kBlockRecord, "BLOCK_RECORD", records_.size());
    for (const auto& r : records_) {
      BeginRecord(w, "BLOCK_RECORD", r.handle, kBlockRecord, "AcDbBlockTableRecord");
      w.Text(2, r.name);
      w.Handle(340, r.layout);
      w.Int(70, 0);
      w.Int(280, 1);
      w.Int(281, 0);
    }
    w.Text(0, "ENDTAB");

    w.Text(0, "ENDSEC");
  }

  void WriteBlocks(TagWriter& w) {
    BeginSection(w, "BLOCKS");
    for (const auto& r : records_) {
      WriteCommon(w, "BLOCK", Props{}, r.begin, r.handle, r.paper);
      w.Text(100, "AcDbBlockBegin");
      w.Text(2, r.name);
      w.Int(70, r.block ? r.block->flags : 0);
      w.Point(10, r.block ? r.block->base : P2{0, 0});
      w.Text(3, r.name);
      w.Text(1, r.block ? r.block->xrefPath : std::string());
      if (r.entities) {
        for (const auto& e : *r.entities) WriteEntity(w, e, r.handle, r.paper);
      }
      WriteCommon(w, "ENDBLK", Props{}, r.end, r.handle, r.paper);
      w.Text(100, "AcDbBlockEnd");
    }
    w.Text(0, "ENDSEC");
  }

  void WriteEntities(TagWriter& w) {
    BeginSection(w, "ENTITIES");
    for (const auto& e : doc_.model) WriteEntity(w, e, records_[0].handle, false);
    for (const auto& e : Layouts()[static_cast<std::size_t>(ActivePaper())].entities) {
      WriteEntity(w, e, records_[1].handle, true);
    }
    w.Text(0, "ENDSEC");
  }

  void WriteCommon(TagWriter& w, const std::string& type, const Props& props, Handle handle,
                   Handle owner, bool paper, Handle extensionDictionary = 0) {
    w.Text(0, type);
    w.Handle(5, handle);
    if (extensionDictionary != 0) {
      w.Text(102, "{ACAD_XDICTIONARY");
      w.Handle(360, extensionDictionary);
      w.Text(102, "}");
    }
    w.Handle(330, owner);
    w.Text(100, "AcDbEntity");
    if (paper) w.Int(67, 1);
    w.Text(8, props.layer);
    if (!props.linetype.empty()) w.Text(6, props.linetype);
    if (props.color != 256) w.Int(62, props.color);
    if (props.lineweight != -1) w.Int(370, props.lineweight);
  }

  void WriteEntity(TagWriter& w, const Entity& e, Handle owner, bool paper) {
    const Handle handle = Next();
    Handle extensionDictionary = 0;
    if (!e.clipBoundary.empty()) {
      extensionDictionary = Next();
      const Handle filters = Next();
      clips_.push_back({handle, extensionDictionary, filters, Next(), &e.clipBoundary});
    }
    WriteCommon(w, e.type, e.props, handle, owner, paper, extensionDictionary);
    for (const auto& tag : e.tags) w.Text(tag.code, tag.value);
    for (const auto& ref : e.handleRefs) w.Handle(ref.code, Referenced(ref.value));
    if (!e.label.empty()) labels_[e.label] = handle;
    if (e.followers.empty()) return;
    for (const auto& f : e.followers) WriteEntity(w, f, handle, paper);
    WriteCommon(w, "SEQEND", {e.props.layer, "", 256, -1}, Next(), handle, paper);
  }

  // The handle a reference names: a labelled entity written before, or a
  // layer ("LAYER:name"); 0 when there is none.
  Handle Referenced(const std::string& name) const {
    if (name.starts_with("LAYER:")) {
      for (std::size_t i = 0; i < layers_.size(); ++i) {
        if (layers_[i].name == name.substr(6)) return layerHandles_[i];
      }
      return 0;
    }
    const auto it = labels_.find(name);
    return it != labels_.end() ? it->second : 0;
  }

  // An object's start: its type, handle and owner, which is also its reactor
  // unless it has none (0).
  static void BeginObject(TagWriter& w, const char* type, Handle handle, Handle owner) {
    w.Text(0, type);
    w.Handle(5, handle);
    if (owner != 0) {
      w.Text(102, "{ACAD_REACTORS");
      w.Handle(330, owner);
      w.Text(102, "}");
    }
    w.Handle(330, owner);
  }

  void WriteDictionary(TagWriter& w, Handle handle, Handle owner,
                       const std::vector<std::pair<std::string, Handle>>& entries) {
    BeginObject(w, "DICTIONARY", handle, owner);
    w.Text(100, "AcDbDictionary");
    w.Int(281, 1);
    for (const auto& [key, value] : entries) {
      w.Text(3, key);
      w.Handle(350, value);
    }
  }

  static void WritePlotSettings(TagWriter& w, const PlotSetup& s, bool model) {
    w.Text(100, "AcDbPlotSettings");
    w.Text(1, s.pageSetupName);
    w.Text(2, s.device);
    w.Text(4, s.media);
    w.Text(6, s.viewName);
    w.Real(40, s.marginLeft);
    w.Real(41, s.marginBottom);
    w.Real(42, s.marginRight);
    w.Real(43, s.marginTop);
    w.Real(44, s.paperWidth);
    w.Real(45, s.paperHeight);
    w.Real(46, s.origin.x);
    w.Real(47, s.origin.y);
    w.Real(48, s.windowMin.x);
    w.Real(49, s.windowMin.y);
    w.Real(140, s.windowMax.x);
    w.Real(141, s.windowMax.y);
    w.Real(142, s.numerator);
    w.Real(143, s.denominator);
    w.Int(70, model ? (s.flags | kModelTypeFlag) : (s.flags & ~kModelTypeFlag));
    w.Int(72, s.paperUnits);
    w.Int(73, s.rotation);
    w.Int(74, s.plotType);
    w.Text(7, s.styleSheet);
    w.Int(75, s.standardScale);
    w.Real(147, s.numerator / s.denominator);
    w.Int(76, 0);
    w.Int(77, 2);
    w.Int(78, 300);
    w.Real(148, 0);
    w.Real(149, 0);
  }

  void WriteLayout(TagWriter& w, Handle handle, const std::string& name, const PlotSetup& s,
                   int tabOrder, Handle record, bool model) {
    BeginObject(w, "LAYOUT", handle, layoutDict_);
    WritePlotSettings(w, s, model);
    w.Text(100, "AcDbLayout");
    w.Text(1, name);
    w.Int(70, 1);
    w.Int(71, tabOrder);
    if (model) {
      w.Point2d(10, doc_.limMin);
      w.Point2d(11, doc_.limMax);
    } else {
      const Sheet sheet = LayoutSheet(s);
      w.Point2d(10, sheet.min);
      w.Point2d(11, sheet.max);
    }
    w.Point(12, P3{0, 0, 0});
    w.Point(14, P3{1e20, 1e20, 1e20});
    w.Point(15, P3{-1e20, -1e20, -1e20});
    w.Real(146, 0);
    w.Point(13, P3{0, 0, 0});
    w.Point(16, P3{1, 0, 0});
    w.Point(17, P3{0, 1, 0});
    w.Int(76, 0);
    w.Handle(330, record);
  }

  void WriteObjects(TagWriter& w) {
    BeginSection(w, "OBJECTS");
    WriteDictionary(w, rootDict_, 0,
                    {{"ACAD_GROUP", groupDict_},
                     {"ACAD_LAYOUT", layoutDict_},
                     {"ACAD_PLOTSETTINGS", setupDict_}});
    WriteDictionary(w, groupDict_, rootDict_, {});
    std::vector<std::pair<std::string, Handle>> layouts{{"Model", modelLayout_}};
    for (int i = 0; i < PaperCount(); ++i) {
      layouts.emplace_back(Layouts()[static_cast<std::size_t>(i)].name,
                           paperLayouts_[static_cast<std::size_t>(i)]);
    }
    WriteDictionary(w, layoutDict_, rootDict_, layouts);
    std::vector<std::pair<std::string, Handle>> setups;
    for (std::size_t i = 0; i < doc_.pageSetups.size(); ++i) {
      setups.emplace_back(doc_.pageSetups[i].name, setupHandles_[i]);
    }
    WriteDictionary(w, setupDict_, rootDict_, setups);

    WriteLayout(w, modelLayout_, "Model", doc_.modelSettings, 0, records_[0].handle, true);
    for (int i = 0; i < PaperCount(); ++i) {
      const auto& layout = Layouts()[static_cast<std::size_t>(i)];
      WriteLayout(w, paperLayouts_[static_cast<std::size_t>(i)], layout.name, layout.settings,
                  i + 1, LayoutRecord(i), false);
    }
    for (std::size_t i = 0; i < doc_.pageSetups.size(); ++i) {
      const auto& setup = doc_.pageSetups[i];
      BeginObject(w, "PLOTSETTINGS", setupHandles_[i], setupDict_);
      PlotSetup s = setup.settings;
      s.pageSetupName = setup.name;
      WritePlotSettings(w, s, (setup.settings.flags & kModelTypeFlag) != 0);
    }
    for (const Clip& clip : clips_) WriteClip(w, clip);
    w.Text(0, "ENDSEC");
  }

  // A clipped block reference's objects: its extension dictionary, the
  // filter dictionary and the spatial filter. The filter's two matrices are
  // left out: our reader keeps the boundary in block coordinates.
  struct Clip {
    Handle insert, dictionary, filters, filter;
    const std::vector<P2>* boundary;
  };

  void WriteClip(TagWriter& w, const Clip& clip) {
    WriteDictionary(w, clip.dictionary, clip.insert, {{"ACAD_FILTER", clip.filters}});
    WriteDictionary(w, clip.filters, clip.dictionary, {{"SPATIAL", clip.filter}});
    BeginObject(w, "SPATIAL_FILTER", clip.filter, clip.filters);
    w.Text(100, "AcDbFilter");
    w.Text(100, "AcDbSpatialFilter");
    w.Int(70, static_cast<std::int64_t>(clip.boundary->size()));
    for (const P2& p : *clip.boundary) w.Point2d(10, p);
    w.Point(210, P3{0, 0, 1});
    w.Point(11, P3{0, 0, 0});
    w.Int(71, 1);
    w.Int(72, 0);
    w.Int(73, 0);
  }

  const Document& doc_;
  std::vector<LayerDef> layers_;
  std::vector<StyleDef> styles_;
  std::vector<LinetypeDef> linetypes_;
  std::vector<LayoutDef> layoutsView_;

  Handle next_ = 1;
  Handle tables_[9] = {};
  Handle vportRecord_ = 0, appIdRecord_ = 0, dimStyleRecord_ = 0;
  std::vector<Handle> linetypeHandles_, layerHandles_, styleHandles_, viewHandles_;
  Handle rootDict_ = 0, groupDict_ = 0, layoutDict_ = 0, setupDict_ = 0, modelLayout_ = 0;
  std::vector<Handle> paperLayouts_, setupHandles_;
  std::vector<Record> records_;
  std::map<std::string, Handle> labels_;
  std::vector<Clip> clips_;
};

// ---------------------------------------------------------------------------
// Release 12: no handles, owners, subclasses or layouts; one paper space
// whose entities carry the paper-space flag.

class Writer12 {
 public:
  explicit Writer12(const Document& doc) : doc_(doc) {}

  std::string Write() {
    std::string file;
    TagWriter w(file);
    WriteHeader(w);
    WriteTables(w);
    WriteBlocks(w);
    BeginSection(w, "ENTITIES");
    for (const auto& e : doc_.model) WriteEntity(w, e, false);
    for (const auto& layout : doc_.layouts) {
      for (const auto& e : layout.entities) WriteEntity(w, e, true);
    }
    w.Text(0, "ENDSEC");
    w.Text(0, "EOF");
    return file;
  }

 private:
  void WriteHeader(TagWriter& w) {
    const PlotSetup paper = doc_.layouts.empty() ? PlotSetup{} : doc_.layouts.front().settings;
    BeginHeader(w, doc_);
    WriteHeaderPoint(w, "$PLIMMIN", {0, 0}, false);
    WriteHeaderPoint(w, "$PLIMMAX", {paper.paperWidth, paper.paperHeight}, false);
    w.Text(0, "ENDSEC");
  }

  void WriteTables(TagWriter& w) {
    const auto linetypes = AllLinetypes(doc_, false);
    const auto layers = AllLayers(doc_);
    const auto styles = AllStyles(doc_);
    const Extents ext = ModelExtents(doc_);
    const auto beginTable = [&](const char* name, std::size_t count) {
      w.Text(0, "TABLE");
      w.Text(2, name);
      w.Int(70, static_cast<std::int64_t>(count));
    };
    BeginSection(w, "TABLES");

    beginTable("VPORT", 1);
    w.Text(0, "VPORT");
    BeginActiveViewport(w, ext);
    w.Real(40, ActiveViewHeight(ext));
    w.Real(41, 1.5);
    w.Text(0, "ENDTAB");

    beginTable("LTYPE", linetypes.size());
    for (const auto& lt : linetypes) {
      w.Text(0, "LTYPE");
      WriteLinetypeHead(w, lt);
      for (double d : lt.dashes) w.Real(49, d);
    }
    w.Text(0, "ENDTAB");

    beginTable("LAYER", layers.size());
    for (const auto& layer : layers) {
      w.Text(0, "LAYER");
      WriteLayerHead(w, layer);
    }
    w.Text(0, "ENDTAB");

    beginTable("STYLE", styles.size());
    for (const auto& style : styles) {
      w.Text(0, "STYLE");
      WriteStyleData(w, style);
    }
    w.Text(0, "ENDTAB");

    beginTable("APPID", 1);
    w.Text(0, "APPID");
    w.Text(2, "ACAD");
    w.Int(70, 0);
    w.Text(0, "ENDTAB");

    w.Text(0, "ENDSEC");
  }

  void WriteBlocks(TagWriter& w) {
    BeginSection(w, "BLOCKS");
    const auto begin = [&](const std::string& name, int flags, P2 base, bool paper) {
      WriteCommon(w, "BLOCK", Props{}, paper);
      w.Text(2, name);
      w.Int(70, flags);
      w.Point(10, base);
      w.Text(3, name);
    };
    const auto end = [&](bool paper) { WriteCommon(w, "ENDBLK", Props{}, paper); };
    begin("$MODEL_SPACE", 0, {0, 0}, false);
    end(false);
    begin("$PAPER_SPACE", 0, {0, 0}, true);
    end(true);
    for (const auto& block : doc_.blocks) {
      begin(block.name, block.flags, block.base, false);
      if (!block.xrefPath.empty()) w.Text(1, block.xrefPath);
      for (const auto& e : block.entities) WriteEntity(w, e, false);
      end(false);
    }
    w.Text(0, "ENDSEC");
  }

  void WriteEntity(TagWriter& w, const Entity& e, bool paper) {
    WriteCommon(w, e.type, e.props, paper);
    for (const auto& tag : e.tags) {
      if (tag.code != 100) w.Text(tag.code, tag.value);
    }
    if (e.followers.empty()) return;
    for (const auto& f : e.followers) WriteEntity(w, f, paper);
    WriteCommon(w, "SEQEND", {e.props.layer, "", 256, -1}, paper);
  }

  static void WriteCommon(TagWriter& w, const std::string& type, const Props& props, bool paper) {
    w.Text(0, type);
    if (paper) w.Int(67, 1);
    w.Text(8, props.layer);
    if (!props.linetype.empty()) w.Text(6, props.linetype);
    if (props.color != 256) w.Int(62, props.color);
  }

  const Document& doc_;
};

}  // namespace

std::string WriteDxf(const Document& doc) {
  if (doc.version == "AC1009") return Writer12(doc).Write();
  return Writer2000(doc).Write();
}

}  // namespace sheafwork::dxfgen
