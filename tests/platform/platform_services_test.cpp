// The operating-system services against the machine the tests run on: the
// fonts come from fonts-dejavu-core (scripts/setup.sh), and no print
// scheduler needs to be running.

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/temp_folder.h"
#include "platform/clock.h"
#include "platform/device_uri.h"
#include "platform/fonts.h"
#include "platform/printers.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;

// Sets an environment variable for one scope and puts the old value back.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const std::string& value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    setenv(name, value.c_str(), 1);
  }
  ~ScopedEnv() {
    if (old_) {
      setenv(name_, old_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

// The font and printer lists are read once per process, so the cases that
// need a configuration of their own run in a fresh copy of this binary
// ("threadsafe" death tests re-execute it) and report through the exit code.
void UseFreshProcessForChildren() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

TEST(SystemFontFoldersTest, FindsInstalledFontFilesWhateverTheirLetterCase) {
  const auto fonts = SystemFontFolders();
  for (const char* name :
       {"DejaVuSans.ttf", "dejavusans.ttf", "DEJAVUSANS.TTF", "dEjAvUsAnS.tTf"}) {
    EXPECT_TRUE(fonts->HasFontFile(name)) << name;
  }
  // Another instance answers from the same list.
  EXPECT_TRUE(SystemFontFolders()->HasFontFile("DejaVuSans-Bold.ttf"));
}

TEST(SystemFontFoldersTest, RejectsNamesThatAreNotFontFiles) {
  const auto fonts = SystemFontFolders();
  for (const char* name :
       {"", "sheafwork-no-such-font-7c1e.ttf", "DejaVuSans", "DejaVuSans.ttf.bak", "ejaVuSans.ttf",
        // A folder inside a font folder is not a font file.
        "dejavu", "truetype"}) {
    EXPECT_FALSE(fonts->HasFontFile(name)) << name;
  }
}

// 0 when the answers match a font folder that holds one shape font and a
// subfolder, and nothing else; otherwise the number of the first wrong answer.
[[noreturn]] void LookUpInOwnFontFolder() {
  int failed = 0;
  {
    const testing::TempFolder folder;
    const fs::path fontDir = folder.path() / "fonts";
    fs::create_directories(fontDir / "Hatch.shx");
    std::ofstream(fontDir / "Romans.SHX") << "AutoCAD-86 shapes 1.0";
    const std::string config = folder.Write(
        "fonts.conf", "<?xml version=\"1.0\"?>\n<fontconfig>\n  <dir>" + fontDir.string() +
                          "</dir>\n  <cachedir>" + (folder.path() / "cache").string() +
                          "</cachedir>\n</fontconfig>\n");
    const ScopedEnv useConfig("FONTCONFIG_FILE", config);
    const auto fonts = SystemFontFolders();
    if (!fonts->HasFontFile("romans.shx")) {
      failed = 1;  // a file fontconfig does not index, directly in its folder
    } else if (!fonts->HasFontFile("ROMANS.shx")) {
      failed = 2;
    } else if (fonts->HasFontFile("hatch.shx")) {
      failed = 3;  // a folder
    } else if (fonts->HasFontFile("DejaVuSans.ttf")) {
      failed = 4;  // installed, but not in a folder of this configuration
    }
  }
  std::fflush(nullptr);
  std::_Exit(failed);
}

TEST(SystemFontFoldersTest, AcceptsAnyFileDirectlyInAConfiguredFontFolder) {
  UseFreshProcessForChildren();
  EXPECT_EXIT(LookUpInOwnFontFolder(), ::testing::ExitedWithCode(0), "");
}

TEST(SystemPrinterCatalogTest, ListsThisMachinesPrintersWithoutThrowing) {
  std::vector<PrinterInfo> printers;
  ASSERT_NO_THROW(printers = SystemPrinterCatalog()->Printers());
  for (const PrinterInfo& p : printers) {
    EXPECT_FALSE(p.name.empty());
    EXPECT_EQ(p.port, StripUserInfo(p.port)) << p.name;
  }
}

// Points CUPS at a TCP port that refuses connections (bound, never
// listening) and exits with the number of printers listed.
[[noreturn]] void ListPrintersOfSilentServer() {
  const int sock = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t len = sizeof addr;
  if (sock < 0 || bind(sock, reinterpret_cast<sockaddr*>(&addr), len) != 0 ||
      getsockname(sock, reinterpret_cast<sockaddr*>(&addr), &len) != 0) {
    std::_Exit(100);
  }
  std::size_t count = 0;
  {
    const ScopedEnv server("CUPS_SERVER", "127.0.0.1:" + std::to_string(ntohs(addr.sin_port)));
    count = SystemPrinterCatalog()->Printers().size();
  }
  close(sock);
  std::fflush(nullptr);
  std::_Exit(static_cast<int>(count));
}

TEST(SystemPrinterCatalogTest, ServerThatDoesNotAnswerGivesNoPrintersAndNoOutput) {
  UseFreshProcessForChildren();
  EXPECT_EXIT(ListPrintersOfSilentServer(), ::testing::ExitedWithCode(0), ::testing::IsEmpty());
}

// Seconds since the epoch of `t` read as a UTC time.
std::time_t AsUtc(const LocalTime& t) {
  std::tm parts{};
  parts.tm_year = t.year - 1900;
  parts.tm_mon = t.month - 1;
  parts.tm_mday = t.day;
  parts.tm_hour = t.hour;
  parts.tm_min = t.minute;
  parts.tm_sec = t.second;
  return timegm(&parts);
}

TEST(LocalTimeNowTest, MatchesTheSystemLocalTime) {
  const std::time_t before = std::time(nullptr);
  const LocalTime now = LocalTimeNow();
  const std::time_t after = std::time(nullptr);

  std::tm parts{};
  parts.tm_year = now.year - 1900;
  parts.tm_mon = now.month - 1;
  parts.tm_mday = now.day;
  parts.tm_hour = now.hour;
  parts.tm_min = now.minute;
  parts.tm_sec = now.second;
  parts.tm_isdst = -1;
  const std::time_t read = std::mktime(&parts);
  EXPECT_GE(read, before - 60);
  EXPECT_LE(read, after + 60);
}

TEST(LocalTimeNowTest, FollowsTheTimeZone) {
  // POSIX TZ offsets count west of Greenwich: "UTC-14" is fourteen hours ahead.
  const std::pair<const char*, long> zones[] = {
      {"UTC0", 0}, {"UTC-14", 14 * 3600}, {"UTC+11", -11 * 3600}, {"<+0530>-5:30", 19800}};
  for (const auto& [zone, offset] : zones) {
    const std::time_t before = std::time(nullptr);
    LocalTime now;
    {
      const ScopedEnv tz("TZ", zone);
      now = LocalTimeNow();
    }
    const std::time_t after = std::time(nullptr);
    const std::time_t read = AsUtc(now) - offset;
    EXPECT_GE(read, before) << zone;
    EXPECT_LE(read, after) << zone;
  }
  tzset();  // back to the zone of the environment for the tests after this one
}

}  // namespace
}  // namespace sheafwork
