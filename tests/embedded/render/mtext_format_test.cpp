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

// The fields of `f` that differ from Base(), as "name=value" each.
std::string Changes(const MTextFormat& f) {
  const MTextFormat base = Base();
  std::ostringstream out;
  const auto field = [&](const char* name, const auto& value, const auto& was) {
    if (value != was) out << ' ' << name << '=' << value;
  };
  field("family", f.family, base.family);
  field("file", f.file, base.file);
  field("stroke", f.strokeFont, base.strokeFont);
  field("bold", f.bold, base.bold);
  field("italic", f.italic, base.italic);
  field("height", f.height, base.height);
  field("width", f.widthFactor, base.widthFactor);
  field("oblique", f.obliqueDegrees, base.obliqueDegrees);
  field("tracking", f.tracking, base.tracking);
  const auto rgb = [](const MTextFormat& m) {
    char text[8] = "";
    if (m.rgb) std::snprintf(text, sizeof text, "%06X", *m.rgb);
    return std::string(text);
  };
  field("rgb", rgb(f), rgb(base));
  field("aci", f.aci, base.aci);
  field("underline", f.underline, base.underline);
  field("overline", f.overline, base.overline);
  field("strike", f.strike, base.strike);
  field("line", f.lineAlign, base.lineAlign);
  field("paragraph", f.paragraphAlign, base.paragraphAlign);
  return out.str().empty() ? "" : out.str().substr(1);
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
