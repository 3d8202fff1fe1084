#include "app/shard_run.h"

#include <filesystem>
#include <system_error>

#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

namespace {

namespace fs = std::filesystem;

std::uint64_t FileSize(const std::string& path) {
  std::error_code ec;
  const auto size = fs::file_size(path, ec);
  return ec ? 0 : size;
}

bool SameFile(const std::string& a, const std::string& b) {
  std::error_code ec;
  return a == b || fs::equivalent(a, b, ec);
}

}  // namespace

bool ShardRun::Prepare(Session& session, const std::string& list, const Shard& shard,
                       const CommandIo& io, int& status) {
  LogSettings& log = session.Log;
  const bool journalOn = log.JournalLogOn && !log.JournalLogFileName.empty();
  const bool errorOn = log.ErrorLogOn && !log.ErrorLogFileName.empty();
  if (journalOn && errorOn && SameFile(log.JournalLogFileName, log.ErrorLogFileName)) {
    status = Refuse(io, LoadResourceText(ids::kCliShardOneLogFile));
    return false;
  }
  recordPath_ = ShardRecordName(log, shard);
  record_.list = list;
  record_.rows = session.List.EntryCount();
  record_.fingerprint = RowsFingerprint(session.List);
  record_.shard = shard;
  // An appended log keeps what earlier runs wrote: this run's part starts
  // where the file ends now.
  if (journalOn) {
    journal_ = log.JournalLogFileName = ShardLogName(log.JournalLogFileName, shard);
    record_.journal = ShardLogExtent{log.JournalAppend ? FileSize(journal_) : 0, 0, 0};
  }
  if (errorOn) {
    errorLog_ = log.ErrorLogFileName = ShardLogName(log.ErrorLogFileName, shard);
    record_.errorLog = ShardLogExtent{log.ErrorAppend ? FileSize(errorLog_) : 0, 0, 0};
  }
  return true;
}

bool ShardRun::Begin(const CommandIo& io, int& status) {
  if (recordPath_.empty()) return true;  // no log, nothing to merge
  const std::string failure = WriteShardRecord(recordPath_, record_);
  if (failure.empty()) return true;
  status = Fail(io, recordPath_, LoadResourceText(ids::kCliShardRecordNotWritten) + failure);
  return false;
}

bool ShardRun::End(const RunResult& result, const CommandIo& io) {
  if (recordPath_.empty()) return true;
  record_.complete = !result.endedEarly && !result.cancelled && result.logProblems.empty();
  record_.plotted = result.plotted;
  record_.failed = result.failed;
  record_.rowBytes = result.rowLogBytes;
  if (record_.journal) {
    record_.journal->header = result.logBytesBeforeRows.journal;
    record_.journal->size = FileSize(journal_);
  }
  if (record_.errorLog) {
    record_.errorLog->header = result.logBytesBeforeRows.errorLog;
    record_.errorLog->size = FileSize(errorLog_);
  }
  const std::string failure = WriteShardRecord(recordPath_, record_);
  if (failure.empty()) return true;
  io.err << "sheafwork: " << recordPath_ << ": " << LoadResourceText(ids::kCliShardRecordNotWritten)
         << failure << '\n';
  return false;
}

}  // namespace sheafwork
