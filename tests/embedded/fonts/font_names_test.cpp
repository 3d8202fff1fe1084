// What a font file's own tables say about its faces, read without a font
// library (the Windows program finds its fonts this way); files that are no
// font give no face.
#include "embedded/fonts/font_names.h"

#include <gtest/gtest.h>

#include <sstream>
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

// A face's names and metrics as one line.
std::string Describe(const FontFaceNames& f) {
  std::ostringstream out;
  out << f.index << ' ' << f.family << " | " << f.legacyFamily << " | bold " << f.bold << " italic "
      << f.italic << " weight " << f.weight << " em " << f.unitsPerEm << " cap " << f.capHeight
      << " ascent " << f.ascent << " descent " << f.descent;
  return out.str();
}

// US English Windows names before other languages and Macintosh ones; the
// first face of a collection.
TEST(FontNamesTest, ReadsTheFaceFromItsTables) {
  const std::vector<FontFaceNames> regular = Read("regular.ttf");
  ASSERT_FALSE(regular.empty());
  EXPECT_EQ(Describe(regular[0]),
            "0 Essai Sans | Essai Sans | bold 0 italic 0 weight 400 em 2048 cap 1456 ascent 1901 "
            "descent 483");
  const std::vector<FontFaceNames> pair = Read("pair.ttc");
  ASSERT_FALSE(pair.empty());
  EXPECT_EQ(
      Describe(pair[0]),
      "0 Paire | Paire | bold 0 italic 0 weight 400 em 1000 cap 1456 ascent 1901 descent 483");
}

TEST(TrueTypeFaceTest, UnreadableFilesGiveNoFace) {
  EXPECT_EQ(TrueTypeFace::Open("/nonexistent/font.ttf", 0), nullptr);
  EXPECT_EQ(TrueTypeFace::Open(SHEAFWORK_SOURCE_DIR "/CMakeLists.txt", 0), nullptr);
}

}  // namespace
}  // namespace sheafwork::embedded
