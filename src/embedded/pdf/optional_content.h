#pragma once
// The drawing's layers as the document's optional content groups: a PDF
// reader lists them in its layers panel and can hide or show each one.
// A group is made, and given its object number, the first time a page (one
// painted, or one imported from another file) names its layer; the groups
// are written once, when the document closes.

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sheafwork::embedded::pdf {

class OptionalContent {
 public:
  /// Gives each new group the next object number of the document.
  using Numbering = std::function<int()>;

  /// Groups numbered 1, 2, 3... (for content that is not a document's).
  OptionalContent();
  explicit OptionalContent(Numbering numbering) : numbering_(std::move(numbering)) {}

  /// The resource name ("/L3") by which page content marks what belongs to
  /// layer `name`; the group is made the first time.
  const std::string& Resource(std::string_view name) { return groups_[Find(name)].resource; }
  /// The object number of layer `name`'s group, made the first time.
  int Object(std::string_view name) { return groups_[Find(name)].object; }

  std::size_t Size() const { return groups_.size(); }

  /// Each group's object number and dictionary, in the order they were made.
  std::vector<std::pair<int, std::string>> GroupObjects() const;
  /// "/Properties << /L1 7 0 R … >>" for the pages' resources.
  std::string PropertiesEntry() const;
  /// "/OCProperties << … >>" for the catalog: every group, on, listed by
  /// name.
  std::string CatalogEntry() const;

 private:
  struct Group {
    std::string name;
    std::string resource;
    int object = 0;
  };
  std::size_t Find(std::string_view name);

  Numbering numbering_;
  std::vector<Group> groups_;
  std::map<std::string, std::size_t, std::less<>> byName_;
};

}  // namespace sheafwork::embedded::pdf
