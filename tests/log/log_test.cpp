// The log library: the logs of a run (written, switched off, failing, held
// by another run), the names a log file may have, file statuses, files
// written whole in place of older ones, and input files read only when they
// are regular files within their size limit.
#include "log/log_file.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "fakes/native_path.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "log/output_file.h"
#include "log/paths.h"
#include "log/regular_file.h"
#include "log/wide_path.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/windows1252.h"

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
  EXPECT_EQ(TempFolder::Names(folder.path() / "reel"),
            (std::vector<std::string>{"liste.qx3", "neuf.qx3"}));
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
  EXPECT_EQ(TempFolder::Names(folder.path()),
            (std::vector<std::string>{"autre.pdf.sheafwork-0.tmp", "plan.pdf"}));

  OutputFile live(target);
  ASSERT_TRUE(live.IsOpen());
  ASSERT_TRUE(live.Write("vivant"));
  ASSERT_TRUE(Replace(target, "second"));
  EXPECT_EQ(TempFolder::Read(target), "second");
  // The live writer's temporary is still there.
  EXPECT_EQ(TempFolder::Names(folder.path()).size(), 3u);
  ASSERT_TRUE(live.Commit());
  EXPECT_EQ(TempFolder::Read(target), "vivant");
  EXPECT_EQ(TempFolder::Names(folder.path()),
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
  EXPECT_EQ(TempFolder::Names(FsPath(plans)), std::vector<std::string>{"liste été.qx3"});
}

constexpr const char* kFull = "/dev/full";  // opens, but every write fails with ENOSPC

std::string Line(const std::string& text) { return Utf8ToWindows1252(text).bytes + "\r\n"; }

class LogFileTest : public ::testing::Test {
 protected:
  // Opens the logs, writes `lines` to the journal and `error` to the error log, closes.
  void Run(std::initializer_list<const char*> lines, const char* error = nullptr) {
    RunLogs logs;
    OpenLogFiles(s_, logs);
    for (const char* line : lines) WriteJournalLine(logs.journal, logs.errorLog, line);
    if (error) logs.errorLog.WriteLogLine(error);
    CloseLogFiles(s_, logs);
  }
  std::string Journal() const { return TempFolder::Read(dir_.File("QXJOURNL.LOG")); }
  std::string Errors() const { return TempFolder::Read(dir_.File("QXERROR.LOG")); }

  TempFolder dir_;
  LogSettings s_ = DefaultLogSettings(dir_.path().string());
};

TEST_F(LogFileTest, OverwriteModeWritesHeadersAndLinesInWindows1252) {
  std::ofstream(s_.JournalLogFileName) << "old journal, longer than the new one\r\n";
  std::ofstream(s_.ErrorLogFileName) << "old errors, longer than the new ones\r\n";
  s_.JournalUserComment = "Lot été";
  Run({"tracé € Œ", "漢"}, "erreur");
  EXPECT_EQ(Journal(), "\r\nLot \xE9t\xE9\r\ntrac\xE9 \x80 \x8C\r\n?\r\n");
  EXPECT_EQ(Errors(), "\r\nerreur\r\n");
}

// A log switched off or unnamed is not created; a journal that cannot be
// opened or written is reported once in the error log, with its name when it
// could not be opened; a failing error log leaves the journal complete.
TEST_F(LogFileTest, LogsThatAreOffOrFailing) {
  const LogSettings defaults = s_;
  const std::string missing = dir_.File("missing/j.log");
  const std::string journal = "\r\n\r\na\r\nb\r\n", errors = "\r\ne\r\n";
  const std::string notAccessible = Line(LoadResourceText(ids::kJournalNotAccessible) + missing);
  const std::string writeProblem = Line(LoadResourceText(ids::kJournalWriteProblem));
  struct Case {
    std::function<void(LogSettings&)> change;
    std::string journal, errors;  ///< "" when the file is not there
  };
  const Case cases[] = {
      {[](LogSettings& s) { s.JournalLogOn = false; }, "", errors},
      {[](LogSettings& s) { s.JournalLogFileName.clear(); }, "", errors},
      {[](LogSettings& s) { s.ErrorLogOn = false; }, journal, ""},
      {[](LogSettings& s) { s.ErrorLogFileName.clear(); }, journal, ""},
      {[&](LogSettings& s) { s.JournalLogFileName = missing; }, "",
       "\r\n" + notAccessible + "e\r\n"},
#ifndef _WIN32  // a device whose writes fail
      {[](LogSettings& s) { s.JournalLogFileName = kFull; }, "", "\r\n" + writeProblem + "e\r\n"},
      {[](LogSettings& s) { s.ErrorLogFileName = kFull; }, journal, ""},
#endif
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    s_ = defaults;
    cases[i].change(s_);
    Run({"a", "b"}, "e");
    EXPECT_EQ(Journal(), cases[i].journal) << "case " << i;  // no file reads as ""
    EXPECT_EQ(Errors(), cases[i].errors) << "case " << i;
    fs::remove(defaults.JournalLogFileName);
    fs::remove(defaults.ErrorLogFileName);
  }
}

