#include "log/log_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
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

TEST_F(LogFileTest, AppendModeKeepsThePreviousBytes) {
  const std::string oldJournal = "ancien\r\nsans fin de ligne";
  std::ofstream(s_.JournalLogFileName, std::ios::binary) << oldJournal;
  std::ofstream(s_.ErrorLogFileName, std::ios::binary) << "E";
  s_.JournalAppend = s_.ErrorAppend = true;
  s_.JournalHeader = "H";
  s_.ErrorHeader = "Erreurs";
  Run({"ligne"});
  EXPECT_EQ(Journal(), oldJournal + "H\r\n\r\nligne\r\n");
  EXPECT_EQ(Errors(), "EErreurs\r\n");
}

TEST_F(LogFileTest, JournalInAMissingFolderIsReportedWithItsName) {
  s_.JournalLogFileName = dir_.File("missing/j.log");
  Run({"perdu"});
  EXPECT_EQ(Errors(), "\r\n" + Line(LoadResourceText(ids::kJournalNotAccessible) +
                                    s_.JournalLogFileName));  // and no string 99
}

TEST_F(LogFileTest, FailingJournalIsReportedOnce) {
  s_.JournalLogFileName = kFull;
  Run({"a", "b", "c"}, "suite");
  EXPECT_EQ(Errors(), "\r\n" + Line(LoadResourceText(ids::kJournalWriteProblem)) + "suite\r\n");
}

TEST_F(LogFileTest, FailingErrorLogLeavesTheJournalComplete) {
  s_.ErrorLogFileName = kFull;
  Run({"a", "b"}, "ignorée");
  EXPECT_EQ(Journal(), "\r\n\r\na\r\nb\r\n");
}

TEST_F(LogFileTest, LogSwitchedOffOrUnnamedIsNotCreated) {
  const LogSettings defaults = s_;
  const std::pair<void (*)(LogSettings&), bool> cases[] = {
      // change, journal still created
      {[](LogSettings& s) { s.JournalLogOn = false; }, false},
      {[](LogSettings& s) { s.JournalLogFileName.clear(); }, false},
      {[](LogSettings& s) { s.ErrorLogOn = false; }, true},
      {[](LogSettings& s) { s.ErrorLogFileName.clear(); }, true},
  };
  for (const auto& [change, journal] : cases) {
    s_ = defaults;
    change(s_);
    Run({"j"});
    EXPECT_EQ(Journal(), journal ? "\r\n\r\nj\r\n" : "");  // no file reads as ""
    EXPECT_EQ(Errors(), journal ? "" : "\r\n");
    fs::remove(defaults.JournalLogFileName);
    fs::remove(defaults.ErrorLogFileName);
  }
}

}  // namespace
}  // namespace sheafwork
