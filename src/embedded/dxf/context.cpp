#include "embedded/dxf/context.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

template <typename T>
T Clamped(std::int64_t v) {
  return static_cast<T>(
      std::clamp<std::int64_t>(v, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
}

}  // namespace

bool IsPaperSpaceName(std::string_view name) {
  return name.size() >= kPaperSpace.size() &&
         SameName(name.substr(0, kPaperSpace.size()), kPaperSpace);
}

std::string_view EntitiesSectionBlock(std::string_view ownerRecord, bool paperSpace) {
  if (SameName(ownerRecord, kModelSpace) || IsPaperSpaceName(ownerRecord)) return ownerRecord;
  return paperSpace ? kPaperSpace : kModelSpace;
}

Context::Context(Drawing& d, std::string_view bytes, const std::string& name)
    : drawing(d), stream(bytes, name) {}

double Context::Real(const Tag& tag) const {
  const std::optional<double> v = tag.Double();
  if (!v || !std::isfinite(*v)) {
    throw DxfError(dxfmsg::NumberExpected({stream.Name(), tag.ValuePosition(), tag.binary},
                                          tag.code, tag.binary ? "" : tag.value));
  }
  return *v;
}

std::int32_t Context::Long(const Tag& tag) const {
  const std::optional<std::int64_t> v = tag.Integer();
  if (!v) {
    throw DxfError(dxfmsg::NumberExpected({stream.Name(), tag.ValuePosition(), tag.binary},
                                          tag.code, tag.binary ? "" : tag.value));
  }
  return Clamped<std::int32_t>(*v);
}

std::int16_t Context::Short(const Tag& tag) const { return Clamped<std::int16_t>(Long(tag)); }

Block& Context::BlockNamed(std::string_view name) {
  if (SameName(name, "$MODEL_SPACE")) name = kModelSpace;
  if (SameName(name, "$PAPER_SPACE")) name = kPaperSpace;
  std::string key = NameKey(name);
  const auto it = blockIndex_.find(key);
  if (it != blockIndex_.end()) return drawing.blocks[it->second];
  blockIndex_.emplace(std::move(key), drawing.blocks.size());
  Block& block = drawing.blocks.emplace_back();
  block.name = std::string(name);
  return block;
}

void Context::Skip(std::string_view type) { ++drawing.skippedEntities[std::string(type)]; }

}  // namespace sheafwork::embedded
