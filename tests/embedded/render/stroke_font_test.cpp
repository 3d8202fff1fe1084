#include "embedded/render/stroke_font.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "embedded/render/render_test_support.h"
#include "text/utf8.h"

namespace sheafwork::embedded {
namespace {

using testing::ExpectNear;

std::vector<char32_t> CodePoints(std::string_view utf8) {
  std::vector<char32_t> out;
  for (std::size_t i = 0; i < utf8.size();) {
    const DecodedChar c = DecodeUtf8(utf8, i);
    out.push_back(c.codePoint);
    i += c.length;
  }
  return out;
}

TEST(StrokeFontTest, HasPrintableAsciiAndFrench) {
  const StrokeFont& font = StrokeFont::Get();
  for (char32_t c = 0x20; c < 0x7F; ++c) {
    EXPECT_NE(font.Find(c), nullptr) << "U+" << std::hex << static_cast<unsigned>(c);
  }
  const std::string extra = "àâäçéèêëîïôöùûüÿœæÀÂÄÇÉÈÊËÎÏÔÖÙÛÜŸŒÆ«»°±²³€⌀Ø’";
  for (char32_t c : CodePoints(extra)) {
    EXPECT_NE(font.Find(c), nullptr) << "U+" << std::hex << static_cast<unsigned>(c);
  }
}

TEST(StrokeFontTest, EveryGlyphFitsItsCell) {
  const StrokeFont& font = StrokeFont::Get();
  ASSERT_GT(font.Characters().size(), 150u);
  for (char32_t c : font.Characters()) {
    const StrokeGlyph* g = font.Find(c);
    ASSERT_NE(g, nullptr);
    SCOPED_TRACE(::testing::Message() << "U+" << std::hex << static_cast<unsigned>(c));
    EXPECT_GT(g->advance, 0.2);
    EXPECT_LT(g->advance, 1.6);
    int total = 0;
    for (int size : g->sizes) {
      EXPECT_GE(size, 2);
      total += size;
    }
    EXPECT_EQ(static_cast<std::size_t>(total), g->points.size());
    const bool blank = c == U' ' || c == 0xA0;
    EXPECT_EQ(g->sizes.empty(), blank);
    for (const Vec2& p : g->points) {
      EXPECT_GE(p.x, -0.1);
      EXPECT_LE(p.x, g->advance);
      EXPECT_GE(p.y, -0.4);
      EXPECT_LE(p.y, 1.35);
    }
  }
}

TEST(StrokeFontTest, CapitalsReachTheCapHeightAndLowercaseTheXHeight) {
  const StrokeFont& font = StrokeFont::Get();
  const auto box = [&](char32_t c) {
    Box2 b;
    for (const Vec2& p : font.Find(c)->points) b.Extend(p);
    return b;
  };
  const auto top = [&](char32_t c) { return box(c).max.y; };
  const auto bottom = [&](char32_t c) { return box(c).min.y; };
  for (char32_t c : CodePoints("EHTZ")) EXPECT_NEAR(top(c), 1.0, 1e-9);
  for (char32_t c : CodePoints("ACOS")) EXPECT_NEAR(top(c), 1.0, 0.03);
  for (char32_t c : CodePoints("xvwz")) EXPECT_NEAR(top(c), 8.0 / 12, 1e-9);
  for (char32_t c : CodePoints("EHTZxvz")) EXPECT_NEAR(bottom(c), 0, 1e-9);
  for (char32_t c : CodePoints("gpqy")) EXPECT_LT(bottom(c), -0.2);
}

TEST(StrokeFontTest, AccentsAreTheBaseLetterAndAMark) {
  const StrokeFont& font = StrokeFont::Get();
  struct Case {
    const char* composed;
    char32_t base;
    double markLow, markHigh;  ///< where the mark's points lie, in cap heights
  };
  const Case cases[] = {
      {"é", U'e', 0.7, 1.0},   {"è", U'e', 0.7, 1.0},   {"ê", U'e', 0.7, 1.0},
      {"ë", U'e', 0.7, 1.0},   {"î", 0x131, 0.7, 1.0},  {"ÿ", U'y', 0.7, 1.0},
      {"É", U'E', 1.05, 1.35}, {"Ê", U'E', 1.05, 1.35}, {"Ÿ", U'Y', 1.05, 1.35},
      {"ç", U'c', -0.3, 0.0},  {"Ç", U'C', -0.3, 0.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.composed);
    const StrokeGlyph* glyph = font.Find(CodePoints(c.composed)[0]);
    const StrokeGlyph* base = font.Find(c.base);
    ASSERT_NE(glyph, nullptr);
    ASSERT_NE(base, nullptr);
    ASSERT_GT(glyph->points.size(), base->points.size());
    EXPECT_EQ(glyph->advance, base->advance);
    // The base letter's strokes come first, unchanged.
    for (std::size_t i = 0; i < base->points.size(); ++i) {
      EXPECT_EQ(glyph->points[i].x, base->points[i].x);
      EXPECT_EQ(glyph->points[i].y, base->points[i].y);
    }
    double minX = 1e9, maxX = -1e9;
    for (const Vec2& p : base->points) {
      minX = std::min(minX, p.x);
      maxX = std::max(maxX, p.x);
    }
    for (std::size_t i = base->points.size(); i < glyph->points.size(); ++i) {
      const Vec2& p = glyph->points[i];
      EXPECT_GE(p.y, c.markLow);
      EXPECT_LE(p.y, c.markHigh);
      EXPECT_NEAR(p.x, (minX + maxX) / 2, 0.2);  // over the letter's middle
    }
  }
}

TEST(StrokeFontTest, LaysTextOutAndShowsMissingCharacters) {
  const StrokeFont& font = StrokeFont::Get();
  EXPECT_NEAR(font.Advance("AB"), font.Find(U'A')->advance + font.Find(U'B')->advance, 1e-12);
  EXPECT_NEAR(font.Advance("AB", 2), 2 * font.Advance("AB"), 1e-12);
  EXPECT_EQ(font.Advance(""), 0);

  std::vector<Vec2> points;
  std::vector<int> sizes;
  font.AppendStrokes("IA", 1, points, sizes);
  const std::size_t iPoints = font.Find(U'I')->points.size();
  ASSERT_EQ(points.size(), iPoints + font.Find(U'A')->points.size());
  EXPECT_NEAR(points[iPoints].x, font.Find(U'I')->advance, 1e-12);  // "A" starts after "I"

  // A character the font lacks, and a malformed byte, show as a box.
  for (const char* missing : {"\xE6\xBC\xA2", "\xFF"}) {
    points.clear();
    sizes.clear();
    font.AppendStrokes(missing, 1, points, sizes);
    EXPECT_EQ(sizes.size(), 1u) << missing;
    EXPECT_GT(font.Advance(missing), 0.3) << missing;
  }
}

TEST(StrokeFontTest, BoundsFromTheGlyphBoxesAreTheBoxOfTheLaidOutStrokes) {
  // Text is culled on these bounds before its strokes are made: they must
  // be the box of those strokes, whatever the spacing, with marks, missing
  // characters and blanks.
  const StrokeFont& font = StrokeFont::Get();
  const char* texts[] = {"Façade Ø25", "IA", "\xE6\xBC\xA2x\xFF", " "};
  for (const char* text : texts) {
    for (const double tracking : {1.0, 1.3}) {
      SCOPED_TRACE(text);
      std::vector<Vec2> laid;
      std::vector<int> laidSizes;
      font.AppendStrokes(text, tracking, laid, laidSizes);
      Box2 laidBox;
      for (const Vec2& p : laid) laidBox.Extend(p);
      const Box2 bounds = font.Bounds(text, tracking);
      EXPECT_EQ(bounds.Empty(), laid.empty());
      if (!laid.empty()) ExpectNear(bounds, laidBox, 1e-12);
    }
  }
}

TEST(StrokeFontTest, WhichFontsAreShapeFonts) {
  struct Case {
    const char* family;
    const char* file;
    bool shape;
  };
  const Case cases[] = {
      {"", "txt", true},    {"", "romans.shx", true},        {"", "ROMANS.SHX", true},
      {"", "", true},       {"", "polices/isocp.shx", true}, {"", "arial.ttf", false},
      {"Arial", "", false}, {"Arial", "txt", false},         {"", "c:\\fonts.d\\simplex", true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsShapeFont(c.family, c.file), c.shape) << c.family << "/" << c.file;
  }
}

}  // namespace
}  // namespace sheafwork::embedded
