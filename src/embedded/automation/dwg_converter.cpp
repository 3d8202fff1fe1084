#include "embedded/automation/dwg_converter.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <system_error>
#include <thread>
#include <vector>

#include "embedded/automation/messages.h"
#include "text/strings.h"

extern char** environ;

namespace sheafwork::embedded {

namespace fs = std::filesystem;
namespace msg = host_messages;
using Clock = std::chrono::steady_clock;

namespace {

constexpr std::chrono::seconds kTimeLimit{120};
// What is kept of the converter's standard error: its last line is the reason.
constexpr std::size_t kKeptErrorText = 4096;

// Both ends closed on destruction.
struct Pipe {
  int read = -1;
  int write = -1;
  Pipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
    read = ends[0];
    write = ends[1];
  }
  ~Pipe() {
    if (read >= 0) close(read);
    if (write >= 0) close(write);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
};

struct SpawnSetup {
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  SpawnSetup() {
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
  }
  ~SpawnSetup() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  SpawnSetup(const SpawnSetup&) = delete;
  SpawnSetup& operator=(const SpawnSetup&) = delete;
};

// The last non-empty line of `text`, trimmed.
std::string LastLine(const std::string& text) {
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::size_t start = rest.find_last_of('\n');
    const std::string_view line =
        TrimSpaces(start == std::string_view::npos ? rest : rest.substr(start + 1));
    if (!line.empty()) return std::string(line);
    if (start == std::string_view::npos) break;
    rest = rest.substr(0, start);
  }
  return {};
}

// Reads the child's standard error until it is closed or `deadline` passes;
// false when the time ran out.
bool ReadUntilClosed(int fd, Clock::time_point deadline, std::string& text) {
  char buffer[1024];
  for (;;) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return false;
    pollfd wanted{fd, POLLIN, 0};
    const int ready = poll(&wanted, 1, static_cast<int>(std::min<long long>(left, 1000)));
    if (ready < 0 && errno != EINTR) return true;
    if (ready <= 0) continue;
    const ssize_t got = read(fd, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return true;
    text.append(buffer, static_cast<std::size_t>(got));
    if (text.size() > 2 * kKeptErrorText) text.erase(0, text.size() - kKeptErrorText);
  }
}

// Waits for the child until `deadline`; false when the time ran out.
bool WaitUntil(pid_t pid, Clock::time_point deadline, int& status) {
  for (;;) {
    const pid_t done = waitpid(pid, &status, WNOHANG);
    if (done == pid) return true;
    if (done < 0 && errno != EINTR) return true;
    if (Clock::now() >= deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

void EndProcessGroup(pid_t pid) {
  kill(-pid, SIGKILL);
  kill(pid, SIGKILL);
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

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

std::string BundledDwgConverter(const std::string& dataFolder) {
  return (fs::path(dataFolder) / "dwg2dxf" / "dwg2dxf.js").string();
}

std::chrono::milliseconds DefaultDwgTimeLimit() {
  const char* given = std::getenv("SHEAFWORK_DWG_TIME_LIMIT");
  if (given != nullptr) {
    char* end = nullptr;
    const double seconds = std::strtod(given, &end);
    if (end != given && *end == '\0' && seconds > 0) {
      return std::chrono::milliseconds(static_cast<long long>(seconds * 1000));
    }
  }
  return kTimeLimit;
}

void RunDwgConverter(const std::string& converter, const std::string& input,
                     const std::string& output, std::chrono::milliseconds timeLimit) {
  const bool byNode = EndsWithIgnoreCase(converter, ".js");
  std::vector<std::string> args;
  if (byNode) args = {"node", "--liftoff-only"};
  args.insert(args.end(), {converter, input, output});
  std::vector<char*> argv;
  for (std::string& arg : args) argv.push_back(arg.data());
  argv.push_back(nullptr);

  Pipe errors;
  SpawnSetup setup;
  posix_spawn_file_actions_addopen(&setup.actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&setup.actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_adddup2(&setup.actions, errors.write, 2);
  // Its own process group, so that the time limit ends what it started too.
  posix_spawnattr_setflags(&setup.attributes, POSIX_SPAWN_SETPGROUP);
  posix_spawnattr_setpgroup(&setup.attributes, 0);

  pid_t pid = 0;
  const int started =
      posix_spawnp(&pid, argv[0], &setup.actions, &setup.attributes, argv.data(), environ);
  if (started != 0) {
    if (byNode && started == ENOENT) throw host::Error(msg::kNoDwgConverter, msg::NoNode(input));
    throw host::Error(msg::kConversionFailed,
                      msg::ConversionFailed(input, converter + " : " + std::strerror(started)));
  }
  close(errors.write);
  errors.write = -1;

  const Clock::time_point deadline = Clock::now() + timeLimit;
  std::string errorText;
  int status = 0;
  if (!ReadUntilClosed(errors.read, deadline, errorText) || !WaitUntil(pid, deadline, status)) {
    EndProcessGroup(pid);
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(timeLimit).count();
    throw host::Error(
        msg::kConversionFailed,
        msg::ConversionFailed(
            input, msg::ConverterTimedOut(static_cast<int>(std::max<long long>(seconds, 1)))));
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    const std::string reason = LastLine(errorText);
    throw host::Error(
        msg::kConversionFailed,
        msg::ConversionFailed(input, reason.empty() ? msg::ConverterExit(code) : reason));
  }
  std::error_code ec;
  if (!fs::is_regular_file(output, ec)) {
    throw host::Error(msg::kConversionFailed,
                      msg::ConversionFailed(input, msg::ConverterNoOutput()));
  }
}

std::string DwgConversions::Convert(const std::string& converter, const std::string& dwg,
                                    std::chrono::milliseconds timeLimit) {
  std::error_code ec;
  const std::string key = fs::weakly_canonical(fs::path(dwg), ec).string();
  Done now;
  now.modified = fs::last_write_time(dwg, ec);
  now.size = fs::file_size(dwg, ec);
  now.converter = converter;
  const auto found = done_.find(key.empty() ? dwg : key);
  if (found != done_.end() && found->second.modified == now.modified &&
      found->second.size == now.size && found->second.converter == converter) {
    if (found->second.error) throw *found->second.error;
    return found->second.dxf;
  }

  if (!shared_.empty()) {
    // Named after what makes the conversion, so that another process of
    // the run finds it; written under a name of its own, then renamed.
    const std::string what = key + "|" + std::to_string(now.size) + "|" +
                             std::to_string(now.modified.time_since_epoch().count()) + "|" +
                             converter;
    char hash[17];
    std::snprintf(hash, sizeof hash, "%016zx", std::hash<std::string>{}(what));
    now.dxf =
        (fs::path(shared_) / (std::string(hash) + "-" + fs::path(dwg).stem().string() + ".dxf"))
            .string();
    if (!fs::is_regular_file(now.dxf, ec)) {
      const std::string part = now.dxf + "." + std::to_string(getpid()) + ".part.dxf";
      try {
        RunDwgConverter(converter, dwg, part, timeLimit);
        fs::rename(part, now.dxf, ec);
        if (ec) now.dxf = part;
      } catch (const host::Error& error) {
        now.error = error;
      }
    }
  } else {
    if (!folder_) folder_ = std::make_unique<ScratchFolder>();
    // Numbered, since two drawings of one name may sit in different folders.
    now.dxf = (fs::path(folder_->path()) /
               (std::to_string(++made_) + "-" + fs::path(dwg).stem().string() + ".dxf"))
                  .string();
    try {
      RunDwgConverter(converter, dwg, now.dxf, timeLimit);
    } catch (const host::Error& error) {
      now.error = error;
    }
  }
  Done& kept = done_[key.empty() ? dwg : key];
  kept = std::move(now);
  if (kept.error) throw *kept.error;
  return kept.dxf;
}

void DwgConversions::Clear() {
  done_.clear();
  folder_.reset();
}

}  // namespace sheafwork::embedded
