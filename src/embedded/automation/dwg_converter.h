#pragma once
// Running the DWG converter: the program's own (tools/dwg2dxf, a Node.js
// program copied beside the program's data) or one the user names.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "host/error.h"

namespace sheafwork::embedded {

/// A folder made for the converted drawings and removed with its content.
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

/// The converter shipped with the program: "dwg2dxf/dwg2dxf.js" in the data
/// folder.
std::string BundledDwgConverter(const std::string& dataFolder);

/// How long one conversion may take unless SHEAFWORK_DWG_TIME_LIMIT gives a
/// number of seconds.
std::chrono::milliseconds DefaultDwgTimeLimit();

/// Runs `converter input output` and waits for it, without a shell. A
/// converter whose name ends in ".js" is run by Node.js, found along PATH
/// (`node --liftoff-only converter input output`); any other is found along
/// PATH when it has no folder. Its standard output is discarded; the last
/// line it writes on its standard error is the reason given when it fails.
/// Past `timeLimit` it is ended with the processes it started. Throws
/// host::Error naming `input` when it cannot be started (Node.js missing
/// included), ends with a status other than 0, runs out of time or writes no
/// output file.
void RunDwgConverter(const std::string& converter, const std::string& input,
                     const std::string& output, std::chrono::milliseconds timeLimit);

/// The drawings converted during one run: each DWG file is converted once,
/// unless it changed since, and a failure is remembered as well. The DXF
/// files live in one scratch folder, removed by Clear or with the object.
class DwgConversions {
 public:
  /// The DXF file converted from `dwg`. Throws host::Error.
  std::string Convert(const std::string& converter, const std::string& dwg,
                      std::chrono::milliseconds timeLimit);
  /// Forgets every conversion and removes their files.
  void Clear();
  /// Also keeps the converted drawings in `folder`, which the processes of
  /// one parallel run share: a drawing converted there by any of them (the
  /// same file, size, time and converter) is not converted again. The
  /// folder belongs to the caller; Clear leaves it alone.
  void ShareThrough(std::string folder) { shared_ = std::move(folder); }

 private:
  struct Done {
    std::filesystem::file_time_type modified;
    std::uintmax_t size = 0;
    std::string converter;
    std::string dxf;
    std::optional<host::Error> error;
  };
  std::unique_ptr<ScratchFolder> folder_;
  std::map<std::string, Done> done_;
  int made_ = 0;
  std::string shared_;
};

}  // namespace sheafwork::embedded
