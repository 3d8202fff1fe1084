#include "embedded/automation/dwg_converter.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "embedded/automation/messages.h"
#include "host/error.h"

extern char** environ;

namespace sheafwork::embedded {

namespace fs = std::filesystem;
namespace msg = host_messages;

ScratchFolder::ScratchFolder() {
  std::error_code ec;
  std::string pattern = (fs::temp_directory_path(ec) / "sheafwork-dwg-XXXXXX").string();
  if (ec || mkdtemp(pattern.data()) == nullptr) {
    throw host::Error(msg::kFileAccess,
                      msg::ConversionFailed(pattern, std::strerror(ec ? ec.value() : errno)));
  }
  path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
  std::error_code ec;
  fs::remove_all(path_, ec);
}

void RunDwgConverter(const std::string& converter, const std::string& input,
                     const std::string& output) {
  std::vector<std::string> args = {converter, input, output};
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(arg.data());
  argv.push_back(nullptr);

  pid_t pid = 0;
  const int started = posix_spawnp(&pid, converter.c_str(), nullptr, nullptr, argv.data(), environ);
  if (started != 0) {
    throw host::Error(msg::kConversionFailed,
                      msg::ConversionFailed(input, converter + " : " + std::strerror(started)));
  }
  int status = 0;
  while (waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) {
      throw host::Error(msg::kConversionFailed, msg::ConversionFailed(input, std::strerror(errno)));
    }
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    throw host::Error(msg::kConversionFailed,
                      msg::ConversionFailed(input, msg::ConverterExit(code)));
  }
  std::error_code ec;
  if (!fs::is_regular_file(output, ec)) {
    throw host::Error(msg::kConversionFailed,
                      msg::ConversionFailed(input, msg::ConverterNoOutput()));
  }
}

}  // namespace sheafwork::embedded
