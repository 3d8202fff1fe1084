#include "log/paths.h"

#include <gtest/gtest.h>

#include <string>

namespace sheafwork {
namespace {

constexpr auto kWin = PathStyle::Windows;
constexpr auto kPosix = PathStyle::Posix;

TEST(PathsTest, FileNameAndFolderFromPath) {
  struct Case {
    PathStyle style;
    std::string path, file, folder;
  };
  const Case cases[] = {
      {kWin, R"(  C:\plans\a.dwg )", "a.dwg", R"(C:\plans\)"},
      {kWin, "C:/plans/a.dwg", "/plans/a.dwg", "C:"},  // the drive colon separates, "/" not
      {kWin, R"(C:\a:b)", "b", R"(C:\a:)"},
      {kWin, R"(C:\plans\)", "", ""},
      {kPosix, " /a/b c.dwg ", "b c.dwg", "/a/"},
      {kPosix, "/a.dwg", "a.dwg", "/"},
      {kPosix, "/plans/", "", ""},
      {kPosix, R"(C:\plans\a.dwg)", R"(C:\plans\a.dwg)", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE("\"" + c.path + "\", " + (c.style == kWin ? "Windows" : "POSIX"));
    EXPECT_EQ(FileNameFromPath(c.path, c.style), c.file);
    EXPECT_EQ(FolderFromPath(c.path, c.style), c.folder);
  }
}

TEST(PathsTest, StripExtension) {
  const std::pair<std::string, std::string> cases[] = {
      {"a.b.dwg", "a.b"},
      {R"(C:\r1.2\plan)", R"(C:\r1.2\plan)"},
      {"/r1.2/plan", "/r1.2/plan"},
      {"a.b:c", "a"},
      {" plan ", "plan"},
      {" plan.dwg ", " plan"},
      {".dwg", ""},
  };
  for (const auto& [name, expected] : cases) EXPECT_EQ(StripExtension(name), expected) << name;
}

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
