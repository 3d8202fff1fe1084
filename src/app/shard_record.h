#pragma once
// The record a shard run leaves beside its logs ("<shard log>.json"): which
// list it plotted (path and fingerprint of its rows), which shard of how
// many, whether it went to its end, and how many bytes of each log every
// row wrote, so that `logs merge` can put the shards' logs together in row
// order while the logs themselves keep their format. Written once before
// the run (not complete) and again after it, each time whole.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "log/log_settings.h"
#include "plotrun/plot_run.h"
#include "plotrun/shard.h"

namespace sheafwork {

/// Where one log of the shard run lies in its file.
struct ShardLogExtent {
  std::uint64_t start =
      0;  ///< where the run began writing (the file's size before, when appended to)
  std::uint64_t header = 0;  ///< bytes written before the first row
  std::uint64_t size = 0;    ///< the file's size after the run
};

struct ShardRecord {
  std::string list;  ///< full path of the list file
  int rows = 0;      ///< the list's rows, all shards together
  std::string fingerprint;
  Shard shard;
  bool complete = false;  ///< every row of the shard went through and both logs are whole
  int plotted = 0;
  int failed = 0;
  std::optional<ShardLogExtent> journal;
  std::optional<ShardLogExtent> errorLog;
  std::vector<RowLogBytes> rowBytes;
};

/// The log the record is named after: the journal when the settings write
/// one, else the error log; empty when they write neither.
std::string ShardAnchorLog(const LogSettings& settings);

/// The record's file for `shard` of a list with these log settings; empty
/// when the list writes no log.
std::string ShardRecordName(const LogSettings& settings, const Shard& shard);

/// Writes the record whole (OutputFile); the reason in the system's words
/// when it could not, empty when done.
std::string WriteShardRecord(const std::string& path, const ShardRecord& record);

/// Reads a record; nullopt with `reason` set when the file cannot be read or
/// is not a record.
std::optional<ShardRecord> ReadShardRecord(const std::string& path, std::string& reason);

}  // namespace sheafwork
