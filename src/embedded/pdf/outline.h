#pragma once
// A document's outline: the tree of titled entries a reader shows beside
// the pages (its bookmarks), each opening a page.

#include <span>
#include <string>
#include <vector>

namespace sheafwork::embedded::pdf {

struct OutlineItem {
  std::string title;  ///< UTF-8
  int page = 0;       ///< from 0, in the document's pages
  std::vector<OutlineItem> children;
};

/// Objects in an outline of `items`, its root included.
int OutlineObjectCount(std::span<const OutlineItem> items);

/// The bodies of the outline's objects, numbered from `first` on: the root
/// first, then the entries depth first. Every entry is open and fits its
/// page (`pages`: the pages' object numbers) in the reader's window; one
/// whose page does not exist opens none.
std::vector<std::string> OutlineObjects(std::span<const OutlineItem> items,
                                        std::span<const int> pages, int first);

}  // namespace sheafwork::embedded::pdf
