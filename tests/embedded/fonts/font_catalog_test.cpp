#include "embedded/fonts/font_catalog.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/fonts/font_files.h"

namespace sheafwork::embedded {
namespace {

TEST(FontCatalogTest, AMissingCommonFontGetsAFaceOfTheSameWidths) {
  // Arial and the like are missing here; a face of their widths (from
  // fonts-liberation or fonts-urw-base35) stands in, not DejaVu Sans,
  // which is an eighth wider and would wrap text early.
  struct Case {
    FontFace asked;
    const char* family;              ///< the family asked for, by its name
    std::vector<const char*> twins;  ///< the first installed one is chosen
  };
  const std::vector<const char*> sans = {"Liberation Sans", "Arimo", "Nimbus Sans"};
  const Case cases[] = {
      {{"", "arial.ttf", false, false}, "Arial", sans},
      {{"Arial", "", false, false}, "Arial", sans},
      {{"", "C:\\Windows\\Fonts\\ARIALBD.TTF", true, false}, "Arial", sans},
      {{"", "times.ttf", false, false},
       "Times New Roman",
       {"Liberation Serif", "Tinos", "Nimbus Roman"}},
      {{"Courier New", "", false, false},
       "Courier New",
       {"Liberation Mono", "Cousine", "Nimbus Mono PS"}},
  };
  const ChosenFace dejaVu = ChooseFace({"DejaVu Sans", "", false, false});
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.asked.family) + " | " + std::string(c.asked.file));
    if (FindFamily(c.family, false, false)) continue;  // the real one is here
    const char* installed = nullptr;
    for (const char* twin : c.twins) {
      if (installed == nullptr && FindFamily(twin, false, false)) installed = twin;
    }
    if (installed == nullptr) continue;  // nothing of those widths here
    const ChosenFace chosen = ChooseFace(c.asked);
    EXPECT_EQ(chosen.face, ChooseFace({installed, "", c.asked.bold, false}).face);
    EXPECT_NE(chosen.face, dejaVu.face);
  }
}

}  // namespace
}  // namespace sheafwork::embedded
