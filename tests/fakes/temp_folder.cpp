#include "fakes/temp_folder.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <iterator>
#include <system_error>

#include <unistd.h>

#include "fakes/native_path.h"
#include "log/wide_path.h"

namespace sheafwork::testing {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
  static std::atomic<int> counter{0};
  path_ = fs::temp_directory_path() /
          ("sheafwork-test-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
  fs::remove_all(path_);
  fs::create_directories(path_);
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::string TempFolder::File(std::string_view name) const { return PathText(path_ / FsPath(name)); }

std::string TempFolder::Write(std::string_view name, std::string_view bytes) const {
  const std::string file = File(name);
  fs::create_directories(FsPath(file).parent_path());
  std::ofstream out(FsPath(file), std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return file;
}

std::string TempFolder::Read(const std::string& path) {
  std::ifstream in(FsPath(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<std::string> TempFolder::Names(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(PathText(entry.path().filename()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace sheafwork::testing
