#include "embedded/pdf/outline.h"

#include "embedded/pdf/pdf_strings.h"

namespace sheafwork::embedded::pdf {

namespace {

std::string Reference(int object) { return std::to_string(object) + " 0 R"; }

/// Entries in `items` and below them.
int Entries(std::span<const OutlineItem> items) {
  int count = 0;
  for (const OutlineItem& item : items) count += 1 + Entries(item.children);
  return count;
}

/// " /First … /Last … /Count n" of a parent whose children are `numbers`,
/// all open.
std::string ChildrenEntries(const std::vector<int>& numbers, std::span<const OutlineItem> items) {
  if (numbers.empty()) return {};
  return " /First " + Reference(numbers.front()) + " /Last " + Reference(numbers.back()) +
         " /Count " + std::to_string(Entries(items));
}

class OutlineWriter {
 public:
  OutlineWriter(std::span<const int> pages, int first, int count)
      : pages_(pages), first_(first), bodies_(static_cast<std::size_t>(count)) {}

  /// Writes `items`, the children of object `parent`, numbered from `from`
  /// on, each followed by its own children; returns their numbers.
  std::vector<int> Siblings(std::span<const OutlineItem> items, int parent, int from) {
    std::vector<int> numbers;
    for (const OutlineItem& item : items) {
      numbers.push_back(from);
      from += 1 + Entries(item.children);
    }
    for (std::size_t i = 0; i < items.size(); ++i) {
      const OutlineItem& item = items[i];
      std::string body = "<< /Title " + TextString(item.title) + " /Parent " + Reference(parent);
      if (i > 0) body += " /Prev " + Reference(numbers[i - 1]);
      if (i + 1 < items.size()) body += " /Next " + Reference(numbers[i + 1]);
      if (item.page >= 0 && static_cast<std::size_t>(item.page) < pages_.size()) {
        body += " /Dest [" + Reference(pages_[static_cast<std::size_t>(item.page)]) + " /Fit]";
      }
      const std::vector<int> children = Siblings(item.children, numbers[i], numbers[i] + 1);
      Set(numbers[i], body + ChildrenEntries(children, item.children) + " >>");
    }
    return numbers;
  }

  void Set(int number, std::string body) {
    bodies_[static_cast<std::size_t>(number - first_)] = std::move(body);
  }
  std::vector<std::string> Take() { return std::move(bodies_); }

 private:
  std::span<const int> pages_;
  int first_;
  std::vector<std::string> bodies_;
};

}  // namespace

int OutlineObjectCount(std::span<const OutlineItem> items) { return 1 + Entries(items); }

std::vector<std::string> OutlineObjects(std::span<const OutlineItem> items,
                                        std::span<const int> pages, int first) {
  OutlineWriter writer(pages, first, OutlineObjectCount(items));
  const std::vector<int> top = writer.Siblings(items, first, first + 1);
  writer.Set(first, "<< /Type /Outlines" + ChildrenEntries(top, items) + " >>");
  return writer.Take();
}

}  // namespace sheafwork::embedded::pdf
