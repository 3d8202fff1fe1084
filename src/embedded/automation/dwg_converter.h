#pragma once
// Running the external DWG converter.

#include <string>

namespace sheafwork::embedded {

/// A folder made for one conversion and removed with its content.
class ScratchFolder {
 public:
  /// Throws host::Error when the folder cannot be made.
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

/// Runs `converter input output` (found along PATH when it has no folder, no
/// shell) and waits for it. Throws host::Error naming `input` when it cannot
/// be started, ends with a status other than 0 or writes no output file.
void RunDwgConverter(const std::string& converter, const std::string& input,
                     const std::string& output);

}  // namespace sheafwork::embedded
