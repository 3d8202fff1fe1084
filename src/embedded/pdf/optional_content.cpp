#include "embedded/pdf/optional_content.h"

#include <algorithm>
#include <numeric>

#include "embedded/pdf/pdf_strings.h"

namespace sheafwork::embedded::pdf {

namespace {

std::string Reference(int object) { return std::to_string(object) + " 0 R"; }

}  // namespace

OptionalContent::OptionalContent()
    : numbering_([this] { return static_cast<int>(groups_.size()) + 1; }) {}

std::size_t OptionalContent::Find(std::string_view name) {
  const auto found = byName_.find(name);
  if (found != byName_.end()) return found->second;
  const int object = numbering_();
  groups_.push_back({std::string(name), "/L" + std::to_string(groups_.size() + 1), object});
  byName_.emplace(std::string(name), groups_.size() - 1);
  return groups_.size() - 1;
}

std::vector<std::pair<int, std::string>> OptionalContent::GroupObjects() const {
  std::vector<std::pair<int, std::string>> objects;
  objects.reserve(groups_.size());
  for (const Group& group : groups_) {
    objects.emplace_back(group.object, "<< /Type /OCG /Name " + TextString(group.name) + " >>");
  }
  return objects;
}

std::string OptionalContent::PropertiesEntry() const {
  std::string entry = "/Properties <<";
  for (const Group& group : groups_) entry += ' ' + group.resource + ' ' + Reference(group.object);
  return entry + " >>";
}

std::string OptionalContent::CatalogEntry() const {
  std::string all;
  for (const Group& group : groups_) all += (all.empty() ? "" : " ") + Reference(group.object);
  // The panel lists layers by name, as the drawing's layer table does.
  std::vector<std::size_t> byName(groups_.size());
  std::iota(byName.begin(), byName.end(), std::size_t{0});
  std::sort(byName.begin(), byName.end(),
            [this](std::size_t a, std::size_t b) { return groups_[a].name < groups_[b].name; });
  std::string order;
  for (std::size_t i : byName) order += (order.empty() ? "" : " ") + Reference(groups_[i].object);
  return "/OCProperties << /OCGs [" + all + "] /D << /Order [" + order + "] /ON [" + all +
         "] >> >>";
}

}  // namespace sheafwork::embedded::pdf
