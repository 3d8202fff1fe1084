#include "log/paths.h"

#include <gtest/gtest.h>

#include <string>

namespace sheafwork {
namespace {

constexpr auto kWin = PathStyle::Windows;
constexpr auto kPosix = PathStyle::Posix;

TEST(PathsTest, IsValidFileName) {
  const std::string ascii255 = std::string(251, 'a') + ".log";
  std::string accented255;
  for (int i = 0; i < 251; ++i) accented255 += "é";
  accented255 += ".log";
  struct Case {
    std::string name;
    bool windows, posix;
  };
  const Case cases[] = {
      {"  " + ascii255 + "  ", true, true},  // length counts after trimming
      {"a" + ascii255, false, false},
      {accented255, true, true},  // and in characters, not bytes
      {"é" + accented255, false, false},
      {R"(é:\a:b.log)", true, true},  // only the first colon counts: a drive's is fine
      {"xy:z.log", false, true},
      {"C:/logs/", false, false},
      {R"(C:\logs\)", false, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsValidFileName(c.name, kWin), c.windows) << "Windows " << c.name.substr(0, 40);
    EXPECT_EQ(IsValidFileName(c.name, kPosix), c.posix) << "POSIX " << c.name.substr(0, 40);
  }
  for (const char bad : std::string("?*<>|")) {
    EXPECT_FALSE(IsValidFileName(std::string("a") + bad + ".log", kPosix)) << bad;
  }
}

}  // namespace
}  // namespace sheafwork
