#pragma once
// The drawing's layers as the document's optional content groups: a PDF
// reader lists them in its layers panel and can hide or show each one.
// Groups are made as pages name them and written once, when the document
// closes.

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sheafwork::embedded::pdf {

class OptionalContent {
 public:
  /// The resource name ("/L3") by which page content marks what belongs to
  /// layer `name`; the group is made the first time.
  const std::string& Resource(std::string_view name);

  std::size_t Size() const { return groups_.size(); }

  /// The group dictionaries, in the order the groups were made; `objects`
  /// are their object numbers in that order.
  std::vector<std::string> GroupDictionaries() const;
  /// "/Properties << /L1 7 0 R … >>" for the pages' resources.
  std::string PropertiesEntry(std::span<const int> objects) const;
  /// "/OCProperties << … >>" for the catalog: every group, on, listed by
  /// name.
  std::string CatalogEntry(std::span<const int> objects) const;

 private:
  struct Group {
    std::string name;
    std::string resource;
  };
  std::vector<Group> groups_;
  std::map<std::string, std::size_t, std::less<>> byName_;
};

}  // namespace sheafwork::embedded::pdf
