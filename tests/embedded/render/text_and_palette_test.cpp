#include <gtest/gtest.h>

#include <string>

#include "embedded/render/aci_palette.h"
#include "embedded/render/text_codes.h"
#include "embedded/render/text_layout.h"

namespace sheafwork::embedded {
namespace {

TEST(TextCodesTest, SpecialCodesAreReplaced) {
  struct Case {
    const char* in;
    const char* plain;
  };
  const Case cases[] = {
      {"45%%d %%c20 %%p0.1 100%%%",
       "45\xC2\xB0 \xC3\x98"
       "20 \xC2\xB1"
       "0.1 100%"},
      {"%%uSouligné%%u", "Soulign\xC3\xA9"},
      {"50%", "50%"},
      // Control characters in caret notation: a tab is a blank, "^ " a
      // caret, line breaks have no place in one line; other carets stay.
      {"a^Ib^Jc^Md^ e", "a bcd^e"},
      {"x^2 ^", "x^2 ^"},
      {"^@^[z", "z"},
  };
  for (const Case& c : cases) {
    std::string out;
    AppendWithSpecialCodes(c.in, out);
    EXPECT_EQ(out, c.plain) << c.in;
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

TEST(AciPaletteTest, KnownEntries) {
  const std::pair<int, std::uint32_t> known[] = {
      {1, 0xFF0000},   {2, 0xFFFF00},   {3, 0x00FF00},  {5, 0x0000FF},  {7, 0x000000},
      {8, 0x808080},   {9, 0xC0C0C0},   {10, 0xFF0000}, {11, 0xFF7F7F}, {12, 0xA50000},
      {20, 0xFF3F00},  {21, 0xFF9F7F},  {30, 0xFF7F00}, {40, 0xFFBF00}, {130, 0x00FFFF},
      {250, 0x333333}, {255, 0xFFFFFF}, {0, 0x000000},  {256, 0x000000}};
  for (const auto& [index, rgb] : known) EXPECT_EQ(AciToRgb(index), rgb) << index;
}

}  // namespace
}  // namespace sheafwork::embedded
