// Paths and files: the names a log file may have, file statuses, files
// written whole in place of older ones, and input files read only when they
// are regular files within their size limit.
#include "log/paths.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "fakes/native_path.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "log/output_file.h"
#include "log/regular_file.h"
#include "log/wide_path.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;
using testing::TempFolder;

constexpr auto kWin = PathStyle::Windows;
constexpr auto kPosix = PathStyle::Posix;

// Windows file names ignore letter case; POSIX ones do not.
#ifdef _WIN32
constexpr int kOtherCase = kFileFound;
#else
constexpr int kOtherCase = kFileNotFound;
#endif

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

TEST(FileStatusTest, MatchesOrdinaryVisibleFilesOnly) {
  const TempFolder folder;
  const fs::path& dir = folder.path();
  fs::create_directories(dir / "sub.dwg");
  for (const char* name : {"plan.dwg", ".hidden.dwg", "été.dxf", "banana.txt"}) {
    std::ofstream(dir / FsPath(name)) << "x";
  }
  for (const auto& row : testing::ReadTestTable("paths/file_status.tsv")) {
    const int expected = row[1] == "found"        ? kFileFound
                         : row[1] == "other case" ? kOtherCase
                                                  : kFileNotFound;
    EXPECT_EQ(GetFileStatus(PathText(dir / FsPath(row[0]))), expected) << row.where;
  }
  const fs::path previous = fs::current_path();
  fs::current_path(dir);
  EXPECT_EQ(GetFileStatus("*.dxf"), kFileFound);  // a bare pattern searches the working folder
  fs::current_path(previous);
}

