#pragma once
// The program's side of its Qt module: found in the program folder, opened
// the first time the desktop or a painted output is needed, and kept open.

#include <ostream>
#include <string>

#include "embedded/render/painted_outputs.h"

namespace sheafwork {

class QtModule {
 public:
  /// The module at `path`; nothing is opened yet.
  explicit QtModule(std::string path);
  QtModule(const QtModule&) = delete;
  QtModule& operator=(const QtModule&) = delete;
  /// The module stays loaded: Qt's globals in it outlive any owner.
  ~QtModule() = default;

  const std::string& Path() const { return path_; }

  /// The module's painted outputs, loading it the first time; or the path
  /// and the reason it could not be loaded.
  embedded::PaintedOutputsLoad PaintedOutputs();

  /// Runs the desktop application through the module. When the module
  /// cannot be loaded or the desktop cannot run, says why on `err` and
  /// returns a failure status.
  int RunDesktop(int argc, char** argv, std::ostream& err);

 private:
  /// The entry point `name`, loading the module the first time; null with
  /// the reason in `failure_`.
  void* Entry(const char* name);

  std::string path_;
  void* handle_ = nullptr;
  bool tried_ = false;
  std::string failure_;
};

/// The running program's module: beside it in a build, in its lib/sheafwork
/// folder once installed (RunningProgramLayout()).
std::string ProgramQtModulePath();

}  // namespace sheafwork
