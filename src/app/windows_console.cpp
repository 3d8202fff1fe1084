#include "app/windows_console.h"

#include <windows.h>

#include "platform/windows_text.h"

namespace sheafwork {

namespace {

bool IsConsole(DWORD which) {
  DWORD mode = 0;
  const HANDLE handle = GetStdHandle(which);
  return handle != nullptr && handle != INVALID_HANDLE_VALUE && GetConsoleMode(handle, &mode);
}

}  // namespace

Utf8Console::Utf8Console() {
  if (!IsConsole(STD_OUTPUT_HANDLE) && !IsConsole(STD_ERROR_HANDLE)) return;
  const UINT current = GetConsoleOutputCP();
  if (current != CP_UTF8 && SetConsoleOutputCP(CP_UTF8)) previous_ = current;
}

Utf8Console::~Utf8Console() {
  if (previous_ != 0) SetConsoleOutputCP(previous_);
}

std::vector<std::string> Utf8Arguments(int argc, const wchar_t* const* argv) {
  std::vector<std::string> arguments;
  arguments.reserve(static_cast<std::size_t>(argc));
  for (int i = 0; i < argc; ++i) arguments.push_back(Utf8FromWide(argv[i]));
  return arguments;
}

}  // namespace sheafwork
