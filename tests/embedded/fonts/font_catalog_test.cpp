#include "embedded/fonts/font_catalog.h"

#include <gtest/gtest.h>

#include <string>

#include "embedded/fonts/font_files.h"

namespace sheafwork::embedded {
namespace {

std::string BaseName(const std::string& path) { return path.substr(path.rfind('/') + 1); }

TEST(FontFilesTest, FindsFamiliesAndFilesAsTheSystemNamesThem) {
  const auto regular = FindFamily("DejaVu Sans", false, false);
  ASSERT_TRUE(regular) << "fonts-dejavu-core is installed by the setup";
  EXPECT_EQ(BaseName(regular->path), "DejaVuSans.ttf");
  EXPECT_FALSE(regular->bold);

  // Family names ignore letter case; bold picks the bold face.
  const auto bold = FindFamily("dejavu sans", true, false);
  ASSERT_TRUE(bold);
  EXPECT_EQ(BaseName(bold->path), "DejaVuSans-Bold.ttf");
  EXPECT_TRUE(bold->bold);

  // A file is found by its name alone, whatever its case or folder.
  const auto file = FindFontFile("C:\\Windows\\Fonts\\dejavusans-BOLD.TTF");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->path, bold->path);

  // What the system does not have is not made up.
  EXPECT_FALSE(FindFamily("Famille Introuvable", false, false));
  EXPECT_FALSE(FindFamily("", false, false));
  EXPECT_FALSE(FindFontFile("introuvable.ttf"));
}

TEST(FontCatalogTest, FallsBackFromFamilyToFileToDejaVuSans) {
  const ChosenFace regular = ChooseFace({"DejaVu Sans", "", false, false});
  const ChosenFace bold = ChooseFace({"DejaVu Sans", "", true, false});
  ASSERT_NE(regular.face, nullptr);
  ASSERT_NE(bold.face, nullptr);
  EXPECT_NE(regular.face, bold.face);

  struct Case {
    FontFace asked;
    const TrueTypeFace* expected;
  };
  const Case cases[] = {
      // The family wins over the file.
      {{"DejaVu Sans", "DejaVuSans-Bold.ttf", false, false}, regular.face},
      // An unknown family: the file named.
      {{"Arial Introuvable", "DejaVuSans-Bold.ttf", false, false}, bold.face},
      // Neither: DejaVu Sans, bold as asked.
      {{"Arial Introuvable", "introuvable.ttf", true, false}, bold.face},
      {{"", "", false, false}, regular.face},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ChooseFace(c.asked).face, c.expected) << c.asked.family << " | " << c.asked.file;
  }
  // The same request gets the same face, not a second copy.
  EXPECT_EQ(ChooseFace({"DejaVu Sans", "", true, false}).face, bold.face);
}

TEST(FontCatalogTest, ItalicIsTheFacesOwnOrSlanted) {
  // Whether the system has an oblique DejaVu Sans or not, italic text
  // slants exactly once.
  const auto file = FindFamily("DejaVu Sans", false, true);
  ASSERT_TRUE(file);
  const ChosenFace italic = ChooseFace({"DejaVu Sans", "", false, true});
  EXPECT_NE(file->italic, italic.slant);
  EXPECT_FALSE(ChooseFace({"DejaVu Sans", "", false, false}).slant);
}

}  // namespace
}  // namespace sheafwork::embedded
