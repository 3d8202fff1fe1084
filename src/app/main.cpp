#include <iostream>

#include "app/command_line.h"
#include "platform/program_folders.h"
#include "ui/desktop.h"
#include "ui/progress_dialog.h"

int main(int argc, char** argv) {
  if (sheafwork::WantsDesktop(argc, argv)) {
    // The desktop application drives the embedded host with its own progress
    // dialog.
    sheafwork::HostRegistry hosts;
    hosts.Register("embarque", sheafwork::ui::MakeDesktopEmbeddedHost, /*makeDefault=*/true);
    sheafwork::ui::DesktopOptions options;
    options.hosts = &hosts;
    options.listName = argc == 2 ? argv[1] : "";
    options.dataFolder = sheafwork::ProgramFolder();
    options.userFolder = sheafwork::UserDataFolder();
    return sheafwork::ui::RunDesktop(argc, argv, options);
  }
  return sheafwork::RunCommandLine(argc, argv, std::cout, std::cerr);
}
