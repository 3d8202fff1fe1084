// Multi-line text as another program writes it (tests/data/dxf/mtext, made
// by make_drawings.py there): column layouts in the forms of release 2018
// and of older releases, background fills, directions, and attributes
// followed by an xrecord part.

#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

#include "embedded/dxf/dxf_fixtures.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

using testing::All;

const Block& Model(const Drawing& drawing) {
  const Block* model = drawing.LayoutBlock(drawing.layouts.front());
  EXPECT_NE(model, nullptr);
  return *model;
}

TEST(MTextReadingTest, ColumnLayoutsInBothForms) {
  // Static columns, dynamic columns of one height, of their own heights;
  // the older form adds a linked MTEXT per further column, with no layout.
  for (const char* file : {"columns-r2018.dxf", "columns-r2007.dxf"}) {
    SCOPED_TRACE(file);
    const Drawing drawing = testing::ReadFixture(std::string("mtext/") + file);
    std::vector<const MText*> laidOut;
    for (const MText* m : All<MText>(Model(drawing))) {
      if (m->extras && m->extras->columns.type != 0) laidOut.push_back(m);
    }
    ASSERT_EQ(laidOut.size(), 3u);
    const MTextColumns& fixed = laidOut[0]->extras->columns;
    EXPECT_EQ(fixed.type, 1);
    EXPECT_EQ(fixed.count, 3);
    EXPECT_DOUBLE_EQ(fixed.width, 30);
    EXPECT_DOUBLE_EQ(fixed.gutter, 5);
    EXPECT_DOUBLE_EQ(fixed.height, 40);
    const MTextColumns& flowing = laidOut[1]->extras->columns;
    EXPECT_EQ(flowing.type, 2);
    EXPECT_TRUE(flowing.autoHeight);
    EXPECT_DOUBLE_EQ(flowing.width, 40);
    EXPECT_DOUBLE_EQ(flowing.gutter, 4);
    EXPECT_DOUBLE_EQ(flowing.height, 20);
    const MTextColumns& manual = laidOut[2]->extras->columns;
    EXPECT_EQ(manual.type, 2);
    EXPECT_FALSE(manual.autoHeight);
    EXPECT_EQ(manual.count, 2);
    EXPECT_EQ(manual.heights, (std::vector<double>{10, 25}));
    // The embedded object repeats the insertion point in codes of its own:
    // it must not move the text.
    EXPECT_DOUBLE_EQ(laidOut[0]->insert.y, 100);
  }
}

TEST(MTextReadingTest, BackgroundFillAndFrame) {
  const Drawing drawing = testing::ReadFixture("mtext/background.dxf");
  const std::vector<const MText*> texts = All<MText>(Model(drawing));
  ASSERT_EQ(texts.size(), 4u);
  struct Expected {
    std::int32_t flags;
    std::int16_t color;
    std::optional<std::uint32_t> trueColor;
    double scale;
  };
  const Expected expected[] = {{1, 1, std::nullopt, 1.5},
                               {17, 0, 0x0080FF, 2},
                               {3, 0, std::nullopt, 1.5},
                               {16, 0, std::nullopt, 1.5}};
  for (std::size_t i = 0; i < texts.size(); ++i) {
    SCOPED_TRACE(texts[i]->text);
    ASSERT_NE(texts[i]->extras, nullptr);
    const MTextBackground& background = texts[i]->extras->background;
    EXPECT_EQ(background.flags, expected[i].flags);
    EXPECT_EQ(background.color, expected[i].color);
    EXPECT_EQ(background.trueColor, expected[i].trueColor);
    EXPECT_DOUBLE_EQ(background.scale, expected[i].scale);
  }
}

TEST(MTextReadingTest, AttributeVisibilityIsTheAttributesOwn) {
  // Each attribute is followed by an xrecord part whose own 70 codes
  // ("really locked" among them) say nothing of visibility.
  const Drawing drawing = testing::ReadFixture("mtext/attributes-r2018.dxf");
  const std::vector<const Insert*> inserts = All<Insert>(Model(drawing));
  ASSERT_EQ(inserts.size(), 1u);
  ASSERT_EQ(inserts[0]->attributes.size(), 2u);
  EXPECT_EQ(inserts[0]->attributes[0].tag, "TITRE");
  EXPECT_FALSE(inserts[0]->attributes[0].invisible);
  EXPECT_EQ(inserts[0]->attributes[1].tag, "CACHE");
  EXPECT_TRUE(inserts[0]->attributes[1].invisible);
}

}  // namespace
}  // namespace sheafwork::embedded
