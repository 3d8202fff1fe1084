#pragma once
// The drawings of tests/data/dxf, read by the reader, and what it made of
// them.

#include <string>
#include <variant>
#include <vector>

#include "embedded/dxf/reader.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded::testing {

/// The drawing tests/data/dxf/`relative`.
inline Drawing ReadFixture(const std::string& relative) {
  return ReadDxfFile(sheafwork::testing::TestData("dxf/" + relative));
}

inline const std::vector<Entity>& ModelEntities(const Drawing& d) {
  return d.FindBlock("*Model_Space")->entities;
}

/// The geometries of kind `Kind` among `entities`, in order.
template <typename Kind>
std::vector<const Kind*> All(const std::vector<Entity>& entities) {
  std::vector<const Kind*> found;
  for (const Entity& entity : entities) {
    if (const auto* geometry = std::get_if<Kind>(&entity.geometry)) found.push_back(geometry);
  }
  return found;
}

}  // namespace sheafwork::embedded::testing
