#include <iostream>

#include "app/command_io.h"
#include "app/command_line.h"
#include "app/qt_module_loader.h"
#include "embedded/render/painted_outputs.h"
#include "platform/program_folders.h"

int main(int argc, char** argv) {
  // Qt lives in the module beside the program (in its lib folder once
  // installed), loaded only by the desktop application and the painted
  // outputs (PNG, SVG, printers); it stays loaded until the process ends.
  static sheafwork::QtModule qt(sheafwork::ProgramQtModulePath());
  if (sheafwork::WantsDesktop(argc, argv)) {
    const sheafwork::ProgramLayout& layout = sheafwork::RunningProgramLayout();
    if (layout.dataFolder.empty()) {
      std::cerr << "sheafwork: " << sheafwork::MissingDataFolder(layout.searched) << '\n';
      return sheafwork::kExitBadInput;
    }
    return qt.RunDesktop(argc, argv, std::cerr);
  }
  sheafwork::embedded::SetPaintedOutputsLoader([] { return qt.PaintedOutputs(); });
  return sheafwork::RunCommandLine(argc, argv, std::cout, std::cerr);
}
