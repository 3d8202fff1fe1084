#include "log/log_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/windows1252.h"

namespace sheafwork {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFull = "/dev/full";  // opens, but every write fails with ENOSPC

// The bytes a log holds for one line of UTF-8 text.
std::string Line(const std::string& text) { return Utf8ToWindows1252(text).bytes + "\r\n"; }

class LogFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("sheafwork-log-" + std::to_string(::getpid()) + "-" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::create_directories(dir_);
    settings_ = DefaultLogSettings(dir_.string());
  }
  void TearDown() override {
    std::error_code ignored;
    fs::remove_all(dir_, ignored);
  }

  static std::string Read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
  static void Write(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }
  std::string Journal() const { return Read(settings_.JournalLogFileName); }
  std::string Errors() const { return Read(settings_.ErrorLogFileName); }

  fs::path dir_;
  LogSettings settings_;
  RunLogs logs_;
};

TEST_F(LogFileTest, DefaultSettingsJoinTheFolderByPlainConcatenation) {
  LogSettings expected;
  expected.JournalLogFileName = "/opt/sw/QXJOURNL.LOG";
  expected.ErrorLogFileName = "/opt/sw/QXERROR.LOG";
  EXPECT_EQ(DefaultLogSettings("/opt/sw"), expected);
  EXPECT_EQ(DefaultLogSettings("/").JournalLogFileName, "//QXJOURNL.LOG");
  EXPECT_EQ(DefaultLogSettings("/").ErrorLogFileName, "//QXERROR.LOG");
}

TEST_F(LogFileTest, OverwriteModeReplacesOldContentAndWritesEmptyHeaders) {
  Write(settings_.JournalLogFileName, "old journal\r\n");
  Write(settings_.ErrorLogFileName, "old errors\r\n");
  OpenLogFiles(settings_, logs_);
  WriteJournalLine(logs_.journal, logs_.errorLog, "tracé 1");
  WriteJournalLine(logs_.journal, logs_.errorLog, "tracé 2");
  EXPECT_TRUE(logs_.errorLog.WriteLogLine("erreur"));
  CloseLogFiles(settings_, logs_);

  EXPECT_FALSE(logs_.journal.IsOpen());
  EXPECT_FALSE(logs_.errorLog.IsOpen());
  EXPECT_EQ(Journal(), "\r\n\r\ntrac\xE9 1\r\ntrac\xE9 2\r\n");
  EXPECT_EQ(Errors(), "\r\nerreur\r\n");
}

TEST_F(LogFileTest, AppendModeKeepsPreviousBytesAndFollowsThemDirectly) {
  const std::string oldJournal = "ancien\xE9\r\nsans fin de ligne";
  const std::string oldErrors = std::string("\0\x81z", 3);
  Write(settings_.JournalLogFileName, oldJournal);
  Write(settings_.ErrorLogFileName, oldErrors);
  settings_.JournalAppend = settings_.ErrorAppend = true;
  settings_.JournalHeader = "En-tête";
  settings_.JournalUserComment = "Commentaire";
  settings_.ErrorHeader = "Erreurs";
  OpenLogFiles(settings_, logs_);
  WriteJournalLine(logs_.journal, logs_.errorLog, "ligne");
  CloseLogFiles(settings_, logs_);

  EXPECT_EQ(Journal(), oldJournal + "En-t\xEAte\r\nCommentaire\r\nligne\r\n");
  EXPECT_EQ(Errors(), oldErrors + "Erreurs\r\n");
}

TEST_F(LogFileTest, JournalThatCannotBeOpenedIsReportedOnce) {
  settings_.JournalLogFileName = (dir_ / "missing" / "j.log").string();
  OpenLogFiles(settings_, logs_);
  EXPECT_FALSE(logs_.journal.IsOpen());
  WriteJournalLine(logs_.journal, logs_.errorLog, "perdu");
  CloseLogFiles(settings_, logs_);

  EXPECT_EQ(Errors(), "\r\n" + Line(LoadResourceText(ids::kJournalNotAccessible) +
                                    settings_.JournalLogFileName));
  EXPECT_FALSE(fs::exists(dir_ / "missing"));
}

