#include "embedded/pdf/optional_content.h"

#include <algorithm>
#include <numeric>

#include "embedded/pdf/pdf_strings.h"

namespace sheafwork::embedded::pdf {

namespace {

std::string Reference(int object) { return std::to_string(object) + " 0 R"; }

}  // namespace

const std::string& OptionalContent::Resource(std::string_view name) {
  const auto found = byName_.find(name);
  if (found != byName_.end()) return groups_[found->second].resource;
  groups_.push_back({std::string(name), "/L" + std::to_string(groups_.size() + 1)});
  byName_.emplace(std::string(name), groups_.size() - 1);
  return groups_.back().resource;
}

std::vector<std::string> OptionalContent::GroupDictionaries() const {
  std::vector<std::string> dictionaries;
  dictionaries.reserve(groups_.size());
  for (const Group& group : groups_) {
    dictionaries.push_back("<< /Type /OCG /Name " + TextString(group.name) + " >>");
  }
  return dictionaries;
}

std::string OptionalContent::PropertiesEntry(std::span<const int> objects) const {
  std::string entry = "/Properties <<";
  for (std::size_t i = 0; i < groups_.size() && i < objects.size(); ++i) {
    entry += ' ' + groups_[i].resource + ' ' + Reference(objects[i]);
  }
  return entry + " >>";
}

std::string OptionalContent::CatalogEntry(std::span<const int> objects) const {
  const std::size_t count = std::min(groups_.size(), objects.size());
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += (i > 0 ? " " : "") + Reference(objects[i]);
  // The panel lists layers by name, as the drawing's layer table does.
  std::vector<std::size_t> byName(count);
  std::iota(byName.begin(), byName.end(), std::size_t{0});
  std::sort(byName.begin(), byName.end(),
            [this](std::size_t a, std::size_t b) { return groups_[a].name < groups_[b].name; });
  std::string order;
  for (std::size_t i : byName) order += (order.empty() ? "" : " ") + Reference(objects[i]);
  return "/OCProperties << /OCGs [" + all + "] /D << /Order [" + order + "] /ON [" + all +
         "] >> >>";
}

}  // namespace sheafwork::embedded::pdf
