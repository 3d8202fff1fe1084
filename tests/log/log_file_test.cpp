#include "log/log_file.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "fakes/temp_folder.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/windows1252.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;

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
  std::string Journal() const { return testing::TempFolder::Read(dir_.File("QXJOURNL.LOG")); }
  std::string Errors() const { return testing::TempFolder::Read(dir_.File("QXERROR.LOG")); }

  testing::TempFolder dir_;
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
  EXPECT_EQ(testing::TempFolder::Read(path), "ligne de l'autre\r\n");
  ASSERT_TRUE(holder.Close());
  LogFile after;
  EXPECT_TRUE(after.Open(path, /*append=*/false));
  EXPECT_TRUE(after.WriteLogLine("nouvelle"));
  EXPECT_TRUE(after.Close());
  EXPECT_EQ(testing::TempFolder::Read(path), "nouvelle\r\n");
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
  EXPECT_EQ(testing::TempFolder::Read(path), "ligne de l'autre\r\n");

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
