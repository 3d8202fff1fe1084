// Construction lines, meshes, multileaders and attribute definitions from
// drawings written by ezdxf (tests/data/dxf/entities), plotted 1:1 on a
// 100 mm sheet: where each must leave ink, and where it must not.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/render/render_test_support.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

constexpr double kPx = 4;

struct InkCase {
  const char* file;
  std::vector<Vec2> ink;    ///< sheet points with ink within 0.6 mm
  std::vector<Vec2> blank;  ///< sheet points without
};

void PrintTo(const InkCase& c, std::ostream* os) { *os << c.file; }

class EntityKindsRender : public ::testing::TestWithParam<InkCase> {};

TEST_P(EntityKindsRender, InkLandsWhereTheEntitiesAre) {
  const InkCase& c = GetParam();
  const Drawing d = ReadTestDrawing(std::string("dxf/entities/") + c.file);
  const QImage image = RenderSheet(d, ModelOf(d), OneToOneSettings(100), kPx);
  for (const Vec2 p : c.ink) {
    EXPECT_TRUE(InkNear(image, kPx, p, 0.6)) << "no ink at " << p.x << ", " << p.y;
  }
  for (const Vec2 p : c.blank) {
    EXPECT_FALSE(InkNear(image, kPx, p, 0.6)) << "ink at " << p.x << ", " << p.y;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Files, EntityKindsRender,
    ::testing::Values(
        // The line through (50, 50) both ways to the sheet's edges; the ray
        // from (20, 80) to the right only.
        InkCase{"construction_lines.dxf", {{5, 5}, {95, 95}, {50, 80}, {95, 80}}, {{10, 80}}},
        // Polyface squares, the 3 × 3 polygon mesh, the MESH square; not
        // inside their faces.
        InkCase{"meshes.dxf",
                {{20, 10}, {40, 30}, {30, 20}, {67, 25}, {82, 40}, {25, 60}, {40, 75}},
                {{20, 20}, {67, 18}, {25, 75}}},
        // Arrow tips, landings, the text and the block's circle.
        InkCase{"multileaders.dxf",
                {{20.3, 20.6}, {44, 47.5}, {51, 47.6}, {60.2, 21}, {85, 80}},
                {{30, 70}, {15, 15}}},
        // The stand-alone definition's tag and the reference's attribute; not
        // the definition inside the block, where the attribute would be
        // without its move.
        InkCase{"attribute_definitions.dxf", {{10.4, 12.5}, {10.4, 77.5}}, {{10.4, 64.5}}}));

}  // namespace
}  // namespace sheafwork::embedded
