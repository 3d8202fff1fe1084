#pragma once
// The answers of font lookups, kept in a file from one run to the next.
// Asking fontconfig costs a small plot about a tenth of its time (the library
// loaded, its configuration parsed, every folder's cache read), and the
// answers only change when fonts are added or removed. The file lists the
// font folders with the time each last changed; when one of them has changed
// since, or appeared, or gone, every answer is forgotten.

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/fonts/font_files.h"

namespace sheafwork::embedded {

class LookupCache {
 public:
  /// A cache that keeps nothing.
  LookupCache() = default;
  /// The answers in `file` (created when first needed); none when it is
  /// missing, unreadable, not ours, a folder it lists has changed, or it
  /// does not list every one of `roots` (the folders fonts may be put in,
  /// which depend on the user's environment).
  static LookupCache Load(std::string file, const std::vector<std::string>& roots);

  /// The answer remembered for `key`: null when there is none; else the
  /// face, or no face when the system had none.
  const std::optional<FaceFile>* Find(std::string_view key) const;
  /// Remembers `answer` for `key` and saves the file, replaced whole (a file
  /// that cannot be written is not kept, and nothing else happens). The
  /// first answer of a new file records the folders `folders` gives.
  void Remember(std::string key, std::optional<FaceFile> answer,
                const std::function<std::vector<std::string>()>& folders);

 private:
  struct Folder {
    std::string path;
    std::int64_t changed = 0;  ///< -1: absent
  };
  void Save() const;

  std::string file_;
  std::vector<Folder> folders_;
  std::map<std::string, std::optional<FaceFile>, std::less<>> answers_;
};

/// When the folder last changed, in nanoseconds; -1 when there is none.
std::int64_t FolderChanged(const std::string& path);

}  // namespace sheafwork::embedded
