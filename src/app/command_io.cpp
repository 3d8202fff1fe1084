#include "app/command_io.h"

#include <filesystem>
#include <system_error>

#include "log/wide_path.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

namespace fs = std::filesystem;

std::string FullPath(const std::string& name) {
  std::error_code ec;
  const fs::path full = fs::absolute(FsPath(name), ec);
  return ec ? name : PathText(full.lexically_normal());
}

int Fail(const CommandIo& io, const std::string& file, const std::string& message) {
  io.err << "sheafwork: " << file << ": " << message << '\n';
  return kExitBadInput;
}

int Refuse(const CommandIo& io, const std::string& message) {
  io.err << "sheafwork: " << message << '\n';
  return kExitBadInput;
}

int FailWith(const CommandIo& io, const std::string& file, const ListFileResult& result) {
  std::string message = LoadResourceText(MessageIdFor(result.status));
  if (result.status == ListFileStatus::Malformed ||
      result.status == ListFileStatus::TooManyEntries) {
    message += " (ligne " + std::to_string(result.line) + ")";
  }
  if (!result.reason.empty()) message += " (" + result.reason + ")";
  return Fail(io, file, message);
}

std::string MissingDataFolder(const std::vector<std::string>& searched) {
  if (searched.empty()) return LoadResourceText(ids::kNoProgramFolder);
  std::string message = LoadResourceText(ids::kDataFolderMissing);
  for (std::size_t i = 0; i < searched.size(); ++i) message += (i ? ", " : "") + searched[i];
  return message;
}

bool LoadList(Session& session, const std::string& path, const CommandIo& io, int& status) {
  const ListFileResult result = ReadListFile(session, path, false);
  if (result.ok()) return true;
  status = FailWith(io, path, result);
  return false;
}

}  // namespace sheafwork
