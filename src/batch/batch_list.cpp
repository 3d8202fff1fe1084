#include "batch/batch_list.h"

#include <string>

namespace sheafwork {

BatchEntry& BatchList::Entry(int n) {
  if (n < 1 || n > EntryCount()) {
    throw std::out_of_range("no batch entry " + std::to_string(n));
  }
  return entries_[static_cast<std::size_t>(n - 1)];
}

const BatchEntry& BatchList::Entry(int n) const { return const_cast<BatchList*>(this)->Entry(n); }

BatchEntry& BatchList::Append() {
  Resize(EntryCount() + 1);
  return entries_.back();
}

void BatchList::Resize(int count) {
  if (count < 0 || count > kMaxEntries) {
    throw std::length_error("a batch list holds 0 to 32767 entries, not " + std::to_string(count));
  }
  entries_.resize(static_cast<std::size_t>(count));
}

void BatchList::Remove(int n) {
  Entry(n);  // range check
  entries_.erase(entries_.begin() + (n - 1));
}

}  // namespace sheafwork
