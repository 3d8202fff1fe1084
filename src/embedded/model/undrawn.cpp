#include "embedded/model/undrawn.h"

#include <unordered_set>
#include <variant>

namespace sheafwork::embedded {
namespace {

class UndrawnCounter {
 public:
  explicit UndrawnCounter(const Drawing& drawing) : drawing_(drawing) {}

  void CountLayout(const Layout& layout) {
    const Block* block = drawing_.LayoutBlock(layout);
    if (block == nullptr) return;
    Walk(*block);
    if (layout.IsModel()) return;
    // The first viewport is the sheet itself; any other one shows the model.
    int viewports = 0;
    for (const Entity& e : block->entities)
      viewports += std::holds_alternative<Viewport>(e.geometry);
    if (viewports > 1) {
      if (const Block* model = ModelSpace()) Walk(*model);
    }
  }

  std::map<std::string, int> counts;

 private:
  const Block* ModelSpace() const {
    for (const Layout& layout : drawing_.layouts) {
      if (layout.IsModel()) return drawing_.LayoutBlock(layout);
    }
    return drawing_.FindBlock("*Model_Space");
  }

  bool Shown(const EntityProps& props) const {
    if (props.invisible) return false;
    const Layer* layer = drawing_.FindLayer(props.layer);
    return layer == nullptr || (layer->on && !layer->frozen);
  }

  void WalkNamed(const std::string& name) {
    if (const Block* block = drawing_.FindBlock(name)) Walk(*block);
  }

  void Walk(const Block& block) {
    if (!visited_.insert(&block).second) return;
    for (const Entity& e : block.entities) {
      if (!Shown(e.props)) continue;
      if (const auto* u = std::get_if<Undrawn>(&e.geometry)) {
        ++counts[u->kind];
      } else if (const auto* insert = std::get_if<Insert>(&e.geometry)) {
        WalkNamed(insert->block);
      } else if (const auto* dimension = std::get_if<Dimension>(&e.geometry)) {
        WalkNamed(dimension->block);
      } else if (const auto* leader = std::get_if<MultiLeader>(&e.geometry)) {
        if (!leader->block.empty()) WalkNamed(leader->block);
      }
    }
  }

  const Drawing& drawing_;
  std::unordered_set<const Block*> visited_;
};

}  // namespace

std::map<std::string, int> UndrawnEntities(const Drawing& drawing, const Layout& layout) {
  if (drawing.skippedEntities.empty()) return {};
  UndrawnCounter counter(drawing);
  counter.CountLayout(layout);
  return std::move(counter.counts);
}

std::map<std::string, int> UndrawnEntities(const Drawing& drawing) {
  if (drawing.skippedEntities.empty()) return {};
  UndrawnCounter counter(drawing);
  for (const Layout& layout : drawing.layouts) counter.CountLayout(layout);
  return std::move(counter.counts);
}

std::string FormatUndrawn(const std::map<std::string, int>& counts) {
  std::string out;
  for (const auto& [kind, count] : counts) {
    if (!out.empty()) out += ", ";
    out += kind + " (" + std::to_string(count) + ")";
  }
  return out;
}

}  // namespace sheafwork::embedded
