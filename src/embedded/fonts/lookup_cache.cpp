#include "embedded/fonts/lookup_cache.h"

#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

#include "log/output_file.h"

namespace sheafwork::embedded {

namespace {

constexpr std::string_view kSignature = "sheafwork-font-lookups 1";

// Fields are separated by tabs, records by line ends: what holds either is
// not kept.
bool Storable(std::string_view text) {
  return text.find_first_of("\t\r\n") == std::string_view::npos;
}

std::vector<std::string_view> Fields(std::string_view line) {
  std::vector<std::string_view> fields;
  while (true) {
    const auto tab = line.find('\t');
    fields.push_back(line.substr(0, tab));
    if (tab == std::string_view::npos) return fields;
    line.remove_prefix(tab + 1);
  }
}

template <typename Number>
bool Parse(std::string_view text, Number& out) {
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), out);
  return ec == std::errc() && end == text.data() + text.size();
}

}  // namespace

std::int64_t FolderChanged(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) return -1;
  return static_cast<std::int64_t>(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
}

LookupCache LookupCache::Load(std::string file, const std::vector<std::string>& roots) {
  LookupCache cache;
  cache.file_ = std::move(file);
  std::ifstream in(cache.file_, std::ios::binary);
  std::string line;
  if (!in || !std::getline(in, line) || line != kSignature) return cache;
  LookupCache read;
  read.file_ = cache.file_;
  while (std::getline(in, line)) {
    const std::vector<std::string_view> f = Fields(line);
    if (f[0] == "folder" && f.size() == 3) {
      Folder folder{std::string(f[2]), 0};
      if (!Parse(f[1], folder.changed) || FolderChanged(folder.path) != folder.changed)
        return cache;  // fonts came or went since
      read.folders_.push_back(std::move(folder));
    } else if (f[0] == "face" && f.size() == 6) {
      FaceFile face{std::string(f[2]), 0, f[4] == "1", f[5] == "1"};
      if (!Parse(f[3], face.index)) return cache;
      read.answers_.emplace(std::string(f[1]), std::move(face));
    } else if (f[0] == "none" && f.size() == 2) {
      read.answers_.emplace(std::string(f[1]), std::nullopt);
    } else {
      return cache;  // not a file of ours, or cut short
    }
  }
  for (const std::string& root : roots) {
    const bool listed = std::any_of(read.folders_.begin(), read.folders_.end(),
                                    [&](const Folder& folder) { return folder.path == root; });
    if (!listed) return cache;  // made in another environment
  }
  if (read.folders_.empty()) return cache;
  return read;
}

const std::optional<FaceFile>* LookupCache::Find(std::string_view key) const {
  const auto it = answers_.find(key);
  return it == answers_.end() ? nullptr : &it->second;
}

void LookupCache::Remember(std::string key, std::optional<FaceFile> answer,
                           const std::function<std::vector<std::string>()>& folders) {
  if (file_.empty() || !Storable(key) || (answer && !Storable(answer->path))) return;
  if (folders_.empty()) {
    for (std::string& path : folders()) {
      if (!Storable(path)) return;
      const std::int64_t changed = FolderChanged(path);
      folders_.push_back({std::move(path), changed});
    }
    if (folders_.empty()) return;
  }
  answers_.insert_or_assign(std::move(key), std::move(answer));
  Save();
}

void LookupCache::Save() const {
  std::ostringstream text;
  text << kSignature << '\n';
  for (const Folder& folder : folders_)
    text << "folder\t" << folder.changed << '\t' << folder.path << '\n';
  for (const auto& [key, answer] : answers_) {
    if (answer) {
      text << "face\t" << key << '\t' << answer->path << '\t' << answer->index << '\t'
           << (answer->italic ? 1 : 0) << '\t' << (answer->bold ? 1 : 0) << '\n';
    } else {
      text << "none\t" << key << '\n';
    }
  }
  // Written beside and renamed into place: a run reading it meanwhile sees
  // the old file or the new one, never half of one.
  std::error_code ec;
  std::filesystem::create_directories(std::filesystem::path(file_).parent_path(), ec);
  OutputFile out(file_);
  out.Write(text.str());
  out.Commit();
}

}  // namespace sheafwork::embedded
