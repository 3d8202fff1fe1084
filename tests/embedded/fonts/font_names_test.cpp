// What a font file's own tables say about its faces, read without a font
// library (the Windows program finds its fonts this way); files that are no
// font give no face.
#include "embedded/fonts/font_names.h"

#include <gtest/gtest.h>

#include <string>

#include "embedded/fonts/truetype_face.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

std::vector<FontFaceNames> Read(const std::string& name) {
  const std::string bytes = sheafwork::testing::ReadTestData("fonts/names/" + name);
  return ReadFontFaceNames([&](std::uint64_t offset, std::size_t size, std::string& out) {
    if (offset > bytes.size() || size > bytes.size() - offset) return false;
    out.assign(bytes, offset, size);
    return true;
  });
}

struct Expected {
  const char* file;
  int index;
  const char* family;
  const char* legacyFamily;
  bool bold, italic;
  int weight, unitsPerEm, capHeight;
};

class FontNamesTest : public ::testing::TestWithParam<Expected> {};

TEST_P(FontNamesTest, ReadsTheFaceFromItsTables) {
  const Expected& e = GetParam();
  const std::vector<FontFaceNames> faces = Read(e.file);
  ASSERT_GT(faces.size(), static_cast<std::size_t>(e.index));
  const FontFaceNames& f = faces[static_cast<std::size_t>(e.index)];
  EXPECT_EQ(f.index, e.index);
  EXPECT_EQ(f.family, e.family);
  EXPECT_EQ(f.legacyFamily, e.legacyFamily);
  EXPECT_EQ(f.bold, e.bold);
  EXPECT_EQ(f.italic, e.italic);
  EXPECT_EQ(f.weight, e.weight);
  EXPECT_EQ(f.unitsPerEm, e.unitsPerEm);
  EXPECT_EQ(f.capHeight, e.capHeight);
  EXPECT_EQ(f.ascent, 1901);
  EXPECT_EQ(f.descent, 483);
}

// US English Windows names before other languages and Macintosh ones; a
// face of a collection.
INSTANTIATE_TEST_SUITE_P(Files, FontNamesTest,
                         ::testing::Values(Expected{"regular.ttf", 0, "Essai Sans", "Essai Sans",
                                                    false, false, 400, 2048, 1456},
                                           Expected{"pair.ttc", 0, "Paire", "Paire", false, false,
                                                    400, 1000, 1456}));

TEST(TrueTypeFaceTest, UnreadableFilesGiveNoFace) {
  EXPECT_EQ(TrueTypeFace::Open("/nonexistent/font.ttf", 0), nullptr);
  EXPECT_EQ(TrueTypeFace::Open(SHEAFWORK_SOURCE_DIR "/CMakeLists.txt", 0), nullptr);
}

}  // namespace
}  // namespace sheafwork::embedded
