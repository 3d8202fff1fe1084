// The sample sheet holds every kind of entity the plot engine draws, as the
// reader finds them, with what its zones are there to show.

#include "dxfgen/sample_sheet.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <variant>

#include "embedded/dxf/reader.h"

namespace sheafwork::e2e {
namespace {

using embedded::Drawing;
using embedded::Entity;

TEST(SampleSheet, HoldsEveryKindOfEntityAndItsSettings) {
  const Drawing d = embedded::ReadDxf(dxfgen::WriteDxf(dxfgen::SampleSheet()), "planche.dxf");
  ASSERT_EQ(d.layouts.size(), 2u);
  const embedded::Block* paper = d.LayoutBlock(d.layouts[1]);
  ASSERT_NE(paper, nullptr);

  std::set<std::size_t> kinds;
  const auto collect = [&](const std::vector<Entity>& entities) {
    for (const Entity& e : entities) kinds.insert(e.geometry.index());
  };
  collect(paper->entities);
  collect(d.LayoutBlock(d.layouts[0])->entities);
  for (const embedded::Block& b : d.blocks) collect(b.entities);
  // Kinds our writer has no use for, read from other writers' drawings
  // (tests/data/dxf/entities), the kinds the host cannot draw, and raster
  // images, which need their file beside the drawing (tests/data/dxf/images).
  const std::set<std::size_t> fromOthers = {
      embedded::Geometry(embedded::ConstructionLine{}).index(),
      embedded::Geometry(embedded::MeshEdges{}).index(),
      embedded::Geometry(embedded::MultiLeader{}).index(),
      embedded::Geometry(embedded::Undrawn{}).index(),
      embedded::Geometry(embedded::RasterImage{}).index()};
  for (std::size_t i = 0; i < std::variant_size_v<embedded::Geometry>; ++i) {
    if (!fromOthers.count(i)) {
      EXPECT_TRUE(kinds.count(i)) << "no entity of kind " << i;
    }
  }
  EXPECT_TRUE(d.skippedEntities.empty());

  EXPECT_EQ(d.header.pdMode, 35);
  EXPECT_DOUBLE_EQ(d.header.pdSize, 3);
  EXPECT_TRUE(d.header.psLtScale);
  for (const char* name : {"TIRETS", "AXE", "POINTILLE", "CACHE", "TIRET_POINT"}) {
    const embedded::Linetype* lt = d.FindLinetype(name);
    ASSERT_NE(lt, nullptr) << name;
    EXPECT_GE(lt->dashes.size(), 2u) << name;
  }

  // Polylines with and without the linetype generation flag, a wipeout, a
  // clipped block reference, a twisted viewport with a frozen layer and one
  // clipped by an entity.
  std::set<std::string> shown;
  for (const Entity& e : paper->entities) {
    if (const auto* p = std::get_if<embedded::Polyline>(&e.geometry);
        p && e.props.linetype == "TIRETS") {
      shown.insert(p->linetypeGeneration ? "generation" : "per segment");
    }
    if (std::holds_alternative<embedded::Wipeout>(e.geometry)) shown.insert("wipeout");
    if (const auto* insert = std::get_if<embedded::Insert>(&e.geometry);
        insert && insert->clip && insert->clip->boundary.size() == 3) {
      shown.insert("clipped insert");
    }
    const auto* vp = std::get_if<embedded::Viewport>(&e.geometry);
    if (vp == nullptr) continue;
    if (vp->twist != 0 && vp->frozenLayers == std::vector<std::string>{"MOBILIER"}) {
      shown.insert("twisted");
    }
    for (const Entity& other : paper->entities) {
      if ((vp->flags & 65536) != 0 && other.handle == vp->clipBoundaryHandle &&
          std::holds_alternative<embedded::Polyline>(other.geometry)) {
        shown.insert("clipped viewport");
      }
    }
  }
  EXPECT_EQ(shown, (std::set<std::string>{"clipped insert", "clipped viewport", "generation",
                                          "per segment", "twisted", "wipeout"}));
}

}  // namespace
}  // namespace sheafwork::e2e
