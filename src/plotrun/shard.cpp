#include "plotrun/shard.h"

#include <charconv>
#include <cstdio>

#include "batch/batch_list.h"
#include "log/paths.h"

namespace sheafwork {

namespace {

// A decimal number of at most six digits, nothing else.
std::optional<int> SmallNumber(std::string_view text) {
  if (text.empty() || text.size() > 6) return std::nullopt;
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || text.front() == '-') {
    return std::nullopt;
  }
  return value;
}

class Fnv1a {
 public:
  void Add(std::string_view bytes) {
    for (const char c : bytes) {
      hash_ ^= static_cast<unsigned char>(c);
      hash_ *= 0x100000001b3ULL;
    }
  }
  // A byte no text field holds ends each field, so that moving a character
  // from one field to the next changes the fingerprint.
  void AddField(std::string_view text) {
    Add(text);
    Add(std::string_view("\0", 1));
  }
  std::uint64_t Value() const { return hash_; }

 private:
  std::uint64_t hash_ = 0xcbf29ce484222325ULL;
};

}  // namespace

int Shard::RowsOf(int rows) const { return rows >= index ? (rows - index) / count + 1 : 0; }

std::string Shard::Text() const { return std::to_string(index) + "/" + std::to_string(count); }

std::optional<Shard> ParseShard(std::string_view text) {
  const auto slash = text.find('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const auto index = SmallNumber(text.substr(0, slash));
  const auto count = SmallNumber(text.substr(slash + 1));
  if (!index || !count || *index < 1 || *index > *count) return std::nullopt;
  return Shard{*index, *count};
}

std::string ShardLogName(std::string_view log, const Shard& shard) {
  const std::string folder = FolderFromPath(log);
  const std::string name = FileNameFromPath(log);
  const std::string tag =
      ".shard-" + std::to_string(shard.index) + "-of-" + std::to_string(shard.count);
  const std::string stem = StripExtension(name);
  // StripExtension gives back a name without extension trimmed; only a name
  // whose last dot it found keeps its extension.
  const bool hasExtension = stem.size() < name.size() && name[stem.size()] == '.';
  if (!hasExtension) return folder + name + tag;
  return folder + stem + tag + name.substr(stem.size());
}

std::string RowsFingerprint(const BatchList& list) {
  Fnv1a hash;
  for (int row = 1; row <= list.EntryCount(); ++row) {
    const BatchEntry& entry = list.Entry(row);
    for (const std::string* field :
         {&entry.FileName, &entry.Layout, &entry.PlotSetup, &entry.PlotDevice, &entry.Layers,
          &entry.PlotArea, &entry.PlotScale, &entry.PlotFile}) {
      hash.AddField(*field);
    }
    hash.AddField(entry.ScaleCustom ? "1" : "0");
    hash.AddField(entry.ScaleLW ? "1" : "0");
  }
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash.Value()));
  return text;
}

}  // namespace sheafwork
