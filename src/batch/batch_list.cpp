#include "batch/batch_list.h"

#include <string>

#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

std::size_t BatchList::Index(int n) const {
  if (n < 1 || n > EntryCount()) {
    throw std::out_of_range("no batch entry " + std::to_string(n));
  }
  return static_cast<std::size_t>(n - 1);
}

BatchEntry& BatchList::Entry(int n) { return entries_[Index(n)]; }

const BatchEntry& BatchList::Entry(int n) const { return entries_[Index(n)]; }

BatchEntry& BatchList::Append() {
  Resize(EntryCount() + 1);
  return entries_.back();
}

void BatchList::Resize(int count) {
  if (count < 0 || count > kMaxEntries) {
    throw std::length_error(LoadResourceText(ids::kListTooManyEntries));
  }
  entries_.resize(static_cast<std::size_t>(count));
}

void BatchList::Remove(int n) {
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(Index(n)));
}

}  // namespace sheafwork
