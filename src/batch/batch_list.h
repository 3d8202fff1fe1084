#pragma once
// The ordered rows of a batch, numbered from 1 to EntryCount.

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "batch/batch_entry.h"

namespace sheafwork {

class BatchList {
 public:
  /// EntryCount is a 16-bit signed number.
  static constexpr int kMaxEntries = 32767;

  std::int16_t EntryCount() const { return static_cast<std::int16_t>(entries_.size()); }
  bool Empty() const { return entries_.empty(); }

  /// Entry n, 1 <= n <= EntryCount; throws std::out_of_range otherwise.
  BatchEntry& Entry(int n);
  const BatchEntry& Entry(int n) const;

  /// Grows the list by one cleared entry and returns it. Throws
  /// std::length_error when the list is full.
  BatchEntry& Append();

  /// Resizes to `count` entries, keeping those that fit; new entries are
  /// cleared. Throws std::length_error outside 0..kMaxEntries.
  void Resize(int count);

  /// Removes entry n; the entries after it move down by one place.
  void Remove(int n);

  void Clear() { entries_.clear(); }

  auto begin() const { return entries_.begin(); }
  auto end() const { return entries_.end(); }

  bool operator==(const BatchList&) const = default;

 private:
  /// The vector index of entry n; throws std::out_of_range when there is none.
  std::size_t Index(int n) const;

  std::vector<BatchEntry> entries_;
};

}  // namespace sheafwork
