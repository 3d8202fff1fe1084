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
