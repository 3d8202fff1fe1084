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

// Multi-line text shaped into runs (tests/data/render/shaped_text.tsv): where
// paragraph alignment, columns and the heights of a line put each run.
TEST(TextShaperTest, RunsStandWhereAlignmentColumnsAndHeightsPutThem) {
  MTextFormat format;
  format.height = 1;
  format.family = "Fixe";
  FixedMeasure measure;
  for (const auto& row : ReadTestTable("render/shaped_text.tsv")) {
    SCOPED_TRACE(row.where + " " + row[5]);
    TextBlock block;
    block.columnWidth = std::stod(row[1]);
    block.attachment = std::stoi(row[2]);
    std::istringstream columns(row[3]);
    if (columns >> block.columns.type >> block.columns.height >> block.columns.reversed) {
      block.columns.count = 2;
      block.columns.gutter = 1;
    }
    const ShapedText shaped = ShapeText(ParseMText(row[0], format), block, measure);
    std::istringstream runs(row[4]);
    std::size_t i = 0;
    for (std::string text; runs >> text; ++i) {
      double x = 0, baseline = 0;
      runs >> x >> baseline;
      ASSERT_LT(i, shaped.runs.size());
      EXPECT_EQ(shaped.runs[i].text, text) << "run " << i;
      EXPECT_NEAR(shaped.runs[i].origin.x, x, 1e-9) << "run " << i;
      EXPECT_NEAR(shaped.runs[i].origin.y, baseline, 1e-9) << "run " << i;
    }
    EXPECT_EQ(shaped.runs.size(), i);
  }
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

// A format's fields, "name=value" a line; rgb in hexadecimal.
std::string Fields(const MTextFormat& f) {
  char rgb[8] = "";
  if (f.rgb) std::snprintf(rgb, sizeof rgb, "%06X", *f.rgb);
  std::ostringstream out;
  out << "family=" << f.family << "\nfile=" << f.file << "\nstroke=" << f.strokeFont
      << "\nbold=" << f.bold << "\nitalic=" << f.italic << "\nheight=" << f.height
      << "\nwidth=" << f.widthFactor << "\noblique=" << f.obliqueDegrees
      << "\ntracking=" << f.tracking << "\nrgb=" << rgb << "\naci=" << f.aci
      << "\nunderline=" << f.underline << "\noverline=" << f.overline << "\nstrike=" << f.strike
      << "\nline=" << f.lineAlign << "\nparagraph=" << f.paragraphAlign;
  return out.str();
}

// The fields of `f` that differ from ParseBase(), separated by blanks.
std::string Changes(const MTextFormat& f) {
  std::istringstream fields(Fields(f)), base(Fields(ParseBase()));
  std::string changes;
  for (std::string field, was; std::getline(fields, field) && std::getline(base, was);) {
    if (field != was) changes += (changes.empty() ? "" : " ") + field;
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