TEST_F(LogFileTest, FailingJournalIsReportedOnceAndDropped) {
  settings_.JournalLogFileName = kFull;
  settings_.ErrorHeader = "Erreurs";
  OpenLogFiles(settings_, logs_);  // the header write already fails
  EXPECT_FALSE(logs_.journal.IsOpen());
  for (int i = 0; i < 3; ++i) WriteJournalLine(logs_.journal, logs_.errorLog, "ligne");
  logs_.errorLog.WriteLogLine("suite");
  CloseLogFiles(settings_, logs_);

  EXPECT_EQ(Errors(),
            "Erreurs\r\n" + Line(LoadResourceText(ids::kJournalWriteProblem)) + "suite\r\n");
}

TEST_F(LogFileTest, FailingErrorLogLeavesTheJournalComplete) {
  settings_.ErrorLogFileName = kFull;
  settings_.JournalHeader = "H";
  OpenLogFiles(settings_, logs_);
  EXPECT_FALSE(logs_.errorLog.IsOpen());
  EXPECT_TRUE(logs_.errorLog.WriteLogLine("ignorée"));  // a closed log accepts lines
  WriteJournalLine(logs_.journal, logs_.errorLog, "a");
  WriteJournalLine(logs_.journal, logs_.errorLog, "b");
  CloseLogFiles(settings_, logs_);

  EXPECT_EQ(Journal(), "H\r\n\r\na\r\nb\r\n");
}

TEST_F(LogFileTest, LogSwitchedOffOrWithoutNameIsNeitherCreatedNorReported) {
  struct Case {
    const char* label;
    void (*change)(LogSettings&);
    bool journalCreated;
    bool errorsCreated;
  };
  const Case cases[] = {
      {"journal off", [](LogSettings& s) { s.JournalLogOn = false; }, false, true},
      {"journal unnamed", [](LogSettings& s) { s.JournalLogFileName.clear(); }, false, true},
      {"error log off", [](LogSettings& s) { s.ErrorLogOn = false; }, true, false},
      {"error log unnamed", [](LogSettings& s) { s.ErrorLogFileName.clear(); }, true, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    LogSettings settings = DefaultLogSettings(dir_.string());
    const std::string journal = settings.JournalLogFileName;
    const std::string errors = settings.ErrorLogFileName;
    c.change(settings);
    RunLogs logs;
    OpenLogFiles(settings, logs);
    WriteJournalLine(logs.journal, logs.errorLog, "j");
    CloseLogFiles(settings, logs);

    EXPECT_EQ(fs::exists(journal), c.journalCreated);
    EXPECT_EQ(fs::exists(errors), c.errorsCreated);
    EXPECT_EQ(Read(journal), c.journalCreated ? "\r\n\r\nj\r\n" : "");
    EXPECT_EQ(Read(errors), c.errorsCreated ? "\r\n" : "");
    fs::remove(journal);
    fs::remove(errors);
  }
}

TEST_F(LogFileTest, LinesAreWrittenInWindows1252) {
  const std::string path = (dir_ / "a.log").string();
  LogFile log;
  ASSERT_TRUE(log.Open(path, false));
  EXPECT_TRUE(log.WriteLogLine("é€ Œ"));
  EXPECT_TRUE(log.WriteLogLine("漢"));
  EXPECT_TRUE(log.Close());
  EXPECT_EQ(Read(path), "\xE9\x80 \x8C\r\n?\r\n");
}

TEST_F(LogFileTest, AppendLogLineAddsOneLineOrReportsTheSystemError) {
  const std::string path = (dir_ / "e.log").string();
  Write(path, "avant\r\n");
  std::string error;
  EXPECT_TRUE(AppendLogLine(path, "après", error));
  EXPECT_EQ(Read(path), "avant\r\napr\xE8s\r\n");
  EXPECT_TRUE(error.empty());

  EXPECT_FALSE(AppendLogLine((dir_ / "missing" / "e.log").string(), "x", error));
  EXPECT_EQ(error, std::strerror(ENOENT));
  EXPECT_FALSE(AppendLogLine(kFull, "x", error));
  EXPECT_EQ(error, std::strerror(ENOSPC));
}

}  // namespace
}  // namespace sheafwork
