#include "app/qt_module_loader.h"

#include <dlfcn.h>

#include <utility>

#include "app/command_line.h"
#include "app/qt_module_abi.h"
#include "platform/program_folders.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

namespace {

// The messages of this file, in French.
std::string MissingEntry(const char* name) {
  return std::string("le point d'entrée ") + name + " est absent du module";
}
std::string DesktopCannotLoad(const std::string& path, const std::string& reason) {
  return "sheafwork: l'application de bureau ne peut pas démarrer : le module " + path +
         " n'a pas pu être chargé (" + reason + ")";
}
std::string DesktopFailed(const std::string& reason) {
  return "sheafwork: l'application de bureau s'est arrêtée sur une erreur : " + reason;
}

}  // namespace

QtModule::QtModule(std::string path) : path_(std::move(path)) {}

void* QtModule::Entry(const char* name) {
  if (!tried_) {
    tried_ = true;
    // A bare name would be searched along the library path instead.
    if (path_.find('/') == std::string::npos) {
      failure_ = LoadResourceText(ids::kNoProgramFolder);
    } else {
      // The module's own copy of the core binds to itself only.
      handle_ = dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL);
      if (handle_ == nullptr) {
        const char* reason = dlerror();
        failure_ = reason != nullptr ? reason : path_;
      }
    }
  }
  if (handle_ == nullptr) return nullptr;
  dlerror();
  void* entry = dlsym(handle_, name);
  if (entry == nullptr) failure_ = MissingEntry(name);
  return entry;
}

embedded::PaintedOutputsLoad QtModule::PaintedOutputs() {
  embedded::PaintedOutputsLoad load;
  load.module = path_;
  const auto entry = reinterpret_cast<PaintedOutputsEntry>(Entry(kPaintedOutputsEntry));
  if (entry == nullptr) {
    load.failure = failure_;
    return load;
  }
  std::string failure;
  const embedded::PaintedOutputs* outputs = entry(&failure);
  if (outputs == nullptr) {
    load.failure = failure;
  } else {
    load.outputs = *outputs;
  }
  return load;
}

int QtModule::RunDesktop(int argc, char** argv, std::ostream& err) {
  const auto entry = reinterpret_cast<RunDesktopEntry>(Entry(kRunDesktopEntry));
  if (entry == nullptr) {
    err << DesktopCannotLoad(path_, failure_) << '\n';
    return kExitFailed;
  }
  std::string failure;
  const int status = entry(&argc, argv, &failure);
  if (status < 0) {
    err << DesktopFailed(failure) << '\n';
    return kExitFailed;
  }
  return status;
}

std::string ProgramQtModulePath() {
  const std::string& folder = RunningProgramLayout().moduleFolder;
  return folder.empty() ? std::string(kQtModuleFile) : folder + "/" + kQtModuleFile;
}

}  // namespace sheafwork