// A log held by another run (here another open of the same file, which the
// lock excludes like another process) is waited for, then left alone: not
// emptied, not written; once the holder closes it, it is the next run's.
TEST_F(LogFileTest, ALogHeldByAnotherOpenIsWaitedForThenLeftAlone) {
  const std::string path = dir_.Write("journal.log", "ligne de l'autre\r\n");
  LogFile holder;
  ASSERT_TRUE(holder.Open(path, /*append=*/true));
#ifdef _WIN32
  _putenv_s("SHEAFWORK_LOG_LOCK_WAIT", "150");
#else
  setenv("SHEAFWORK_LOG_LOCK_WAIT", "150", 1);
#endif
  for (const bool append : {false, true}) {
    SCOPED_TRACE(append ? "append" : "overwrite");
    LogFile second;
    EXPECT_FALSE(second.Open(path, append));
    EXPECT_TRUE(second.Busy());
    EXPECT_FALSE(second.Opened());
  }
  EXPECT_EQ(TempFolder::Read(path), "ligne de l'autre\r\n");
  ASSERT_TRUE(holder.Close());
  LogFile after;
  EXPECT_TRUE(after.Open(path, /*append=*/false));
  EXPECT_TRUE(after.WriteLogLine("nouvelle"));
  EXPECT_TRUE(after.Close());
  EXPECT_EQ(TempFolder::Read(path), "nouvelle\r\n");
#ifdef _WIN32
  _putenv_s("SHEAFWORK_LOG_LOCK_WAIT", "");
#else
  unsetenv("SHEAFWORK_LOG_LOCK_WAIT");
#endif
}

#ifndef _WIN32  // devices, locks and processes of POSIX
// Pipes and devices are not locked (two runs may both log to /dev/null), and
// a run whose two logs are one file does not wait for itself.
TEST_F(LogFileTest, SharedDevicesAndOneFileForBothLogsDoNotWait) {
  LogFile first, second;
  ASSERT_TRUE(first.Open("/dev/null", false));
  EXPECT_TRUE(second.Open("/dev/null", false));

  s_.JournalLogFileName = s_.ErrorLogFileName;
  s_.JournalAppend = s_.ErrorAppend = true;
  s_.ErrorHeader = "E";
  Run({"a"}, "e");
  EXPECT_EQ(Errors(), "E\r\n\r\n\r\na\r\ne\r\n");
}

// A run that finds its log held by another one waits, then gives up without
// emptying or writing it and names the process that holds it; once the other
// run is over, the log is its own.
TEST_F(LogFileTest, ALogHeldByAnotherProcessIsLeftAloneAndItsHolderNamed) {
  const std::string path = dir_.Write("journal.log", "ligne de l'autre\r\n");
  int ready[2], release[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(release), 0);
  const pid_t holder = fork();
  ASSERT_GE(holder, 0);
  if (holder == 0) {
    LogFile held;
    char answer = held.Open(path, /*append=*/true) ? 'y' : 'n';
    if (write(ready[1], &answer, 1) != 1 || read(release[0], &answer, 1) != 1) _exit(1);
    _exit(0);
  }
  char answer = 0;
  ASSERT_EQ(read(ready[0], &answer, 1), 1);
  ASSERT_EQ(answer, 'y');

  setenv("SHEAFWORK_LOG_LOCK_WAIT", "150", 1);
  for (const bool append : {false, true}) {
    LogFile second;
    EXPECT_FALSE(second.Open(path, append));
    EXPECT_TRUE(second.Busy());
    EXPECT_EQ(second.LockHolder(), holder);
    EXPECT_FALSE(second.Opened());
  }
  RunLogs logs;
  s_.JournalLogFileName = path;
  EXPECT_FALSE(OpenLogFiles(s_, logs));
  EXPECT_FALSE(logs.errorLog.IsOpen());
  EXPECT_EQ(TempFolder::Read(path), "ligne de l'autre\r\n");

  ASSERT_EQ(write(release[1], "x", 1), 1);
  int status = 0;
  waitpid(holder, &status, 0);
  LogFile after;
  EXPECT_TRUE(after.Open(path, /*append=*/false));
  unsetenv("SHEAFWORK_LOG_LOCK_WAIT");
  for (int fd : {ready[0], ready[1], release[0], release[1]}) close(fd);
}

#endif

}  // namespace
}  // namespace sheafwork
