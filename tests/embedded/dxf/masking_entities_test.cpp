// Wipeouts, the wipeout frame setting, the linetype generation flag of
// polylines and the clip boundaries of block references, as the reader
// decodes them.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/dxf/dxf_text.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

using testing::Dictionary;
using testing::EntityStart;
using testing::Tags;

Drawing Read(const std::string& entities, const std::string& objects = "") {
  return testing::ReadEntities(entities, "", objects);
}

const Entity& First(const Drawing& d) { return testing::ModelEntities(d).at(0); }

std::string WipeoutTags(const std::string& clipTags, const char* clipping = "1") {
  return Tags({{0, "WIPEOUT"},
               {5, "3A"},
               {100, "AcDbEntity"},
               {8, "Masque"},
               {100, "AcDbRasterImage"},
               {90, "0"},
               {10, "100"},
               {20, "50"},
               {30, "0"},
               {11, "40"},
               {21, "0"},
               {31, "0"},
               {12, "0"},
               {22, "20"},
               {32, "0"},
               {13, "1"},
               {23, "1"},
               {340, "0"},
               {70, "7"},
               {280, clipping},
               {281, "50"},
               {282, "50"},
               {283, "0"},
               {360, "0"}}) +
         clipTags + Tags({{100, "AcDbWipeout"}});
}

TEST(ReaderWipeout, PlacementAndPolygonBoundaryInPixels) {
  const Drawing d = Read(WipeoutTags(Tags({{71, "2"},
                                           {91, "4"},
                                           {14, "-0.5"},
                                           {24, "-0.5"},
                                           {14, "0.5"},
                                           {24, "-0.5"},
                                           {14, "0"},
                                           {24, "0.5"},
                                           {14, "-0.5"},
                                           {24, "-0.5"}})));
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
  const std::string frameVariables =
      Tags({{0, "WIPEOUTVARIABLES"}, {5, "7F"}, {100, "AcDbWipeoutVariables"}, {70, "1"}});
  struct Case {
    const char* name;
    std::string clip;
    std::string objects;
    const char* clippingState;
    bool clipping;
    std::int16_t frame;
  };
  const Case cases[] = {
      {"rectangle, no frame object",
       Tags({{71, "1"}, {91, "2"}, {14, "-0.5"}, {24, "-0.5"}, {14, "0.5"}, {24, "0.5"}}), "", "1",
       true, 0},
      {"frame shown", Tags({{71, "1"}, {91, "0"}}), frameVariables, "1", true, 1},
      // Clipping state 0 is kept: the whole image is masked then.
      {"clipping off", Tags({{71, "1"}, {91, "0"}}), "", "0", false, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Drawing d = Read(WipeoutTags(c.clip, c.clippingState), c.objects);
    const auto& w = std::get<Wipeout>(First(d).geometry);
    EXPECT_EQ(w.clipType, 1);
    EXPECT_EQ(w.clipping, c.clipping);
    EXPECT_EQ(d.header.wipeoutFrame, c.frame);
  }
}

TEST(ReaderPolylines, LinetypeGenerationFlagOfBothKinds) {
  struct Case {
    const char* name;
    std::string tags;
    bool generation;
    bool closed;
  };
  const auto lw = [](const char* flags) {
    return EntityStart("LWPOLYLINE", "AcDbPolyline") +
           Tags({{90, "2"}, {70, flags}, {10, "0"}, {20, "0"}, {10, "5"}, {20, "0"}});
  };
  const auto old = [](const char* flags) {
    return EntityStart("POLYLINE", "AcDb2dPolyline") + Tags({{66, "1"},
                                                             {70, flags},
                                                             {0, "VERTEX"},
                                                             {100, "AcDbEntity"},
                                                             {8, "0"},
                                                             {100, "AcDbVertex"},
                                                             {100, "AcDb2dVertex"},
                                                             {10, "0"},
                                                             {20, "0"},
                                                             {0, "VERTEX"},
                                                             {100, "AcDbEntity"},
                                                             {8, "0"},
                                                             {100, "AcDbVertex"},
                                                             {100, "AcDb2dVertex"},
                                                             {10, "5"},
                                                             {20, "0"},
                                                             {0, "SEQEND"}});
  };
  const Case cases[] = {
      {"light, 128", lw("128"), true, false}, {"light, 129", lw("129"), true, true},
      {"light, 1", lw("1"), false, true},     {"heavy, 128", old("128"), true, false},
      {"heavy, 0", old("0"), false, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Drawing d = Read(c.tags);
    const auto& p = std::get<Polyline>(First(d).geometry);
    EXPECT_EQ(p.linetypeGeneration, c.generation);
    EXPECT_EQ(p.closed, c.closed);
    EXPECT_EQ(p.vertices.size(), 2u);
  }
}

// An INSERT whose extension dictionary leads to a spatial filter.
std::string ClippedInsert() {
  return Tags({{0, "INSERT"},
               {5, "4A"},
               {102, "{ACAD_XDICTIONARY"},
               {360, "4B"},
               {102, "}"},
               {100, "AcDbEntity"},
               {8, "0"},
               {100, "AcDbBlockReference"},
               {2, "B"},
               {10, "100"},
               {20, "0"},
               {30, "0"}});
}

std::string FilterObjects(const char* enabled, const char* filterKey) {
  return Dictionary("C", "", {}) + Dictionary("4B", "4A", {{"ACAD_FILTER", "4C"}}, 360) +
         Dictionary("4C", "4B", {{filterKey, "4D"}}, 360) +
         Tags({{0, "SPATIAL_FILTER"},
               {5, "4D"},
               {330, "4C"},
               {100, "AcDbFilter"},
               {100, "AcDbSpatialFilter"},
               {70, "3"},
               {10, "0"},
               {20, "0"},
               {10, "5"},
               {20, "0"},
               {10, "0"},
               {20, "5"},
               {210, "0"},
               {220, "0"},
               {230, "1"},
               {11, "0"},
               {21, "0"},
               {31, "0"},
               {71, enabled},
               {72, "0"},
               {73, "0"}});
}

TEST(ReaderInserts, ClipBoundaryThroughTheExtensionDictionary) {
  struct Case {
    const char* name;
    std::string objects;
    std::size_t points;
  };
  const Case cases[] = {
      {"clipped", FilterObjects("1", "SPATIAL"), 3},
      {"clipping off", FilterObjects("0", "SPATIAL"), 0},
      {"another filter", FilterObjects("1", "AUTRE"), 0},
      {"no objects", "", 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Drawing d = Read(ClippedInsert(), c.objects);
    const auto& insert = std::get<Insert>(First(d).geometry);
    EXPECT_EQ(insert.block, "B");
    ASSERT_EQ(insert.clip != nullptr, c.points != 0);
    if (c.points == 3) {
      const std::vector<Vec2>& boundary = insert.clip->boundary;
      ASSERT_EQ(boundary.size(), c.points);
      EXPECT_DOUBLE_EQ(boundary[1].x, 5);
      EXPECT_DOUBLE_EQ(boundary[2].y, 5);
    }
  }
}

}  // namespace
}  // namespace sheafwork::embedded
