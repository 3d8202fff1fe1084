#include "fakes/shell.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>

namespace sheafwork::testing {

std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::string RunCommand(const std::string& command, int& status) {
  std::string output;
  FILE* pipe = popen(("LC_ALL=C " + command + " 2>&1").c_str(), "r");
  if (!pipe) {
    status = -1;
    return output;
  }
  std::array<char, 4096> buffer;
  for (std::size_t n; (n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
    output.append(buffer.data(), n);
  }
  const int raw = pclose(pipe);
  status = raw != -1 && WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  return output;
}

}  // namespace sheafwork::testing
