#include "embedded/fonts/lookup_cache.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "fakes/temp_folder.h"

namespace sheafwork::embedded {
namespace {

namespace fs = std::filesystem;

class LookupCacheTest : public ::testing::Test {
 protected:
  LookupCacheTest() {
    fs::create_directories(root_);
    fs::create_directories(inside_);
  }

  LookupCache Load() const { return LookupCache::Load(file_, {root_}); }
  std::vector<std::string> Folders() const { return {root_, inside_}; }

  sheafwork::testing::TempFolder folder_;
  const std::string file_ = folder_.File("cache/fonts.cache");
  const std::string root_ = folder_.File("fonts");
  const std::string inside_ = folder_.File("fonts/truetype");
};

TEST_F(LookupCacheTest, AnswersComeBackInTheNextRun) {
  {
    LookupCache cache = Load();
    EXPECT_EQ(cache.Find("family:Sans:b"), nullptr);
    cache.Remember("family:Sans:b", FaceFile{"/polices/Sans Gras.ttc", 2, false, true},
                   [&] { return Folders(); });
    cache.Remember("family:Arial:", std::nullopt, [&] { return Folders(); });
    // What the file's format cannot hold is not kept.
    cache.Remember("family:A\tB:", std::nullopt, [&] { return Folders(); });
  }
  const LookupCache next = Load();
  const std::optional<FaceFile>* bold = next.Find("family:Sans:b");
  ASSERT_NE(bold, nullptr);
  ASSERT_TRUE(bold->has_value());
  EXPECT_EQ((*bold)->path, "/polices/Sans Gras.ttc");
  EXPECT_EQ((*bold)->index, 2);
  EXPECT_TRUE((*bold)->bold);
  EXPECT_FALSE((*bold)->italic);
  const std::optional<FaceFile>* arial = next.Find("family:Arial:");
  ASSERT_NE(arial, nullptr);  // known: the system has none
  EXPECT_FALSE(arial->has_value());
  EXPECT_EQ(next.Find("family:A\tB:"), nullptr);
  EXPECT_EQ(next.Find("family:Sans:"), nullptr);
}

TEST_F(LookupCacheTest, AnswersAreForgottenWhenFontsMayHaveChanged) {
  const auto remembered = [&] {
    LookupCache cache = Load();
    cache.Remember("any", FaceFile{"/polices/a.ttf", 0, false, false}, [&] { return Folders(); });
    return Load().Find("any") != nullptr;
  };
  ASSERT_TRUE(remembered());

  // A folder changed (a font added or removed).
  fs::last_write_time(inside_, fs::last_write_time(inside_) + std::chrono::seconds(2));
  EXPECT_EQ(Load().Find("any"), nullptr);

  ASSERT_TRUE(remembered());
  fs::remove(inside_);  // a folder gone
  EXPECT_EQ(Load().Find("any"), nullptr);

  ASSERT_TRUE(remembered());
  // Another environment, whose fonts may live elsewhere.
  EXPECT_EQ(LookupCache::Load(file_, {root_, folder_.File("ailleurs")}).Find("any"), nullptr);

  // Not a file of ours.
  folder_.Write("cache/fonts.cache", "sheafwork-font-lookups 1\nface\tany\n");
  EXPECT_EQ(Load().Find("any"), nullptr);
}

}  // namespace
}  // namespace sheafwork::embedded
