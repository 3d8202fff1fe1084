#pragma once
// A plot run of one shard (`plot LIST --shard K/N`): its logs are the
// list's with the shard in their names, and its record (shard_record.h) is
// written before the run, not complete, and after it with what the run did.

#include <string>

#include "app/command_io.h"
#include "app/shard_record.h"
#include "plotrun/plot_run.h"

namespace sheafwork {

class ShardRun {
 public:
  /// Points the session's logs at the shard's. False after refusing, with
  /// `status` set, a list whose two logs are one file (the merge could not
  /// tell their lines apart).
  bool Prepare(Session& session, const std::string& list, const Shard& shard, const CommandIo& io,
               int& status);

  /// Writes the record, not complete, once the logs' folder is there. False
  /// after reporting a record that cannot be written, with `status` set.
  bool Begin(const CommandIo& io, int& status);

  /// Writes the record with how the run went; false after reporting a
  /// record that could not be written.
  bool End(const RunResult& result, const CommandIo& io);

 private:
  ShardRecord record_;
  std::string recordPath_;
  std::string journal_;
  std::string errorLog_;
};

}  // namespace sheafwork
