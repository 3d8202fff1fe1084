#include "log/paths.h"

#include <gtest/gtest.h>

#include <string>

namespace sheafwork {
namespace {

constexpr auto kWin = PathStyle::Windows;
constexpr auto kPosix = PathStyle::Posix;

std::string Repeat(const std::string& s, int n) {
  std::string out;
  for (int i = 0; i < n; ++i) out += s;
  return out;
}

TEST(PathsTest, FileNameAndFolderFromPath) {
  struct Case {
    PathStyle style;
    std::string path;
    std::string file;
    std::string folder;
  };
  const Case cases[] = {
      {kWin, R"(C:\plans\a.dwg)", "a.dwg", R"(C:\plans\)"},
      {kWin, "C:a.dwg", "a.dwg", "C:"},
      {kWin, R"(C:\plans\)", "", ""},
      {kWin, "a.dwg", "a.dwg", ""},
      // The drive colon separates; forward slashes do not.
      {kWin, "C:/plans/a.dwg", "/plans/a.dwg", "C:"},
      {kWin, "plans/a.dwg", "plans/a.dwg", ""},
      {kWin, R"(  C:\a\b.dwg  )", "b.dwg", R"(C:\a\)"},
      {kWin, R"(C:\a:b)", "b", R"(C:\a:)"},
      {kWin, "", "", ""},
      {kWin, "   ", "", ""},
      {kPosix, "/plans/a.dwg", "a.dwg", "/plans/"},
      {kPosix, "/a.dwg", "a.dwg", "/"},
      {kPosix, "/plans/", "", ""},
      {kPosix, "/", "", ""},
      {kPosix, "C:a.dwg", "C:a.dwg", ""},
      {kPosix, R"(C:\plans\a.dwg)", R"(C:\plans\a.dwg)", ""},
      {kPosix, " /a/b c.dwg ", "b c.dwg", "/a/"},
      {kPosix, "/plans/été.dwg", "été.dwg", "/plans/"},
      {kPosix, "", "", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE("path \"" + c.path + "\", " + (c.style == kWin ? "Windows" : "POSIX"));
    EXPECT_EQ(FileNameFromPath(c.path, c.style), c.file);
    EXPECT_EQ(FolderFromPath(c.path, c.style), c.folder);
  }
}

TEST(PathsTest, StripExtension) {
  const std::pair<std::string, std::string> cases[] = {
      {"a.b.dwg", "a.b"},
      {"plan.dwg", "plan"},
      {"plan.", "plan"},
      {R"(C:\r1.2\plan)", R"(C:\r1.2\plan)"},
      {"/r1.2/plan", "/r1.2/plan"},
      {"C:a.b", "C:a"},
      {" plan ", "plan"},
      {"plan .dwg", "plan "},
      {" plan.dwg ", " plan"},
      {".dwg", ""},
      {" .dwg", " "},
      {R"(C:\plans\.dwg)", R"(C:\plans\)"},
      {"été.dwg", "été"},
      {"", ""},
  };
  for (const auto& [name, expected] : cases) {
    EXPECT_EQ(StripExtension(name), expected) << "name \"" << name << "\"";
  }
}

TEST(PathsTest, IsValidFileName) {
  // Names of 255 and 256 characters, in one-byte and in two-byte characters.
  const std::string ascii255 = Repeat("a", 251) + ".log";
  const std::string accented255 = Repeat("é", 251) + ".log";
  struct Case {
    std::string name;
    bool windows;
    bool posix;
  };
  const Case cases[] = {
      {ascii255, true, true},
      {"a" + ascii255, false, false},
      {"  " + ascii255 + "  ", true, true},
      {accented255, true, true},
      {"é" + accented255, false, false},
      {"", false, false},
      {"   ", false, false},
      {"  x.log ", true, true},
      {R"(C:\x.log)", true, true},
      {R"(C:\logs\a b\"x\".log)", true, true},
      {"logs/a.log", true, true},
      // Only the first colon counts, and it may be a drive's (second character).
      {"x:y.log", true, true},
      {"xy:z.log", false, true},
      {":a.log", false, true},
      {R"(C:\a:b.log)", true, true},
      {R"(é:\x.log)", true, true},
      {R"(C:\logs\)", false, false},
      {"C:/logs/", false, false},
      {"a?.log", false, false},
      {"a*.log", false, false},
      {"a<b.log", false, false},
      {"a>b.log", false, false},
      {"a|b.log", false, false},
  };
  for (const Case& c : cases) {
    const std::string shown = c.name.size() > 40 ? c.name.substr(0, 40) + "..." : c.name;
    EXPECT_EQ(IsValidFileName(c.name, kWin), c.windows) << "Windows, \"" << shown << "\"";
    EXPECT_EQ(IsValidFileName(c.name, kPosix), c.posix) << "POSIX, \"" << shown << "\"";
  }
}

}  // namespace
}  // namespace sheafwork
