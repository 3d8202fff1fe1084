// Wipeouts, the wipeout frame setting and the linetype generation flag of
// polylines, as the reader decodes them.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/dxf/dxf_text.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

using testing::EndOfFile;
using testing::Header;
using testing::Section;
using testing::Tags;

Drawing Read(const std::string& entities, const std::string& objects = "") {
  return ReadDxf(Header({{9, "$ACADVER"}, {1, "AC1015"}}) + Section("ENTITIES", entities) +
                     (objects.empty() ? std::string() : Section("OBJECTS", objects)) + EndOfFile(),
                 "w.dxf");
}

const Entity& First(const Drawing& d) { return d.FindBlock("*Model_Space")->entities.at(0); }

std::string WipeoutTags(const std::string& clipTags) {
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
               {280, "1"},
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
    bool clipping;
    std::int16_t frame;
  };
  const Case cases[] = {
      {"rectangle, no frame object",
       Tags({{71, "1"}, {91, "2"}, {14, "-0.5"}, {24, "-0.5"}, {14, "0.5"}, {24, "0.5"}}), "", true,
       0},
      {"frame shown", Tags({{71, "1"}, {91, "0"}}), frameVariables, true, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Drawing d = Read(WipeoutTags(c.clip), c.objects);
    const auto& w = std::get<Wipeout>(First(d).geometry);
    EXPECT_EQ(w.clipType, 1);
    EXPECT_EQ(w.clipping, c.clipping);
    EXPECT_EQ(d.header.wipeoutFrame, c.frame);
  }
  // Clipping state 0 is kept: the whole image is masked then.
  std::string off = WipeoutTags("");
  off.replace(off.find("280\n1\n"), 6, "280\n0\n");
  const Drawing d = Read(off);
  EXPECT_FALSE(std::get<Wipeout>(First(d).geometry).clipping);
}

TEST(ReaderPolylines, LinetypeGenerationFlagOfBothKinds) {
  struct Case {
    const char* name;
    std::string tags;
    bool generation;
    bool closed;
  };
  const auto lw = [](const char* flags) {
    return Tags({{0, "LWPOLYLINE"},
                 {100, "AcDbEntity"},
                 {8, "0"},
                 {100, "AcDbPolyline"},
                 {90, "2"},
                 {70, flags},
                 {10, "0"},
                 {20, "0"},
                 {10, "5"},
                 {20, "0"}});
  };
  const auto old = [](const char* flags) {
    return Tags({{0, "POLYLINE"},
                 {100, "AcDbEntity"},
                 {8, "0"},
                 {100, "AcDb2dPolyline"},
                 {66, "1"},
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
    const auto& p = std::get<Polyline>(First(Read(c.tags)).geometry);
    EXPECT_EQ(p.linetypeGeneration, c.generation);
    EXPECT_EQ(p.closed, c.closed);
    EXPECT_EQ(p.vertices.size(), 2u);
  }
}

}  // namespace
}  // namespace sheafwork::embedded
