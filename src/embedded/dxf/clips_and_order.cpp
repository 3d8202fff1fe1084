#include "embedded/dxf/clips_and_order.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <numeric>
#include <unordered_map>

#include "text/strings.h"

namespace sheafwork::embedded {
namespace {

constexpr std::string_view kHoleSection = "ACAD_INVERTEDCLIP_ROUNDTRIP";

std::uint64_t HandleNumber(std::string_view handle) {
  handle = TrimSpaces(handle);
  std::uint64_t value = std::numeric_limits<std::uint64_t>::max();
  const auto [end, ec] = std::from_chars(handle.data(), handle.data() + handle.size(), value, 16);
  if (ec != std::errc() || end != handle.data() + handle.size()) {
    return std::numeric_limits<std::uint64_t>::max();
  }
  return value;
}

std::string DictionaryEntry(const Context& ctx, const std::string& dictionary,
                            std::string_view key) {
  const auto it = ctx.dictionaries.find(dictionary);
  if (it == ctx.dictionaries.end()) return {};
  for (const auto& [name, handle] : it->second.entries) {
    if (name == key) return handle;
  }
  return {};
}

}  // namespace

// SPATIAL_FILTER: the boundary (10/20), its plane (210, 11), whether
// clipping is on (71), then the 40s: the front clipping distance when there
// is one, and the two matrices of 12 numbers, always last.
void ReadSpatialFilter(Context& ctx, const Record& r) {
  const Tag* handle = r.Find(5);
  if (handle == nullptr) return;
  SpatialFilterObject filter;
  filter.clip = std::make_shared<BlockClip>();
  BlockClip& clip = *filter.clip;
  std::vector<double> reals;
  for (const DataTag& d : r.data) {
    if (r.SubclassOf(d) != "AcDbSpatialFilter") continue;
    const Tag& t = d.tag;
    if (SetPoint(ctx, t, 210, clip.normal) || SetPoint(ctx, t, 11, clip.origin)) continue;
    if (t.code == 10) clip.boundary.emplace_back().x = ctx.Real(t);
    if (t.code == 20 && !clip.boundary.empty()) clip.boundary.back().y = ctx.Real(t);
    if (t.code == 71) filter.enabled = ctx.Flag(t);
    if (t.code == 40) reals.push_back(ctx.Real(t));
  }
  if (reals.size() >= 24) {
    const auto first = reals.end() - 24;
    std::copy(first, first + 12, clip.inverseInsert.begin());
    std::copy(first + 12, reals.end(), clip.toBoundary.begin());
  }
  if (!r.extensionDictionary.empty()) {
    filter.extensionDictionary = HandleKey(r.extensionDictionary);
  }
  ctx.spatialFilters[HandleKey(handle->value)] = std::move(filter);
}

// The record beside an inverted clip keeps the hole's points (10/20) in a
// section of their own, after 102/ACAD_INVERTEDCLIP_ROUNDTRIP.
void ReadClipHoleRecord(Context& ctx, const Record& r) {
  std::vector<Vec2> hole;
  bool inHole = false;
  for (const DataTag& d : r.data) {
    const Tag& t = d.tag;
    if (t.code == 102) {
      inHole = TrimSpaces(t.value) == kHoleSection;
    } else if (inHole && t.code == 10) {
      hole.emplace_back().x = ctx.Real(t);
    } else if (inHole && t.code == 20 && !hole.empty()) {
      hole.back().y = ctx.Real(t);
    }
  }
  const Tag* handle = r.Find(5);
  if (hole.size() >= 2 && handle != nullptr) ctx.clipHoles[HandleKey(handle->value)] = hole;
}

// SORTENTSTABLE: the block record (330), then pairs of an entity (331) and
// the handle it sorts by (5).
void ReadSortentsTable(Context& ctx, const Record& r) {
  SortentsObject table;
  std::uint64_t entity = 0;
  bool haveEntity = false;
  for (const DataTag& d : r.data) {
    if (r.SubclassOf(d) != "AcDbSortentsTable") continue;
    const Tag& t = d.tag;
    if (t.code == 330) {
      table.blockRecord = HandleKey(t.value);
    } else if (t.code == 331) {
      entity = HandleNumber(t.value);
      haveEntity = true;
    } else if (t.code == 5 && haveEntity) {
      table.sortHandles.emplace_back(entity, HandleNumber(t.value));
      haveEntity = false;
    }
  }
  if (!table.blockRecord.empty() && !table.sortHandles.empty()) {
    ctx.drawOrders.push_back(std::move(table));
  }
}

void LinkClipBoundaries(Context& ctx) {
  if (ctx.insertDictionaries.empty() || ctx.spatialFilters.empty()) return;
  for (auto& [handle, filter] : ctx.spatialFilters) {
    if (filter.extensionDictionary.empty() || ctx.clipHoles.empty()) continue;
    const auto hole =
        ctx.clipHoles.find(DictionaryEntry(ctx, filter.extensionDictionary, "ACAD_XREC_ROUNDTRIP"));
    if (hole == ctx.clipHoles.end()) continue;
    filter.clip->inverted = true;
    filter.clip->hole = hole->second;
  }
  for (Block& block : ctx.drawing.blocks) {
    for (Entity& e : block.entities) {
      auto* insert = std::get_if<Insert>(&e.geometry);
      if (insert == nullptr || e.handle.empty()) continue;
      const auto dictionary = ctx.insertDictionaries.find(HandleKey(e.handle));
      if (dictionary == ctx.insertDictionaries.end()) continue;
      const std::string filters = DictionaryEntry(ctx, dictionary->second, "ACAD_FILTER");
      const auto filter = ctx.spatialFilters.find(DictionaryEntry(ctx, filters, "SPATIAL"));
      if (filter == ctx.spatialFilters.end() || !filter->second.enabled) continue;
      if (filter->second.clip->boundary.size() >= 2) insert->clip = filter->second.clip;
    }
  }
}

void ApplyDrawOrders(Context& ctx) {
  constexpr std::uint64_t kLast = std::numeric_limits<std::uint64_t>::max();
  for (const SortentsObject& table : ctx.drawOrders) {
    const auto name = ctx.blockRecordNames.find(table.blockRecord);
    if (name == ctx.blockRecordNames.end()) continue;
    Block& block = ctx.BlockNamed(name->second);
    const std::size_t n = block.entities.size();
    if (n < 2 || n > std::numeric_limits<std::uint32_t>::max()) continue;
    const std::unordered_map<std::uint64_t, std::uint64_t> sortHandles(table.sortHandles.begin(),
                                                                       table.sortHandles.end());
    std::vector<std::uint64_t> keys(n);
    for (std::size_t i = 0; i < n; ++i) {
      const std::uint64_t own = HandleNumber(block.entities[i].handle);
      const auto it = sortHandles.find(own);
      keys[i] = it != sortHandles.end() ? it->second : own;
      if (keys[i] == 0) keys[i] = kLast;  // a null sort handle goes last
    }
    std::vector<std::uint32_t> order(n);
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return keys[a] < keys[b]; });
    if (!std::is_sorted(order.begin(), order.end())) block.drawOrder = std::move(order);
  }
}

}  // namespace sheafwork::embedded
