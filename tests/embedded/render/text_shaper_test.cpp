#include "embedded/render/text_shaper.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/render/render_test_support.h"

namespace sheafwork::embedded {
namespace {

using testing::FixedMeasure;  // every character one cap height wide

MTextFormat Base(double height = 1) {
  MTextFormat f;
  f.height = height;
  f.family = "Fixe";
  return f;
}

ShapedText Shape(const char* contents, TextBlock block, double height = 1) {
  FixedMeasure measure;
  const std::vector<MTextPiece> pieces = ParseMText(contents, Base(height));
  return ShapeText(pieces, block, measure);
}

struct Expected {
  const char* text;
  double x;
  double baseline;
};

void ExpectRuns(const ShapedText& shaped, const std::vector<Expected>& expected,
                const std::string& what) {
  ASSERT_EQ(shaped.runs.size(), expected.size()) << what;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(shaped.runs[i].text, expected[i].text) << what << " run " << i;
    EXPECT_NEAR(shaped.runs[i].origin.x, expected[i].x, 1e-9) << what << " run " << i;
    EXPECT_NEAR(shaped.runs[i].origin.y, expected[i].baseline, 1e-9) << what << " run " << i;
  }
}

constexpr double kPitch = 5.0 / 3.0;

TEST(TextShaperTest, WrapsWordsAtTheColumnWidth) {
  struct Case {
    const char* in;
    double column;
    std::vector<Expected> runs;
  };
  const Case cases[] = {
      {"aa bb cc", 5.5, {{"aa bb", 0, -1}, {"cc", 0, -1 - kPitch}}},
      {"aa bb cc", 0, {{"aa bb cc", 0, -1}}},                         // no column: no wrap
      {"aaaaaaa b", 3, {{"aaaaaaa", 0, -1}, {"b", 0, -1 - kPitch}}},  // a long word overflows
      {"aa\\~bb cc",
       4,
       {{"aa\xC2\xA0"
         "bb",
         0, -1},
        {"cc", 0, -1 - kPitch}}},                                  // no break at \~
      {"aa    bb", 5, {{"aa", 0, -1}, {"bb", 0, -1 - kPitch}}},    // blanks count, trail unseen
      {"a\\P\\Pb", 0, {{"a", 0, -1}, {"b", 0, -1 - 2 * kPitch}}},  // an empty paragraph
      {"  a", 0, {{"  a", 0, -1}}},                                // indentation kept
  };
  for (const Case& c : cases) {
    TextBlock block;
    block.columnWidth = c.column;
    ExpectRuns(Shape(c.in, block), c.runs, c.in);
  }
}

TEST(TextShaperTest, AttachmentPlacesTheBlock) {
  // Lines 2 and 4 wide, cap height 1: the block is 4 wide and runs from the
  // first line's top (1 + pitch above the last baseline) down to the last
  // baseline.
  const double depth = 1 + kPitch;
  struct Case {
    int attachment;
    Expected first, second;
  };
  const Case cases[] = {
      {1, {"ab", 0, -1}, {"abcd", 0, -1 - kPitch}},
      {3, {"ab", -2, -1}, {"abcd", -4, -1 - kPitch}},
      {5, {"ab", -1, -1 + depth / 2}, {"abcd", -2, -1 - kPitch + depth / 2}},
      {7, {"ab", 0, kPitch}, {"abcd", 0, 0}},
      {9, {"ab", -2, kPitch}, {"abcd", -4, 0}},
  };
  for (const Case& c : cases) {
    TextBlock block;
    block.attachment = c.attachment;
    ExpectRuns(Shape("ab\\Pabcd", block), {c.first, c.second},
               "attachment " + std::to_string(c.attachment));
  }
  TextBlock spaced;
  spaced.lineSpacing = 2;
  ExpectRuns(Shape("ab\\Pabcd", spaced), {{"ab", 0, -1}, {"abcd", 0, -1 - 2 * kPitch}},
             "spacing 2");
}

TEST(TextShaperTest, ParagraphAlignmentWithinTheColumn) {
  TextBlock block;
  block.columnWidth = 10;
  ExpectRuns(Shape("\\pxqc;ab\\P\\pxqr;cd\\P\\pxql;ef", block),
             {{"ab", 4, -1}, {"cd", 8, -1 - kPitch}, {"ef", 0, -1 - 2 * kPitch}}, "left box");
  block.attachment = 2;  // the box is centred on the insertion point
  ExpectRuns(Shape("\\pxqr;ab", block), {{"ab", 3, -1}}, "centred box");
}

TEST(TextShaperTest, ColumnsStandSideBySide) {
  // Columns 3 wide, 1 apart; every character 1 wide and 1 high.
  struct Case {
    const char* what;
    const char* in;
    int type;
    int attachment;
    bool reversed;
    double height;
    std::vector<Expected> runs;
  };
  const Case cases[] = {
      {"static", "a\\Nb", 1, 1, false, 0, {{"a", 0, -1}, {"b", 4, -1}}},
      {"right to left", "a\\Nb", 1, 1, true, 0, {{"a", 4, -1}, {"b", 0, -1}}},
      {"top right", "a\\Nb", 1, 3, false, 0, {{"a", -5, -1}, {"b", -1, -1}}},
      {"bottom left", "a\\Nb", 1, 7, false, 0, {{"a", 0, 0}, {"b", 4, 0}}},
      {"\\P stays in its column", "a\\Pb", 1, 1, false, 0, {{"a", 0, -1}, {"b", 0, -1 - kPitch}}},
      {"dynamic, 2 deep", "a\\Pb\\Pc", 2, 1, false, 2, {{"a", 0, -1}, {"b", 4, -1}, {"c", 8, -1}}},
      {"dynamic, 3 deep",
       "a\\Pb\\Pc",
       2,
       1,
       false,
       3,
       {{"a", 0, -1}, {"b", 0, -1 - kPitch}, {"c", 4, -1}}},
  };
  for (const Case& c : cases) {
    TextBlock block;
    block.columnWidth = 3;
    block.attachment = c.attachment;
    block.columns.type = c.type;
    block.columns.count = 2;
    block.columns.gutter = 1;
    block.columns.height = c.height;
    block.columns.reversed = c.reversed;
    ExpectRuns(Shape(c.in, block), c.runs, c.what);
  }
}

TEST(TextShaperTest, LinesOfMixedHeights) {
  // The tallest character sets the line; \A moves smaller text up in it.
  ExpectRuns(Shape("a{\\H3x;b}", {}), {{"a", 0, -3}, {"b", 1, -3}}, "bottom");
  ExpectRuns(Shape("{\\A1;a}{\\H3x;b}", {}), {{"a", 0, -2}, {"b", 1, -3}}, "middle");
  ExpectRuns(Shape("{\\A2;a}{\\H3x;b}", {}), {{"a", 0, -1}, {"b", 1, -3}}, "top");
  // Spacing follows the taller of two neighbouring lines.
  ExpectRuns(Shape("{\\H3x;a}\\Pb", {}), {{"a", 0, -3}, {"b", 0, -3 - 3 * kPitch}}, "spacing");
}

TEST(TextShaperTest, FormatsSplitRunsAndWidthsFollowThem) {
  const ShapedText shaped = Shape("{\\C1;ab}cd {\\W2;ef}{\\T1.5;gh}", {});
  ExpectRuns(shaped, {{"ab", 0, -1}, {"cd ", 2, -1}, {"ef", 5, -1}, {"gh", 9, -1}}, "formats");
  EXPECT_EQ(shaped.runs[0].format.rgb, 0xFF0000u);
  EXPECT_NEAR(shaped.runs[2].width, 4, 1e-12);
  EXPECT_NEAR(shaped.runs[3].width, 3, 1e-12);
  // A shape font is measured with the stroke font and flagged for strokes.
  const ShapedText stroke = Shape("{\\Ftxt;ab}cd", {});
  ASSERT_EQ(stroke.runs.size(), 2u);
  EXPECT_TRUE(stroke.runs[0].stroke);
  EXPECT_FALSE(stroke.runs[1].stroke);
  EXPECT_NEAR(stroke.runs[1].origin.x, stroke.runs[0].width, 1e-12);
}

TEST(TextShaperTest, DecorationsAndStacks) {
  const ShapedText under = Shape("a\\Lbc\\l \\Kd", {}, 2);
  ASSERT_EQ(under.lines.size(), 2u);
  EXPECT_NEAR(under.lines[0].from.x, 2, 1e-12);  // under "bc" only
  EXPECT_NEAR(under.lines[0].to.x, 6, 1e-12);
  EXPECT_LT(under.lines[0].from.y, -2);               // below the baseline
  EXPECT_NEAR(under.lines[1].from.y, -2 + 1, 1e-12);  // strike at half the cap height

  const ShapedText stack = Shape("1\\S1/16;", {}, 1);
  ASSERT_EQ(stack.runs.size(), 3u);
  ASSERT_EQ(stack.lines.size(), 1u);  // the bar
  const double bar = stack.lines[0].from.y;
  EXPECT_EQ(stack.runs[1].text, "1");
  EXPECT_EQ(stack.runs[2].text, "16");
  EXPECT_GT(stack.runs[1].origin.y, bar);                                // numerator above
  EXPECT_LT(stack.runs[2].origin.y + stack.runs[2].format.height, bar);  // denominator below
  EXPECT_LT(stack.runs[1].format.height, 1);
  // Centred over each other, both right of the "1" before them.
  EXPECT_NEAR(stack.runs[1].origin.x + stack.runs[1].width / 2,
              stack.runs[2].origin.x + stack.runs[2].width / 2, 1e-9);
  EXPECT_GE(stack.runs[2].origin.x, 1);
  // Tolerances: no bar.
  EXPECT_TRUE(Shape("\\S+1^-2;", {}).lines.empty());
}

}  // namespace
}  // namespace sheafwork::embedded
