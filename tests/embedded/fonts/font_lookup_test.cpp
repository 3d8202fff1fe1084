// Finding a face: a stand-in of the same widths for a common font that is
// missing, and the cache of answers, forgotten when the fonts may have
// changed.

#include "embedded/fonts/lookup_cache.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "embedded/fonts/font_catalog.h"
#include "embedded/fonts/font_files.h"
#include "fakes/temp_folder.h"

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
