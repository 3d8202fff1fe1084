#include "embedded/render/mtext_format.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace sheafwork::embedded {
namespace {

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

TEST(MTextFormatTest, CharactersBreaksAndStacks) {
  struct Case {
    const char* in;
    const char* out;
  };
  const Case cases[] = {
      {"Ligne 1\\PLigne 2\\Nsuite\\Xcote", "Ligne 1|Ligne 2|suite|cote"},
      {"a\\~b",
       "a\xC2\xA0"
       "b"},
      {"\\\\ \\{x\\}", "\\ {x}"},
      {"\\U+00e9t\\U+00C9", "\xC3\xA9t\xC3\x89"},
      {"\\U+12", "+12"},  // not a code: the rest stays text
      {"%%c25 %%d %%p1 100%%% %%176",
       "\xC3\x98"
       "25 \xC2\xB0 \xC2\xB1"
       "1 100% \xC2\xB0"},
      {"\\S1/2; \\S+0.1^-0.2; \\S3#4;", "[1/2] [+0.1^-0.2] [3#4]"},
      {"\\S1\\/2/3;", "[1/2/3]"},  // an escaped separator is part of the top
      {"\\Sabc;d", "abcd"},        // nothing to stack
      {"a\\Zb\\jc", "abc"},        // unknown codes are dropped
      {"a\\H2.5", "a"},            // an unterminated argument ends the text
      {"{a{b}c}}d{", "abcd"},      // unbalanced braces
      {"fin\\", "fin"},
      {"a^Jb^Mc^ d^Ie", "a|bc^d e"},
      {"a^@b", "ab"},  // other control characters are not shown
      // Numeric codes whose ';' was left out end with their number.
      {"\\C1rouge; suite", "rouge; suite"},
      {"\\H2.5xgrand\\W0.8étroit\\Q15penché\\T1.2large\\A1milieu",
       "grand\xC3\xA9troitpench\xC3\xA9largemilieu"},
      {"\\c255bleu", "bleu"},
      {"\\M+18140x", "\xEF\xBF\xBDx"},  // no code page: a missing character
      {"\\A1;\\pxqc;\\H3x;\\W2;\\Q10;\\T2;\\C3;\\c0;\\fA;\\FB;texte", "texte"},
  };
  for (const Case& c : cases) EXPECT_EQ(Describe(ParseMText(c.in, Base())), c.out) << c.in;
}

TEST(MTextFormatTest, CodesChangeTheFormatOfWhatFollows) {
  struct Case {
    const char* in;
    std::size_t piece;
    std::function<bool(const MTextFormat&)> check;
  };
  const Case cases[] = {
      {"{\\H2x;a}b", 0, [](const MTextFormat& f) { return f.height == 5; }},
      {"{\\H2x;a}b", 1, [](const MTextFormat& f) { return f.height == 2.5; }},
      {"\\H3;a\\H0.5x;b", 1, [](const MTextFormat& f) { return f.height == 1.5; }},
      {"\\H-2;\\H0;\\Habc;x", 0, [](const MTextFormat& f) { return f.height == 2.5; }},
      {"\\C1;r\\C256;l", 0, [](const MTextFormat& f) { return f.rgb == 0xFF0000u; }},
      {"\\C1r\\C256l", 0, [](const MTextFormat& f) { return f.rgb == 0xFF0000u; }},
      {"\\C1r\\C256l", 1, [](const MTextFormat& f) { return !f.rgb.has_value(); }},
      {"\\H2xa", 0, [](const MTextFormat& f) { return f.height == 5; }},
      {"\\H2X;a", 0, [](const MTextFormat& f) { return f.height == 5; }},
      {"\\Q-10.5e1a", 0, [](const MTextFormat& f) { return f.obliqueDegrees == -85; }},
      {"\\C1;r\\C256;l", 1, [](const MTextFormat& f) { return !f.rgb.has_value(); }},
      {"\\C5;r\\C0;b", 1, [](const MTextFormat& f) { return !f.rgb.has_value(); }},
      {"\\C999;x", 0, [](const MTextFormat& f) { return !f.rgb.has_value(); }},
      {"\\c255;x", 0, [](const MTextFormat& f) { return f.rgb == 0xFF0000u; }},
      {"\\c16711680;x", 0, [](const MTextFormat& f) { return f.rgb == 0x0000FFu; }},
      {"\\fArial|b1|i1|c0|p34;x", 0,
       [](const MTextFormat& f) {
         return f.family == "Arial" && f.bold && f.italic && !f.strokeFont && f.file.empty();
       }},
      {"\\fArial|b1;x\\fArial|b0;y", 1, [](const MTextFormat& f) { return !f.bold; }},
      {"\\Fromans.shx;x", 0,
       [](const MTextFormat& f) { return f.strokeFont && f.file == "romans.shx"; }},
      {"\\Ftxt|c0;x", 0, [](const MTextFormat& f) { return f.strokeFont && f.file == "txt"; }},
      {"\\Fromans.shx;x\\fArial;y", 1,
       [](const MTextFormat& f) { return !f.strokeFont && f.family == "Arial"; }},
      {"\\W0.8;\\Q15;\\T1.5;x", 0,
       [](const MTextFormat& f) {
         return f.widthFactor == 0.8 && f.obliqueDegrees == 15 && f.tracking == 1.5;
       }},
      {"\\Q200;\\T9;x", 0,
       [](const MTextFormat& f) { return f.obliqueDegrees == 85 && f.tracking == 4; }},
      {"\\Lu\\lv", 0, [](const MTextFormat& f) { return f.underline; }},
      {"\\Lu\\lv", 1, [](const MTextFormat& f) { return !f.underline; }},
      {"\\Oo\\Kk", 1, [](const MTextFormat& f) { return f.overline && f.strike; }},
      {"\\A2;x", 0, [](const MTextFormat& f) { return f.lineAlign == 2; }},
      {"\\A7;x", 0, [](const MTextFormat& f) { return f.lineAlign == 0; }},
      {"\\pxqc;x", 0, [](const MTextFormat& f) { return f.paragraphAlign == 1; }},
      {"\\pxi-3,l3,qr,t4;x", 0, [](const MTextFormat& f) { return f.paragraphAlign == 2; }},
      {"\\pi-3,l3;x", 0, [](const MTextFormat& f) { return f.paragraphAlign == -1; }},
      // A group restores everything it changed.
      {"{\\C1;\\L\\H2x;\\fArial|i1;a}b", 1, [](const MTextFormat& f) { return f == Base(); }},
  };
  for (const Case& c : cases) {
    const std::vector<MTextPiece> pieces = ParseMText(c.in, Base());
    ASSERT_LT(c.piece, pieces.size()) << c.in;
    EXPECT_TRUE(c.check(pieces[c.piece].format)) << c.in << " piece " << c.piece;
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
