#include "embedded/render/text_shaper.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "embedded/render/mtext_format.h"
#include "embedded/render/render_test_support.h"
#include "embedded/render/text_codes.h"
#include "embedded/render/text_layout.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::ReadTestTable;

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
constexpr double kLine2 = -1 - kPitch;  ///< the second line's baseline

TEST(TextShaperTest, ParagraphAlignmentWithinTheColumn) {
  TextBlock block;
  block.columnWidth = 10;
  ExpectRuns(Shape("\\pxqc;ab\\P\\pxqr;cd\\P\\pxql;ef", block),
             {{"ab", 4, -1}, {"cd", 8, -1 - kPitch}, {"ef", 0, -1 - 2 * kPitch}}, "left box");
  block.attachment = 2;  // the box is centred on the insertion point
  ExpectRuns(Shape("\\pxqr;ab", block), {{"ab", 3, -1}}, "centred box");
}

TEST(TextShaperTest, ColumnsStandSideBySide) {
  // Columns 3 wide, 1 apart (type 2: dynamic, as deep as given); every
  // character 1 wide and 1 high.
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
      {"\\P stays in its column", "a\\Pb", 1, 1, false, 0, {{"a", 0, -1}, {"b", 0, kLine2}}},
      {"2 deep", "a\\Pb\\Pc", 2, 1, false, 2, {{"a", 0, -1}, {"b", 4, -1}, {"c", 8, -1}}},
      {"3 deep", "a\\Pb\\Pc", 2, 1, false, 3, {{"a", 0, -1}, {"b", 0, kLine2}, {"c", 4, -1}}},
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

TEST(TextCodesTest, SpecialCodesAreReplaced) {
  for (const auto& row : ReadTestTable("render/text_codes.tsv")) {
    std::string out;
    AppendWithSpecialCodes(row[0], out);
    EXPECT_EQ(out, row[1]) << row.where;
  }
}

TEST(TextLayoutTest, MultiLineAttachment) {
  const FontMetrics metrics{10, 3};
  const double widths[] = {100, 50};
  TextRun run;
  run.height = 3;
  run.attachment = 9;  // bottom right: the last line's baseline on the anchor
  LinePlacement lines[2];
  PlaceRun(run, metrics, widths, lines);
  EXPECT_NEAR(lines[1].baseline, 0, 1e-12);
  EXPECT_NEAR(lines[0].baseline, 5, 1e-12);  // 5/3 of the cap height above
  EXPECT_NEAR(lines[0].x, -30, 1e-12);
  EXPECT_NEAR(lines[1].x, -15, 1e-12);
  run.attachment = 1;
  PlaceRun(run, metrics, widths, lines);
  EXPECT_NEAR(lines[0].baseline, -3, 1e-12);
  EXPECT_NEAR(lines[0].x, 0, 1e-12);
}

// MTEXT contents parsed into pieces of one format (tables in
// tests/data/render).

// The pieces as one string: paragraphs as '|', stacks as [top?bottom].
std::string Describe(const std::vector<MTextPiece>& pieces) {
  std::string out;
  for (const MTextPiece& p : pieces) {
    switch (p.kind) {
      case MTextPiece::Kind::Text:
        out += p.text;
        break;
      case MTextPiece::Kind::Paragraph:
        out += std::string(p.breaks, '|');
        break;
      case MTextPiece::Kind::Stack:
        out += "[" + p.text + p.stackKind + p.bottom + "]";
        break;
    }
  }
  return out;
}

// The format the parsed text starts from.
MTextFormat ParseBase() {
  MTextFormat f;
  f.height = 2.5;
  f.file = "arial.ttf";
  return f;
}

// A format's fields, "name=value" each; rgb in hexadecimal.
std::vector<std::string> Fields(const MTextFormat& f) {
  char rgb[8] = "";
  if (f.rgb) std::snprintf(rgb, sizeof rgb, "%06X", *f.rgb);
  std::ostringstream out;
  out << "family=" << f.family << "\nfile=" << f.file << "\nstroke=" << f.strokeFont
      << "\nbold=" << f.bold << "\nitalic=" << f.italic << "\nheight=" << f.height
      << "\nwidth=" << f.widthFactor << "\noblique=" << f.obliqueDegrees
      << "\ntracking=" << f.tracking << "\nrgb=" << rgb << "\naci=" << f.aci
      << "\nunderline=" << f.underline << "\noverline=" << f.overline << "\nstrike=" << f.strike
      << "\nline=" << f.lineAlign << "\nparagraph=" << f.paragraphAlign;
  std::vector<std::string> fields;
  std::istringstream in(out.str());
  for (std::string field; std::getline(in, field);) fields.push_back(field);
  return fields;
}

// The fields of `f` that differ from ParseBase(), separated by blanks.
std::string Changes(const MTextFormat& f) {
  const std::vector<std::string> fields = Fields(f), base = Fields(ParseBase());
  std::string changes;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i] != base[i]) changes += (changes.empty() ? "" : " ") + fields[i];
  }
  return changes;
}

TEST(MTextFormatTest, CharactersBreaksAndStacks) {
  for (const auto& row : ReadTestTable("render/mtext_pieces.tsv")) {
    EXPECT_EQ(Describe(ParseMText(row[0], ParseBase())), row[1]) << row.where;
  }
}

TEST(MTextFormatTest, CodesChangeTheFormatOfWhatFollows) {
  for (const auto& row : ReadTestTable("render/mtext_formats.tsv")) {
    SCOPED_TRACE(row.where);
    const std::vector<MTextPiece> pieces = ParseMText(row[0], ParseBase());
    const std::size_t piece = std::stoul(row[1]);
    ASSERT_LT(piece, pieces.size());
    EXPECT_EQ(Changes(pieces[piece].format), row[2]);
    if (row[2].empty()) {
      EXPECT_EQ(pieces[piece].format, ParseBase());
    }
  }
}

TEST(MTextFormatTest, DeepNestingAndGarbageAreHarmless) {
  std::string deep(500, '{');
  deep += "\\C1;x";
  deep += std::string(500, '}');
  deep += "y";
  const auto pieces = ParseMText(deep, ParseBase());
  ASSERT_EQ(Describe(pieces), "xy");
  EXPECT_EQ(pieces.back().format, ParseBase());  // every brace closed again

  const std::string garbage = "\\\\\\{\\S^;\\S;\\U+\\M+\\p\\f|||;\\H;;%%%%\xFF\xFE\\";
  EXPECT_NO_THROW(ParseMText(garbage, ParseBase()));

  // Numbers far outside what a code takes leave the format as it was.
  const auto huge =
      ParseMText("\\C777777777777777777777777777777777777777777;a\\C-1e300;b", ParseBase());
  ASSERT_EQ(Describe(huge), "ab");
  EXPECT_EQ(huge.back().format, ParseBase());
}

}  // namespace
}  // namespace sheafwork::embedded
