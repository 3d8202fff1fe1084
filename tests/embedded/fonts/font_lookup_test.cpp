// Finding a face: a stand-in of the same widths for a common font that is
// missing, and the cache of answers, forgotten when the fonts may have
// changed.

#include "embedded/fonts/lookup_cache.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "embedded/fonts/font_catalog.h"
#include "embedded/fonts/font_files.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

namespace fs = std::filesystem;

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
