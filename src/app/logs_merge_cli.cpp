#include "app/logs_merge_cli.h"

#include <filesystem>
#include <set>
#include <system_error>
#include <vector>

#include "app/run_commands_cli.h"
#include "app/shard_record.h"
#include "log/log_file.h"
#include "log/output_file.h"
#include "log/paths.h"
#include "log/regular_file.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

namespace {

namespace fs = std::filesystem;

// One of the two logs: where the list writes it, what a run writes at its
// start, and where a record keeps its extent and its rows' bytes.
struct LogKind {
  const char* label;  ///< how the summary names it
  std::string path;
  bool append = false;
  std::vector<std::string> header;
  std::optional<ShardLogExtent> ShardRecord::*extent;
  std::uint64_t RowLogBytes::*rowBytes;
};

// The logs the list writes.
std::vector<LogKind> ListLogs(const LogSettings& log) {
  std::vector<LogKind> logs;
  if (log.JournalLogOn && !log.JournalLogFileName.empty()) {
    logs.push_back({"journal",
                    log.JournalLogFileName,
                    log.JournalAppend,
                    {log.JournalHeader, log.JournalUserComment},
                    &ShardRecord::journal,
                    &RowLogBytes::journal});
  }
  if (log.ErrorLogOn && !log.ErrorLogFileName.empty()) {
    logs.push_back({"erreurs",
                    log.ErrorLogFileName,
                    log.ErrorAppend,
                    {log.ErrorHeader},
                    &ShardRecord::errorLog,
                    &RowLogBytes::errorLog});
  }
  return logs;
}

// The numbers of shards of the records that lie beside the list's logs.
std::vector<int> SplitsFound(const LogSettings& settings) {
  const std::string sample = FileNameFromPath(ShardRecordName(settings, Shard{1, 1}));
  const auto at = sample.rfind(".shard-1-of-1");
  const std::string prefix = sample.substr(0, at + 7);
  const std::string suffix = sample.substr(at + 13);
  fs::path folder = fs::path(ShardAnchorLog(settings)).parent_path();
  if (folder.empty()) folder = ".";
  std::set<int> found;
  std::error_code ec;
  for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
    const std::string name = it->path().filename().string();
    if (name.size() <= prefix.size() + suffix.size() || !name.starts_with(prefix) ||
        !name.ends_with(suffix)) {
      continue;
    }
    std::string middle = name.substr(prefix.size(), name.size() - prefix.size() - suffix.size());
    const auto of = middle.find("-of-");
    if (of == std::string::npos) continue;
    middle.replace(of, 4, "/");
    if (const auto shard = ParseShard(middle)) found.insert(shard->count);
  }
  return {found.begin(), found.end()};
}

// A shard whose record and logs were found whole: the rows' bytes of each
// log, in the order of the shard's rows.
struct ShardLogs {
  ShardRecord record;
  std::vector<std::string> bytes;                     ///< per log, this run's part
  std::vector<std::vector<std::uint64_t>> rowStarts;  ///< per log, per row
};

class Merge {
 public:
  Merge(const Session& session, const CommandIo& io)
      : io_(io),
        logs_(ListLogs(session.Log)),
        settings_(session.Log),
        rows_(session.List.EntryCount()),
        fingerprint_(RowsFingerprint(session.List)) {}

  const std::vector<LogKind>& Logs() const { return logs_; }

  // Reads and checks shard `shard`; false after reporting what is wrong.
  bool Read(const Shard& shard) {
    const std::string path = ShardRecordName(settings_, shard);
    std::error_code ec;
    if (!fs::exists(path, ec)) {
      return Problem(path, LoadResourceText(ids::kMergeShardMissing) + shard.Text());
    }
    std::string reason;
    auto record = ReadShardRecord(path, reason);
    if (!record) return Problem(path, LoadResourceText(ids::kMergeRecordUnreadable) + reason);
    if (record->fingerprint != fingerprint_ || record->rows != rows_) {
      return Problem(path, LoadResourceText(ids::kMergeOtherList) + record->list);
    }
    if (record->shard != shard) {
      return Problem(path, LoadResourceText(ids::kMergeOtherSplit) + record->shard.Text());
    }
    if (!record->complete || !HoldsEveryRow(*record, shard)) {
      return Problem(path, LoadResourceText(ids::kMergeShardIncomplete));
    }
    ShardLogs shardLogs{std::move(*record), {}, {}};
    for (const LogKind& log : logs_) {
      if (!ReadLog(log, shard, shardLogs)) return false;
    }
    shards_.push_back(std::move(shardLogs));
    return true;
  }

  // The list's log `index` as one run over every row writes it: what an
  // appended log already holds, the header lines, then each row's lines
  // from its shard.
  bool Assemble(std::size_t index, std::string& out) {
    const LogKind& log = logs_[index];
    out.clear();
    std::error_code ec;
    if (log.append && fs::exists(log.path, ec)) {
      const RegularFileRead read = ReadRegularFile(log.path, kNoSizeLimit);
      if (!read.ok) return Problem(log.path, read.reason);
      out = read.bytes;
    }
    for (const std::string& line : log.header) out += LogLineBytes(line);
    const std::size_t count = shards_.size();
    for (int row = 1; row <= rows_; ++row) {
      const ShardLogs& shard = shards_[static_cast<std::size_t>(row - 1) % count];
      const std::size_t nth = static_cast<std::size_t>(row - 1) / count;
      const std::uint64_t start = shard.rowStarts[index][nth];
      out.append(shard.bytes[index], start, shard.record.rowBytes[nth].*log.rowBytes);
    }
    return true;
  }

