// Font files: what a TrueType file's own tables say about its faces, read
// without a font library (the Windows program finds its fonts this way), and
// compiled shape files.
#include "embedded/fonts/font_names.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "embedded/fonts/shape_file.h"
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

// Compiled shape files (our test fonts, tests/data/fonts, compiled by
// compile_shapes.py; what they hold is checked through the glyphs they give,
// ShapeGlyphsTest): damaged files refused with the file's name.

std::string FontPath(const std::string& name) {
  return sheafwork::testing::TestData("fonts/" + name);
}

// Every file cut short, or that is not a shape file, is refused with a
// message naming it; none is read past its end.
TEST(ShapeFileTest, DamagedFilesAreRefusedWithTheirName) {
  for (const char* name : {"trait.shx", "uni.shx", "big.shx"}) {
    const std::string whole = sheafwork::testing::ReadTestData(std::string("fonts/") + name);
    // Cut anywhere inside the index or the shapes; the last byte of each
    // file is its last shape's end, which the file must hold too.
    for (std::size_t size = 0; size + 1 < whole.size(); ++size) {
      SCOPED_TRACE(std::string(name) + " cut at " + std::to_string(size));
      std::vector<std::uint8_t> cut(whole.begin(), whole.begin() + static_cast<long>(size));
      try {
        ShapeFile::Parse(std::move(cut), "abime.shx");
        ADD_FAILURE() << "read although cut short";
      } catch (const ShapeFileError& error) {
        EXPECT_NE(std::string(error.what()).find("abime.shx"), std::string::npos);
      }
    }
  }
  EXPECT_THROW(ShapeFile::Read(FontPath("absent.shx")), ShapeFileError);
  EXPECT_THROW(ShapeFile::Read(FontPath("trait.shp")), ShapeFileError);  // the source
}

}  // namespace
}  // namespace sheafwork::embedded
