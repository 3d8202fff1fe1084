// Fonts: what a TrueType file's own tables say about its faces, read without
// a font library (the Windows program finds its fonts this way), compiled
// shape files, and finding a face: a stand-in of the same widths for a
// common font that is missing, and the cache of answers, forgotten when the
// fonts may have changed.

#include "embedded/fonts/font_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "embedded/fonts/font_catalog.h"
#include "embedded/fonts/font_files.h"
#include "embedded/fonts/lookup_cache.h"
#include "embedded/fonts/shape_file.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

namespace fs = std::filesystem;

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
      EXPECT_THAT([&] { ShapeFile::Parse(std::move(cut), "abime.shx"); },
                  ::testing::ThrowsMessage<ShapeFileError>(::testing::HasSubstr("abime.shx")));
    }
  }
  EXPECT_THROW(ShapeFile::Read(FontPath("absent.shx")), ShapeFileError);
  EXPECT_THROW(ShapeFile::Read(FontPath("trait.shp")), ShapeFileError);  // the source
}

TEST(LookupCacheTest, AnswersAreForgottenWhenFontsMayHaveChanged) {
  sheafwork::testing::TempFolder folder;
  const std::string file = folder.File("cache/fonts.cache");
  const std::string root = folder.File("fonts");
  const std::string inside = folder.File("fonts/truetype");
  fs::create_directories(inside);
  const auto load = [&] { return LookupCache::Load(file, {root}); };
  const auto remembered = [&] {
    LookupCache cache = load();
    cache.Remember("any", FaceFile{"/polices/a.ttf", 0, false, false}, [&] {
      return std::vector<std::string>{root, inside};
    });
    return load().Find("any") != nullptr;
  };
  ASSERT_TRUE(remembered());

  // A folder changed (a font added or removed).
  fs::last_write_time(inside, fs::last_write_time(inside) + std::chrono::seconds(2));
  EXPECT_EQ(load().Find("any"), nullptr);

  ASSERT_TRUE(remembered());
  fs::remove(inside);  // a folder gone
  EXPECT_EQ(load().Find("any"), nullptr);

  ASSERT_TRUE(remembered());
  // Another environment, whose fonts may live elsewhere.
  EXPECT_EQ(LookupCache::Load(file, {root, folder.File("ailleurs")}).Find("any"), nullptr);

  // Not a file of ours.
  folder.Write("cache/fonts.cache", "sheafwork-font-lookups 1\nface\tany\n");
  EXPECT_EQ(load().Find("any"), nullptr);
}

// Arial and the like are missing here; a face of their widths (from
// fonts-liberation or fonts-urw-base35) stands in, not DejaVu Sans, which is
// an eighth wider and would wrap text early (cases in
// tests/data/fonts/twins.tsv).
TEST(FontCatalogTest, AMissingCommonFontGetsAFaceOfTheSameWidths) {
  const ChosenFace dejaVu = ChooseFace({"DejaVu Sans", "", false, false});
  for (const auto& row : sheafwork::testing::ReadTestTable("fonts/twins.tsv")) {
    SCOPED_TRACE(row.where);
    if (FindFamily(row[3], false, false)) continue;  // the real one is here
    const std::vector<std::string> twins = row.List(4, "|");
    const auto installed = std::find_if(twins.begin(), twins.end(), [](const std::string& twin) {
      return FindFamily(twin, false, false).has_value();
    });
    if (installed == twins.end()) continue;  // nothing of those widths here
    const bool bold = row[2] == "bold";
    const ChosenFace chosen = ChooseFace({row[0], row[1], bold, false});
    EXPECT_EQ(chosen.face, ChooseFace({*installed, "", bold, false}).face);
    EXPECT_NE(chosen.face, dejaVu.face);
  }
}

}  // namespace
}  // namespace sheafwork::embedded
