#include "batch/selection_cache.h"

#include <algorithm>
#include <vector>

namespace sheafwork {

SelectionTooLarge::SelectionTooLarge() : std::length_error("more than 2000 rows are selected") {}

std::int16_t SelectionCache::SelectCountCache(std::span<const int> selectedPositions) {
  if (selectedPositions.size() > static_cast<std::size_t>(kCapacity)) throw SelectionTooLarge();
  std::vector<int> sorted(selectedPositions.begin(), selectedPositions.end());
  std::sort(sorted.begin(), sorted.end());
  std::size_t slot = 0;
  for (int position : sorted) slots_[slot++] = static_cast<std::int16_t>(position);
  slots_[slot] = kEndMark;
  return static_cast<std::int16_t>(sorted.size());
}

bool SelectionCache::FindEntryInArray(int position) const {
  for (std::int16_t slot : slots_) {
    if (slot == kEndMark) return false;
    if (slot == position) return true;
  }
  return false;
}

}  // namespace sheafwork
