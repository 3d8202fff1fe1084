#pragma once
// `sheafwork logs merge LIST`: the logs of a list's shards (plot --shard K/N)
// put together, in row order, into the list's journal and error log as one
// run over every row would have written them.

#include <optional>
#include <string>

#include "app/command_io.h"

namespace sheafwork {

struct LogsMergeOptions {
  std::string list;
  /// How many shards the list was split into; when not given, the records
  /// beside the list's logs tell it (they must all be of one split).
  std::optional<int> shards;
};

/// Checks every shard's record and logs, then writes the list's logs. 0 when
/// every row was plotted, 1 when a row failed or a log could not be written,
/// 2 when the list cannot be read or a shard is missing, of another list or
/// of another split, or incomplete (then nothing is written).
int RunLogsMerge(const LogsMergeOptions& options, const CommandIo& io);

}  // namespace sheafwork
