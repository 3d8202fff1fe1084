// The Windows program: the command line only (the desktop application needs
// Qt for Windows, which this build has not), its arguments taken as UTF-16
// and turned into the program's UTF-8.
#include <iostream>
#include <string>
#include <vector>

#include "app/com_startup_win.h"
#include "app/command_line.h"
#include "app/windows_console.h"
#include "res/string_ids.h"
#include "res/string_table.h"

int wmain(int argc, wchar_t** argv) {
  const sheafwork::Utf8Console console;
  const std::vector<std::string> arguments = sheafwork::Utf8Arguments(argc, argv);
  std::vector<const char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (const std::string& a : arguments) pointers.push_back(a.c_str());
  pointers.push_back(nullptr);
  if (sheafwork::WantsDesktop(argc, pointers.data())) {
    std::cerr << "sheafwork: " << sheafwork::LoadResourceText(sheafwork::ids::kNoDesktopOnWindows)
              << '\n';
    return sheafwork::kExitBadInput;
  }
  const sheafwork::ComStartup com(std::cerr);  // removed again when the command ends
  return sheafwork::RunCommandLine(argc, pointers.data(), std::cout, std::cerr);
}
