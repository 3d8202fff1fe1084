#pragma once
// The positions of the selected rows, kept so that a reload can restore the
// selection and the settings dialogs can change every selected entry.

#include <array>
#include <cstdint>
#include <span>
#include <stdexcept>

namespace sheafwork {

/// More rows are selected than the cache holds.
class SelectionTooLarge : public std::length_error {
 public:
  SelectionTooLarge();
};

class SelectionCache {
 public:
  /// Positions that fit before the end mark; a hard limit.
  static constexpr int kCapacity = 2000;
  static constexpr std::int16_t kEndMark = -1;

  SelectionCache() { slots_.fill(kEndMark); }

  /// Stores the 1-based positions of the selected rows, in
  /// ascending order, followed by the end mark, and returns their number.
  /// Throws SelectionTooLarge for more than kCapacity positions.
  std::int16_t SelectCountCache(std::span<const int> selectedPositions);

  /// Whether `position` is among the stored positions.
  /// Scans from the first slot and stops at the end mark.
  bool FindEntryInArray(int position) const;

 private:
  std::array<std::int16_t, kCapacity + 1> slots_{};
};

}  // namespace sheafwork
