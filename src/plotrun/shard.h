#pragma once
// One share of a list's rows, for runs spread over several processes or
// machines: shard K of N plots the rows r (from 1) with (r - 1) mod N = K - 1,
// so that neighbouring rows, often drawings of one size, go to different
// shards. Each shard writes its own logs, named after the list's with
// ".shard-K-of-N" before the extension, and `logs merge` puts them together.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sheafwork {

class BatchList;

struct Shard {
  int index = 1;  ///< K, from 1
  int count = 1;  ///< N

  /// Whether row `row` (from 1) is this shard's.
  bool Holds(int row) const { return (row - 1) % count == index - 1; }
  /// How many of the first `rows` rows are this shard's.
  int RowsOf(int rows) const;
  /// "K/N", as the command line takes it.
  std::string Text() const;

  bool operator==(const Shard&) const = default;
};

/// "K/N" with 1 <= K <= N, both decimal numbers without sign or blanks;
/// nullopt for anything else.
std::optional<Shard> ParseShard(std::string_view text);

/// The name of a log of `shard`: the list's log name with ".shard-K-of-N"
/// added before its extension (the part StripExtension takes away), or at
/// its end when it has none.
std::string ShardLogName(std::string_view log, const Shard& shard);

/// What the rows of a list hold, every field of every row in order, as
/// sixteen hexadecimal digits (FNV-1a, 64 bits): two lists with the same
/// fingerprint plot the same rows.
std::string RowsFingerprint(const BatchList& list);

}  // namespace sheafwork
