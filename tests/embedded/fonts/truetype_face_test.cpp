#include "embedded/fonts/truetype_face.h"

#include <gtest/gtest.h>

namespace sheafwork::embedded {
namespace {

TEST(TrueTypeFaceTest, UnreadableFilesGiveNoFace) {
  EXPECT_EQ(TrueTypeFace::Open("/nonexistent/font.ttf", 0), nullptr);
  EXPECT_EQ(TrueTypeFace::Open(SHEAFWORK_SOURCE_DIR "/CMakeLists.txt", 0), nullptr);
}

}  // namespace
}  // namespace sheafwork::embedded
