#pragma once
// A fresh folder for one test, removed with everything in it afterwards.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace sheafwork::testing {

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// The full path of `name` inside the folder.
  std::string File(std::string_view name) const;
  /// Writes `bytes` to `name`, making its subfolders, and returns its full
  /// path.
  std::string Write(std::string_view name, std::string_view bytes) const;
  /// The bytes of the file at `path`; empty when it does not exist.
  static std::string Read(const std::string& path);
  /// The names (UTF-8) of what `folder` holds, sorted.
  static std::vector<std::string> Names(const std::filesystem::path& folder);

 private:
  std::filesystem::path path_;
};

}  // namespace sheafwork::testing