  int Plotted() const { return Sum(&ShardRecord::plotted); }
  int Failed() const { return Sum(&ShardRecord::failed); }

 private:
  bool Problem(const std::string& file, const std::string& reason) {
    io_.err << "sheafwork: " << file << ": " << reason << '\n';
    return false;
  }

  bool HoldsEveryRow(const ShardRecord& record, const Shard& shard) const {
    if (static_cast<int>(record.rowBytes.size()) != shard.RowsOf(rows_)) return false;
    int row = shard.index;
    for (const RowLogBytes& bytes : record.rowBytes) {
      if (bytes.row != row) return false;
      row += shard.count;
    }
    return true;
  }

  // Reads the shard's part of one log and checks that it is what the
  // record says: the header, then exactly the rows' bytes.
  bool ReadLog(const LogKind& log, const Shard& shard, ShardLogs& into) {
    const std::string path = ShardLogName(log.path, shard);
    const std::optional<ShardLogExtent>& extent = into.record.*log.extent;
    if (!extent) return Problem(path, LoadResourceText(ids::kMergeLogMismatch));
    const RegularFileRead read = ReadRegularFile(path, kNoSizeLimit);
    if (!read.ok) return Problem(path, LoadResourceText(ids::kMergeLogMissing) + read.reason);
    std::uint64_t total = extent->start + extent->header;
    std::vector<std::uint64_t> starts;
    for (const RowLogBytes& row : into.record.rowBytes) {
      starts.push_back(total - extent->start);
      total += row.*log.rowBytes;
    }
    if (read.bytes.size() != extent->size || total != extent->size) {
      return Problem(path, LoadResourceText(ids::kMergeLogMismatch));
    }
    into.bytes.push_back(read.bytes.substr(extent->start));
    into.rowStarts.push_back(std::move(starts));
    return true;
  }

  int Sum(int ShardRecord::*member) const {
    int sum = 0;
    for (const ShardLogs& shard : shards_) sum += shard.record.*member;
    return sum;
  }

  const CommandIo& io_;
  std::vector<LogKind> logs_;
  const LogSettings& settings_;
  int rows_;
  std::string fingerprint_;
  std::vector<ShardLogs> shards_;
};

}  // namespace

int RunLogsMerge(const LogsMergeOptions& options, const CommandIo& io) {
  Session session(io.env.defaultLogFolder);
  const std::string list = FullPath(options.list);
  int status = kExitOk;
  if (!LoadList(session, list, io, status)) return status;
  if (ShardAnchorLog(session.Log).empty())
    return Fail(io, list, LoadResourceText(ids::kMergeNoLog));

  int count = 0;
  if (options.shards) {
    count = *options.shards;
  } else {
    const std::vector<int> splits = SplitsFound(session.Log);
    if (splits.empty()) {
      const std::string expected = ShardRecordName(session.Log, Shard{1, 1});
      return Fail(io, list,
                  LoadResourceText(ids::kMergeNoShards) +
                      expected.substr(0, expected.rfind(".shard-1-of-1") + 7) + "K-of-N" +
                      expected.substr(expected.rfind(".shard-1-of-1") + 13));
    }
    if (splits.size() > 1) {
      std::string numbers;
      for (const int n : splits) numbers += (numbers.empty() ? "" : ", ") + std::to_string(n);
      return Fail(io, list,
                  LoadResourceText(ids::kMergeSplitsMixed) + numbers +
                      LoadResourceText(ids::kMergeChooseSplit));
    }
    count = splits.front();
  }

  // Every shard is checked, and every problem named, before anything is
  // written.
  Merge merge(session, io);
  bool ready = true;
  for (int index = 1; index <= count; ++index) ready = merge.Read(Shard{index, count}) && ready;
  if (!ready) return kExitBadInput;

  std::vector<std::string> contents(merge.Logs().size());
  for (std::size_t i = 0; i < contents.size(); ++i) {
    if (!merge.Assemble(i, contents[i])) return kExitBadInput;
  }
  bool written = true;
  std::string where;
  for (std::size_t i = 0; i < contents.size(); ++i) {
    const LogKind& log = merge.Logs()[i];
    OutputFile file(log.path);
    if (!file.IsOpen() || !file.Write(contents[i]) || !file.Commit()) {
      io.err << "sheafwork: " << log.path << ": " << LoadResourceText(ids::kMergeNotWritten)
             << file.Failure() << '\n';
      written = false;
      continue;
    }
    where += std::string(" ; ") + log.label + " : " + log.path;
  }
  io.err << "sheafwork: " << count << " " << LoadResourceText(ids::kMergeShardsJoined) << " : "
         << RowsSummary(merge.Plotted(), merge.Failed()) << where << '\n';
  return !written || merge.Failed() > 0 ? kExitFailed : kExitOk;
}

}  // namespace sheafwork
