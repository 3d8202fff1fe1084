#include "app/shard_record.h"

#include <nlohmann/json.hpp>

#include "log/output_file.h"
#include "log/regular_file.h"

namespace sheafwork {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormat = 1;

Json ExtentJson(const std::optional<ShardLogExtent>& extent) {
  if (!extent) return nullptr;
  return Json{{"start", extent->start}, {"header", extent->header}, {"size", extent->size}};
}

std::optional<ShardLogExtent> ExtentFrom(const Json& json) {
  if (json.is_null()) return std::nullopt;
  return ShardLogExtent{json.at("start").get<std::uint64_t>(),
                        json.at("header").get<std::uint64_t>(),
                        json.at("size").get<std::uint64_t>()};
}

}  // namespace

std::string ShardAnchorLog(const LogSettings& settings) {
  if (settings.JournalLogOn && !settings.JournalLogFileName.empty()) {
    return settings.JournalLogFileName;
  }
  if (settings.ErrorLogOn && !settings.ErrorLogFileName.empty()) return settings.ErrorLogFileName;
  return {};
}

std::string ShardRecordName(const LogSettings& settings, const Shard& shard) {
  const std::string anchor = ShardAnchorLog(settings);
  return anchor.empty() ? std::string() : ShardLogName(anchor, shard) + ".json";
}

std::string WriteShardRecord(const std::string& path, const ShardRecord& record) {
  Json rows = Json::array();
  for (const RowLogBytes& row : record.rowBytes) {
    rows.push_back(Json::array({row.row, row.journal, row.errorLog}));
  }
  const Json json{{"sheafworkShard", kFormat},
                  {"list", record.list},
                  {"rows", record.rows},
                  {"fingerprint", record.fingerprint},
                  {"shard", record.shard.index},
                  {"shards", record.shard.count},
                  {"complete", record.complete},
                  {"plotted", record.plotted},
                  {"failed", record.failed},
                  {"journal", ExtentJson(record.journal)},
                  {"errorLog", ExtentJson(record.errorLog)},
                  {"rowBytes", rows}};
  OutputFile file(path);
  if (!file.IsOpen()) return file.Failure();
  if (!file.Write(json.dump(1) + "\n") || !file.Commit()) return file.Failure();
  return {};
}

std::optional<ShardRecord> ReadShardRecord(const std::string& path, std::string& reason) {
  const RegularFileRead read = ReadRegularFile(path, kTextInputLimit);
  if (!read.ok) {
    reason = read.reason;
    return std::nullopt;
  }
  try {
    const Json json = Json::parse(read.bytes);
    if (json.at("sheafworkShard").get<int>() != kFormat) {
      reason = "format " + json.at("sheafworkShard").dump();
      return std::nullopt;
    }
    ShardRecord record;
    record.list = json.at("list").get<std::string>();
    record.rows = json.at("rows").get<int>();
    record.fingerprint = json.at("fingerprint").get<std::string>();
    record.shard = Shard{json.at("shard").get<int>(), json.at("shards").get<int>()};
    record.complete = json.at("complete").get<bool>();
    record.plotted = json.at("plotted").get<int>();
    record.failed = json.at("failed").get<int>();
    record.journal = ExtentFrom(json.at("journal"));
    record.errorLog = ExtentFrom(json.at("errorLog"));
    for (const Json& row : json.at("rowBytes")) {
      record.rowBytes.push_back(
          {row.at(0).get<int>(), row.at(1).get<std::uint64_t>(), row.at(2).get<std::uint64_t>()});
    }
    return record;
  } catch (const Json::exception& error) {
    reason = error.what();
    return std::nullopt;
  }
}

}  // namespace sheafwork
