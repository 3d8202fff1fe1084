// After the last section: entities into their blocks, layouts and page
// setups linked up, what the file left out filled in.

#include <algorithm>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "embedded/dxf/clips_and_order.h"
#include "embedded/dxf/sections.h"
#include "embedded/model/layouts.h"

namespace sheafwork::embedded {
namespace {

// ENTITIES-section entities go to the block of their owner's block record
// (EntitiesSectionBlock).
void PlaceEntities(Context& ctx) {
  std::string lastOwner;
  std::size_t lastIndex = 0;
  bool haveLast = false;
  for (PendingEntity& p : ctx.pending) {
    if (!haveLast || p.owner != lastOwner || p.owner.empty()) {
      const auto it =
          p.owner.empty() ? ctx.blockRecordNames.end() : ctx.blockRecordNames.find(p.owner);
      const std::string_view record =
          it != ctx.blockRecordNames.end() ? std::string_view(it->second) : std::string_view();
      Block& block = ctx.BlockNamed(EntitiesSectionBlock(record, p.paperSpace));
      lastIndex = static_cast<std::size_t>(&block - ctx.drawing.blocks.data());
      lastOwner = p.owner;
      haveLast = true;
    }
    ctx.drawing.blocks[lastIndex].entities.push_back(std::move(p.entity));
  }
  ctx.pending.clear();
}

const DictionaryObject* FindDictionary(const Context& ctx, const std::string& handle) {
  const auto it = ctx.dictionaries.find(handle);
  return it == ctx.dictionaries.end() ? nullptr : &it->second;
}

const DictionaryObject* RootEntry(const Context& ctx, std::string_view key) {
  const DictionaryObject* root = FindDictionary(ctx, ctx.rootDictionary);
  if (root == nullptr) return nullptr;
  for (const auto& [name, handle] : root->entries) {
    if (name == key) return FindDictionary(ctx, handle);
  }
  return nullptr;
}

// The block record a layout belongs to: its own link, else a record that
// names the layout.
std::string BlockNameOf(const Context& ctx, const LayoutObject& object,
                        const std::unordered_map<std::string, std::string>& recordOfLayout) {
  auto it = ctx.blockRecordNames.find(object.blockRecord);
  if (it != ctx.blockRecordNames.end()) return it->second;
  const auto record = recordOfLayout.find(object.handle);
  if (record == recordOfLayout.end()) return {};
  it = ctx.blockRecordNames.find(record->second);
  return it != ctx.blockRecordNames.end() ? it->second : std::string();
}

// Gives the layouts without a block record one: the model block for the
// model, else a paper-space block no other layout uses (a new name when
// there is none).
void LinkOrphans(Drawing& d, const std::vector<std::size_t>& orphans) {
  std::unordered_set<std::string> used;
  for (const Layout& l : d.layouts) used.insert(NameKey(l.blockName));
  std::size_t nextBlock = 0;
  int suffix = 0;
  for (const std::size_t i : orphans) {
    Layout& layout = d.layouts[i];
    if (SameName(layout.name, "Model") || layout.IsModel()) {
      layout.blockName = std::string(kModelSpace);
      continue;
    }
    while (nextBlock < d.blocks.size() && (!IsPaperSpaceName(d.blocks[nextBlock].name) ||
                                           used.count(NameKey(d.blocks[nextBlock].name)) != 0)) {
      ++nextBlock;
    }
    if (nextBlock < d.blocks.size()) {
      layout.blockName = d.blocks[nextBlock++].name;
    } else {
      // Names nobody uses: the blocks were all taken above.
      do {
        layout.blockName =
            std::string(kPaperSpace) + (suffix == 0 ? "" : std::to_string(suffix - 1));
        ++suffix;
      } while (used.count(NameKey(layout.blockName)) != 0);
    }
    used.insert(NameKey(layout.blockName));
  }
}

// A single layout whose stored link leads nowhere and a single paper-space
// block that no layout claims can only belong together (a writer's wrong
// handle): they are linked. With more of either, which goes with which is
// a guess, and the layouts keep their error.
void LinkLoneBrokenLayout(Drawing& d) {
  Layout* broken = nullptr;
  std::unordered_set<std::string> used;
  for (Layout& layout : d.layouts) {
    if (layout.blockError.empty()) {
      used.insert(NameKey(layout.blockName));
    } else if (broken == nullptr) {
      broken = &layout;
    } else {
      return;
    }
  }
  if (broken == nullptr) return;
  const Block* spare = nullptr;
  for (const Block& block : d.blocks) {
    if (!IsPaperSpaceName(block.name) || used.count(NameKey(block.name)) != 0) continue;
    if (spare != nullptr) return;
    spare = &block;
  }
  if (spare == nullptr) return;
  broken->blockName = spare->name;
  broken->blockError.clear();
}

void BuildLayouts(Context& ctx) {
  Drawing& d = ctx.drawing;
  std::unordered_map<std::string, const LayoutObject*> byHandle;
  for (const LayoutObject& o : ctx.layoutObjects) byHandle.emplace(o.handle, &o);
  std::unordered_map<std::string, std::string> recordOfLayout;
  for (const auto& [record, layout] : ctx.blockRecordLayouts)
    recordOfLayout.emplace(layout, record);

  std::vector<std::pair<std::string, const LayoutObject*>> chosen;  // dictionary key, object
  if (const DictionaryObject* dict = RootEntry(ctx, "ACAD_LAYOUT")) {
    std::unordered_set<std::string> seen;
    for (const auto& [key, handle] : dict->entries) {
      const auto it = byHandle.find(handle);
      if (it != byHandle.end() && seen.insert(handle).second) chosen.emplace_back(key, it->second);
    }
  } else {
    for (const LayoutObject& o : ctx.layoutObjects) chosen.emplace_back(o.layout.name, &o);
  }

  // A layout is linked to its block by handle. One whose stored link leads
  // nowhere belongs to a block that was lost: it does not plot, rather than
  // plot another layout's content. Only layouts stored without any link
  // are given a block by elimination.
  std::vector<std::size_t> orphans;
  for (const auto& [key, object] : chosen) {
    Layout layout = object->layout;
    if (layout.name.empty()) layout.name = key;
    layout.blockName = BlockNameOf(ctx, *object, recordOfLayout);
    const bool model = SameName(layout.name, "Model") || layout.IsModel();
    // The model's record under a name of no layout block (damaged, or named
    // otherwise by its writer) still stands for model space.
    if (model && !layout.blockName.empty() && !SameName(layout.blockName, kModelSpace) &&
        !IsPaperSpaceName(layout.blockName)) {
      layout.blockName = std::string(kModelSpace);
    }
    const bool linked = !object->blockRecord.empty() && object->blockRecord != "0";
    if (layout.blockName.empty() && linked && !model) {
      layout.blockError = dxfmsg::LayoutBlockMissing(d.path, layout.name, object->blockRecord);
    } else if (layout.blockName.empty()) {
      orphans.push_back(d.layouts.size());
    }
    d.layouts.push_back(std::move(layout));
  }
  if (orphans.empty()) LinkLoneBrokenLayout(d);
  LinkOrphans(d, orphans);
  // Model space always exists, even when the file lists paper layouts only.
  const bool hasModel = std::any_of(d.layouts.begin(), d.layouts.end(), [](const Layout& l) {
    return SameName(l.blockName, kModelSpace);
  });
  if (!d.layouts.empty() && !hasModel) {
    Layout model;
    model.name = "Model";
    model.blockName = std::string(kModelSpace);
    model.limMin = d.header.limMin;
    model.limMax = d.header.limMax;
    model.settings.plotType = kPlotExtents;
    model.settings.standardScale = 0;
    d.layouts.insert(d.layouts.begin(), std::move(model));
  }
  // The block decides which layout is the model one, whatever the flag says.
  for (Layout& layout : d.layouts) {
    layout.settings.Set(kModelType, SameName(layout.blockName, kModelSpace));
  }
  std::stable_sort(d.layouts.begin(), d.layouts.end(), [](const Layout& a, const Layout& b) {
    if (a.IsModel() != b.IsModel()) return a.IsModel();
    return a.tabOrder < b.tabOrder;
  });

  d.activeLayout = 0;
  for (std::size_t i = 0; i < d.layouts.size(); ++i) {
    const bool wanted =
        d.header.tileMode ? d.layouts[i].IsModel() : SameName(d.layouts[i].blockName, kPaperSpace);
    if (wanted) {
      d.activeLayout = i;
      break;
    }
  }
}

void BuildPageSetups(Context& ctx) {
  const DictionaryObject* dict = RootEntry(ctx, "ACAD_PLOTSETTINGS");
  if (dict == nullptr) return;
  for (const auto& [key, handle] : dict->entries) {
    const auto it = ctx.plotSettings.find(handle);
    if (it != ctx.plotSettings.end()) ctx.drawing.pageSetups.push_back({key, it->second});
  }
}

// Layer 0 always exists, and so does every layer an entity is on.
void AddMissingLayers(Context& ctx) {
  Drawing& d = ctx.drawing;
  const auto ensure = [&](const std::string& name) {
    if (!ctx.layerKeys.insert(NameKey(name)).second) return;
    Layer layer;
    layer.name = name;
    d.layers.push_back(std::move(layer));
  };
  ensure("0");
  const std::string* last = nullptr;
  for (const Block& block : d.blocks) {
    for (const Entity& e : block.entities) {
      if (last != nullptr && *last == e.props.layer) continue;
      ensure(e.props.layer);
      last = &e.props.layer;
    }
  }
}

}  // namespace

void FinishDrawing(Context& ctx) {
  Drawing& d = ctx.drawing;
  ctx.BlockNamed(kModelSpace);
  PlaceEntities(ctx);
  BuildLayouts(ctx);
  BuildPageSetups(ctx);
  SynthesiseLayouts(d);
  for (const Layout& layout : d.layouts) {
    if (layout.blockError.empty()) ctx.BlockNamed(layout.blockName);
  }
  AddMissingLayers(ctx);
  LinkClipBoundaries(ctx);
  ApplyDrawOrders(ctx);
  d.Reindex();
}

}  // namespace sheafwork::embedded