std::vector<std::string> Names(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(PathText(entry.path().filename()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

bool Replace(const std::string& target, const std::string& bytes,
             OutputFile::Durability durability = OutputFile::Durability::Ordinary) {
  OutputFile out(target, durability);
  return out.IsOpen() && out.Write(bytes) && out.Commit();
}

#ifndef _WIN32
// What follows needs POSIX modes, owners, links and FIFOs.

// The file that takes an older one's place keeps its mode, durable or not.
TEST(OutputFileTest, TheReplacingFileKeepsTheMode) {
  TempFolder folder;
  for (const mode_t mode : {0640, 0444}) {
    SCOPED_TRACE(mode);
    const std::string target = folder.Write("liste.qx3", "ancienne");
    ASSERT_EQ(chmod(target.c_str(), mode), 0);
    for (const auto durability :
         {OutputFile::Durability::Ordinary, OutputFile::Durability::Durable}) {
      ASSERT_TRUE(Replace(target, "nouvelle", durability));
      EXPECT_EQ(fs::status(target).permissions(), static_cast<fs::perms>(mode));
    }
    EXPECT_EQ(TempFolder::Read(target), "nouvelle");
  }
}

// Only root may give a file away: there the owner is kept too.
TEST(OutputFileTest, TheReplacingFileKeepsTheOwnerWherePermitted) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a file to another user";
  TempFolder folder;
  const std::string target = folder.Write("plan.pdf", "ancien");
  ASSERT_EQ(chown(target.c_str(), 65534, 65534), 0);
  ASSERT_TRUE(Replace(target, "nouveau"));
  struct stat status {};
  ASSERT_EQ(stat(target.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 65534u);
  EXPECT_EQ(status.st_gid, 65534u);
}

// A target that is a link, absolute or relative, through another link or to a
// file not there yet, is written where it leads; the link stays.
TEST(OutputFileTest, ALinkIsWrittenThroughToItsFile) {
  TempFolder folder;
  const std::string real = folder.Write("reel/liste.qx3", "ancienne");
  struct Case {
    const char* link;
    std::string to;
    std::string file;  ///< what the link leads to in the end
  };
  const Case cases[] = {
      {"absolu.qx3", real, real},
      {"relatif.qx3", "reel/liste.qx3", real},
      {"double.qx3", "relatif.qx3", real},
      {"neuf.qx3", "reel/neuf.qx3", folder.File("reel/neuf.qx3")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.link);
    const std::string link = folder.File(c.link);
    fs::create_symlink(c.to, link);
    ASSERT_TRUE(Replace(link, std::string("par ") + c.link));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(TempFolder::Read(c.file), std::string("par ") + c.link);
  }
  EXPECT_EQ(Names(folder.path() / "reel"), (std::vector<std::string>{"liste.qx3", "neuf.qx3"}));
}

// A FIFO does not block, a device is not read until memory runs out.
TEST(RegularFileTest, OnlyRegularFilesWithinTheLimitAreRead) {
  TempFolder folder;
  const std::string plain = folder.Write("plan.dxf", "0\nEOF\n");
  const std::string fifo = folder.File("tube.dxf");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0) << std::strerror(errno);
  // A sparse file just over the limit: no disk space taken.
  const std::string huge = folder.Write("huge.qx3", "");
  ASSERT_EQ(::truncate(huge.c_str(), static_cast<off_t>(kTextInputLimit + 1)), 0);

  struct Case {
    std::string path;
    std::uint64_t limit;
    std::string reason;  ///< empty: read
  };
  const std::string notRegular = LoadResourceText(ids::kNotRegularFile);
  const Case cases[] = {
      {plain, kTextInputLimit, ""},
      {plain, 3, LoadResourceText(ids::kFileTooLarge)},
      {fifo, kNoSizeLimit, notRegular},
      {"/dev/zero", kNoSizeLimit, notRegular},
      {huge, kTextInputLimit, LoadResourceText(ids::kFileTooLarge) + "64 Mo)"},
      {folder.path().string(), kNoSizeLimit, std::strerror(EISDIR)},
      {folder.File("absent.qx3"), kNoSizeLimit, std::strerror(ENOENT)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    const RegularFileRead read = ReadRegularFile(c.path, c.limit);
    EXPECT_EQ(read.ok, c.reason.empty()) << read.reason;
    if (c.reason.empty()) {
      EXPECT_EQ(read.bytes, "0\nEOF\n");
    } else {
      EXPECT_EQ(read.reason.rfind(c.reason, 0), 0u) << read.reason;
    }
  }
}

#endif

// Temporaries of the target that no writer holds, left by a run that was
// killed, are gone once the target is written again; another target's and a
// live writer's are left alone.
TEST(OutputFileTest, StaleTemporariesOfTheTargetAreRemovedLiveOnesKept) {
  TempFolder folder;
  const std::string target = folder.File("plan.pdf");
  folder.Write("plan.pdf.sheafwork-0.tmp", std::string(1000, 'x'));
  folder.Write("plan.pdf.sheafwork-1.tmp", "y");
  folder.Write("plan.pdf.sheafwork-2.tmp", "z");
  folder.Write("autre.pdf.sheafwork-0.tmp", "autre");
  ASSERT_TRUE(Replace(target, "premier"));
  EXPECT_EQ(Names(folder.path()),
            (std::vector<std::string>{"autre.pdf.sheafwork-0.tmp", "plan.pdf"}));

  OutputFile live(target);
  ASSERT_TRUE(live.IsOpen());
  ASSERT_TRUE(live.Write("vivant"));
  ASSERT_TRUE(Replace(target, "second"));
  EXPECT_EQ(TempFolder::Read(target), "second");
  EXPECT_EQ(Names(folder.path()).size(), 3u);  // the live writer's temporary is still there
  ASSERT_TRUE(live.Commit());
  EXPECT_EQ(TempFolder::Read(target), "vivant");
  EXPECT_EQ(Names(folder.path()),
            (std::vector<std::string>{"autre.pdf.sheafwork-0.tmp", "plan.pdf"}));
}

// A folder named with accents and a character outside Windows-1252: the
// file is written there under its own name, found, and replaced again.
TEST(OutputFileTest, WritesIntoAFolderNamedOutsideTheLocalCodePage) {
  TempFolder folder;
  const std::string plans = folder.File("Plans été Ω");
  fs::create_directory(FsPath(plans));
  const std::string target = folder.File(testing::NativePath("Plans été Ω/liste été.qx3"));
  for (const char* text : {"première", "seconde"}) {
    OutputFile out(target);
    ASSERT_TRUE(out.IsOpen()) << out.Failure();
    ASSERT_TRUE(out.Write(text));
    ASSERT_TRUE(out.Commit()) << out.Failure();
    EXPECT_EQ(TempFolder::Read(target), text);
  }
  EXPECT_EQ(GetFileStatus(target), kFileFound);
  EXPECT_EQ(Names(FsPath(plans)), std::vector<std::string>{"liste été.qx3"});
}

}  // namespace
}  // namespace sheafwork
