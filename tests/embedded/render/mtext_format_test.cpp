#include "embedded/render/mtext_format.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::ReadTestTable;

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

MTextFormat Base() {
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

// The fields of `f` that differ from Base(), separated by blanks.
std::string Changes(const MTextFormat& f) {
  const std::vector<std::string> fields = Fields(f), base = Fields(Base());
  std::string changes;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i] != base[i]) changes += (changes.empty() ? "" : " ") + fields[i];
  }
  return changes;
}

TEST(MTextFormatTest, CharactersBreaksAndStacks) {
  for (const auto& row : ReadTestTable("render/mtext_pieces.tsv")) {
    EXPECT_EQ(Describe(ParseMText(row[0], Base())), row[1]) << row.where;
  }
}

TEST(MTextFormatTest, CodesChangeTheFormatOfWhatFollows) {
  for (const auto& row : ReadTestTable("render/mtext_formats.tsv")) {
    SCOPED_TRACE(row.where);
    const std::vector<MTextPiece> pieces = ParseMText(row[0], Base());
    const std::size_t piece = std::stoul(row[1]);
    ASSERT_LT(piece, pieces.size());
    EXPECT_EQ(Changes(pieces[piece].format), row[2]);
    if (row[2].empty()) {
      EXPECT_EQ(pieces[piece].format, Base());
    }
  }
}

TEST(MTextFormatTest, DeepNestingAndGarbageAreHarmless) {
  std::string deep(500, '{');
  deep += "\\C1;x";
  deep += std::string(500, '}');
  deep += "y";
  const auto pieces = ParseMText(deep, Base());
  ASSERT_EQ(Describe(pieces), "xy");
  EXPECT_EQ(pieces.back().format, Base());  // every brace closed again

  const std::string garbage = "\\\\\\{\\S^;\\S;\\U+\\M+\\p\\f|||;\\H;;%%%%\xFF\xFE\\";
  EXPECT_NO_THROW(ParseMText(garbage, Base()));

  // Numbers far outside what a code takes leave the format as it was.
  const auto huge =
      ParseMText("\\C777777777777777777777777777777777777777777;a\\C-1e300;b", Base());
  ASSERT_EQ(Describe(huge), "ab");
  EXPECT_EQ(huge.back().format, Base());
}

}  // namespace
}  // namespace sheafwork::embedded
