#pragma once
// The boundary between the `sheafwork` program, which links no Qt, and its
// Qt module (sheafwork-qt.so, beside it), which holds the desktop
// application and the painted outputs with its own copy of the core. The
// module exports exactly the two C entry points below; no exception crosses
// them, nor any call through the painted outputs' table: failures come back
// as messages.

#include <string>

#include "embedded/render/painted_outputs.h"

namespace sheafwork {

/// The module's file name, in the program folder.
inline constexpr const char* kQtModuleFile = "sheafwork-qt.so";

inline constexpr const char* kRunDesktopEntry = "sheafwork_qt_run_desktop";
inline constexpr const char* kPaintedOutputsEntry = "sheafwork_qt_painted_outputs";

/// Runs the desktop application with the program's arguments; returns its
/// exit status, or -1 with the reason in `*failure` when it could not run.
using RunDesktopEntry = int (*)(int* argc, char** argv, std::string* failure) noexcept;

/// The module's painted outputs (its own copy of the engine draws them);
/// null with the reason in `*failure` when it cannot provide them.
using PaintedOutputsEntry = const embedded::PaintedOutputs* (*)(std::string* failure) noexcept;

}  // namespace sheafwork
