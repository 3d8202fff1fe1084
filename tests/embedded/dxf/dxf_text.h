#pragma once
// Builds small DXF texts for the tests: tags as "code\nvalue\n"; reads
// drawings made of them.

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "embedded/dxf/reader.h"

namespace sheafwork::embedded::testing {

using TagList = std::initializer_list<std::pair<int, std::string_view>>;

inline std::string Tags(TagList tags) {
  std::string out;
  for (const auto& [code, value] : tags) {
    out += std::to_string(code);
    out += '\n';
    out += value;
    out += '\n';
  }
  return out;
}

inline std::string Section(std::string_view name, const std::string& body) {
  return Tags({{0, "SECTION"}, {2, name}}) + body + Tags({{0, "ENDSEC"}});
}

inline std::string EndOfFile() { return Tags({{0, "EOF"}}); }

/// An entity's first tags as writers of release 2000 or later put them down:
/// its type, the entity subclass on layer 0, then its own subclass.
inline std::string EntityStart(std::string_view type, std::string_view subclass) {
  return Tags({{0, type}, {100, "AcDbEntity"}, {8, "0"}, {100, subclass}});
}

using Entries = std::initializer_list<std::pair<std::string_view, std::string_view>>;

/// A DICTIONARY object owned by `owner` (none when empty) whose `entries`
/// name the handles of their objects, under code `entryCode`.
inline std::string Dictionary(std::string_view handle, std::string_view owner, Entries entries,
                              int entryCode = 350) {
  std::string out = Tags({{0, "DICTIONARY"}, {5, handle}});
  if (!owner.empty()) out += Tags({{330, owner}});
  out += Tags({{100, "AcDbDictionary"}});
  for (const auto& [name, object] : entries) out += Tags({{3, name}, {entryCode, object}});
  return out;
}

inline std::string Header(TagList vars) { return Section("HEADER", Tags(vars)); }

/// A release 2000 drawing of `entities`, after `tables`, before `objects`.
inline Drawing ReadEntities(const std::string& entities, const std::string& tables = "",
                            const std::string& objects = "") {
  return ReadDxf(Header({{9, "$ACADVER"}, {1, "AC1015"}}) + tables + Section("ENTITIES", entities) +
                     (objects.empty() ? std::string() : Section("OBJECTS", objects)) + EndOfFile(),
                 "e.dxf");
}

inline const std::vector<Entity>& ModelEntities(const Drawing& d) {
  return d.FindBlock("*Model_Space")->entities;
}

/// The geometries of kind `Kind` in `block`, in order.
template <typename Kind>
std::vector<const Kind*> All(const Block& block) {
  std::vector<const Kind*> found;
  for (const Entity& entity : block.entities) {
    if (const auto* geometry = std::get_if<Kind>(&entity.geometry)) found.push_back(geometry);
  }
  return found;
}

}  // namespace sheafwork::embedded::testing
