#include "embedded/model/drawing.h"

#include <algorithm>
#include <utility>

namespace sheafwork::embedded {

std::string NameKey(std::string_view name) {
  std::string key(name);
  for (char& c : key) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return key;
}

namespace {

char KeyChar(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// NameKey(a) == NameKey(b), without making either key.
bool SameKey(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (KeyChar(a[i]) != KeyChar(b[i])) return false;
  }
  return true;
}

template <typename Record>
const Record* FindByName(const std::vector<Record>& records, std::string_view name) {
  auto it = std::find_if(records.begin(), records.end(),
                         [&](const Record& r) { return SameKey(r.name, name); });
  return it == records.end() ? nullptr : &*it;
}

}  // namespace

void Drawing::Reindex() {
  layerIndex_.clear();
  blockIndex_.clear();
  for (std::size_t i = 0; i < layers.size(); ++i) layerIndex_.emplace(NameKey(layers[i].name), i);
  for (std::size_t i = 0; i < blocks.size(); ++i) blockIndex_.emplace(NameKey(blocks[i].name), i);
}

const Layer* Drawing::FindLayer(std::string_view name) const {
  if (layerIndex_.size() != layers.size()) return FindByName(layers, name);
  auto it = layerIndex_.find(NameKey(name));
  return it == layerIndex_.end() ? nullptr : &layers[it->second];
}

Layer* Drawing::FindLayer(std::string_view name) {
  return const_cast<Layer*>(std::as_const(*this).FindLayer(name));
}

const Block* Drawing::FindBlock(std::string_view name) const {
  if (blockIndex_.size() != blocks.size()) return FindByName(blocks, name);
  auto it = blockIndex_.find(NameKey(name));
  return it == blockIndex_.end() ? nullptr : &blocks[it->second];
}

const TextStyle* Drawing::FindTextStyle(std::string_view name) const {
  return FindByName(textStyles, name);
}

const Linetype* Drawing::FindLinetype(std::string_view name) const {
  return FindByName(linetypes, name);
}

const View* Drawing::FindView(std::string_view name) const { return FindByName(views, name); }

const Block* Drawing::LayoutBlock(const Layout& layout) const {
  if (!layout.blockError.empty()) return nullptr;
  return FindBlock(layout.blockName);
}

}  // namespace sheafwork::embedded
