// The Qt module's two entry points. Everything else in the module, its copy
// of the core included, is hidden: it never binds to the program's copy.

#include <exception>
#include <memory>
#include <new>
#include <string>
#include <type_traits>

#include "app/command_line.h"
#include "app/qt_module_abi.h"
#include "embedded/paint/painted_files.h"
#include "host/registry.h"
#include "platform/program_folders.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "ui/desktop.h"
#include "ui/progress_dialog.h"

namespace {

std::string Describe(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const std::bad_alloc&) {
    return sheafwork::LoadResourceText(sheafwork::ids::kOutOfMemory);
  } catch (const std::exception& e) {
    return e.what();
  } catch (...) {
    return "exception inconnue";
  }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int sheafwork_qt_run_desktop(
    int* argc, char** argv, std::string* failure) noexcept {
  try {
    namespace ui = sheafwork::ui;
    // The desktop plots with this copy of the engine, painted outputs
    // included.
    sheafwork::embedded::SetPaintedOutputs(sheafwork::embedded::PaintOutputs());
    // The desktop application drives the embedded host with its own
    // progress dialog.
    const auto progress = std::make_shared<ui::ProgressDialog>();
    sheafwork::HostRegistry hosts;
    hosts.Register(
        sheafwork::kEmbeddedHostName, [progress] { return ui::MakeDesktopEmbeddedHost(progress); },
        /*makeDefault=*/true);
    ui::DesktopOptions options;
    options.hosts = &hosts;
    options.progress = progress.get();
    options.listName = *argc == 2 ? argv[1] : "";
    options.dataFolder = sheafwork::ProgramDataFolder();
    options.userFolder = sheafwork::UserDataFolder();
    return ui::RunDesktop(*argc, argv, options);
  } catch (...) {
    if (failure != nullptr) *failure = Describe(std::current_exception());
    return -1;
  }
}

extern "C" __attribute__((visibility("default"))) const sheafwork::embedded::PaintedOutputs*
sheafwork_qt_painted_outputs(std::string* failure) noexcept {
  try {
    static const sheafwork::embedded::PaintedOutputs outputs = sheafwork::embedded::PaintOutputs();
    return &outputs;
  } catch (...) {
    if (failure != nullptr) *failure = Describe(std::current_exception());
    return nullptr;
  }
}

// The entry points have the types the program looks them up with.
static_assert(std::is_same_v<decltype(&sheafwork_qt_run_desktop), sheafwork::RunDesktopEntry>);
static_assert(
    std::is_same_v<decltype(&sheafwork_qt_painted_outputs), sheafwork::PaintedOutputsEntry>);
