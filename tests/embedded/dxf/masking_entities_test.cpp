// Wipeouts, the wipeout frame setting, the linetype generation flag of
// polylines and the clip boundaries of block references, as the reader
// decodes them (tests/data/dxf/masking, written by hand).

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/dxf/dxf_fixtures.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

Drawing Read(const std::string& name) { return testing::ReadFixture("masking/" + name); }

const Entity& First(const Drawing& d) { return testing::ModelEntities(d).at(0); }

TEST(ReaderWipeout, PlacementAndPolygonBoundaryInPixels) {
  const Drawing d = Read("wipeout-polygon.dxf");
  const Entity& e = First(d);
  EXPECT_EQ(e.props.layer, "Masque");
  const auto& w = std::get<Wipeout>(e.geometry);
  EXPECT_DOUBLE_EQ(w.insert.x, 100);
  EXPECT_DOUBLE_EQ(w.insert.y, 50);
  EXPECT_DOUBLE_EQ(w.uPixel.x, 40);
  EXPECT_DOUBLE_EQ(w.vPixel.y, 20);
  EXPECT_DOUBLE_EQ(w.imageSize.x, 1);
  EXPECT_DOUBLE_EQ(w.imageSize.y, 1);
  EXPECT_EQ(w.displayFlags, 7);
  EXPECT_TRUE(w.clipping);
  EXPECT_EQ(w.clipType, 2);
  ASSERT_EQ(w.clipVertices.size(), 4u);
  EXPECT_DOUBLE_EQ(w.clipVertices[1].x, 0.5);
  EXPECT_DOUBLE_EQ(w.clipVertices[1].y, -0.5);
  EXPECT_DOUBLE_EQ(w.clipVertices[2].x, 0);
  EXPECT_DOUBLE_EQ(w.clipVertices[2].y, 0.5);
}

TEST(ReaderWipeout, RectangleBoundaryClippingOffAndFrameSetting) {
  struct Case {
    const char* file;
    bool clipping;  ///< state 0 is kept: the whole image is masked then
    std::int16_t frame;
  };
  const Case cases[] = {
      {"wipeout-rectangle.dxf", true, 0},  // no WIPEOUTVARIABLES object
      {"wipeout-frame-shown.dxf", true, 1},
      {"wipeout-clipping-off.dxf", false, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const Drawing d = Read(c.file);
    const auto& w = std::get<Wipeout>(First(d).geometry);
    EXPECT_EQ(w.clipType, 1);
    EXPECT_EQ(w.clipping, c.clipping);
    EXPECT_EQ(d.header.wipeoutFrame, c.frame);
  }
}

// Light (LWPOLYLINE) and heavy (POLYLINE) polylines of two vertices, flags
// as the file name says.
TEST(ReaderPolylines, LinetypeGenerationFlagOfBothKinds) {
  struct Case {
    const char* file;
    bool generation;
    bool closed;
  };
  const Case cases[] = {
      {"lwpolyline-128.dxf", true, false}, {"lwpolyline-129.dxf", true, true},
      {"lwpolyline-1.dxf", false, true},   {"polyline-128.dxf", true, false},
      {"polyline-0.dxf", false, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const Drawing d = Read(c.file);
    const auto& p = std::get<Polyline>(First(d).geometry);
    EXPECT_EQ(p.linetypeGeneration, c.generation);
    EXPECT_EQ(p.closed, c.closed);
    EXPECT_EQ(p.vertices.size(), 2u);
  }
}

// An INSERT whose extension dictionary leads to a spatial filter of three
// points, enabled or not, under the key SPATIAL or another one.
TEST(ReaderInserts, ClipBoundaryThroughTheExtensionDictionary) {
  const std::pair<const char*, bool> cases[] = {
      {"insert-clipped.dxf", true},
      {"insert-clip-off.dxf", false},
      {"insert-other-filter.dxf", false},
      {"insert-no-objects.dxf", false},
  };
  for (const auto& [file, clipped] : cases) {
    SCOPED_TRACE(file);
    const Drawing d = Read(file);
    const auto& insert = std::get<Insert>(First(d).geometry);
    EXPECT_EQ(insert.block, "B");
    ASSERT_EQ(insert.clip != nullptr, clipped);
    if (clipped) {
      const std::vector<Vec2>& boundary = insert.clip->boundary;
      ASSERT_EQ(boundary.size(), 3u);
      EXPECT_DOUBLE_EQ(boundary[1].x, 5);
      EXPECT_DOUBLE_EQ(boundary[2].y, 5);
    }
  }
}

}  // namespace
}  // namespace sheafwork::embedded
