#include "plotrun/worker_process.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <system_error>

#ifndef _WIN32
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "res/string_ids.h"
#include "res/string_table.h"

#ifndef _WIN32
extern char** environ;
#endif

namespace sheafwork {

std::vector<std::string> WorkerCommand(const std::string& plotStyle,
                                       const std::string& conversionFolder) {
  std::error_code ec;
  const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  std::vector<std::string> command = {ec ? std::string("/proc/self/exe") : exe.string(),
                                      kPlotWorkerCommand};
  if (!plotStyle.empty()) command.insert(command.end(), {"--plot-style", plotStyle});
  command.insert(command.end(), {"--conversions", conversionFolder});
  return command;
}

std::string Block(std::string_view bytes) {
  return std::to_string(bytes.size()) + "\n" + std::string(bytes);
}

#ifndef _WIN32

namespace {

void CloseFd(int& fd) {
  if (fd >= 0) close(fd);
  fd = -1;
}

// A descriptor above those the worker is given, closed on exec.
int HighFd(int fd) {
  const int high = fcntl(fd, F_DUPFD_CLOEXEC, 10);
  close(fd);
  return high;
}

}  // namespace

bool WriteAllTo(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t n = write(fd, bytes.data(), bytes.size());
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
  return true;
}

std::unique_ptr<WorkerProcess> WorkerProcess::Start(const std::vector<std::string>& command,
                                                    std::string_view greeting, std::string& error) {
  int rowsPipe[2];
  int recordsPipe[2];
  if (pipe2(rowsPipe, O_CLOEXEC) != 0) {
    error = std::strerror(errno);
    return nullptr;
  }
  if (pipe2(recordsPipe, O_CLOEXEC) != 0) {
    error = std::strerror(errno);
    close(rowsPipe[0]), close(rowsPipe[1]);
    return nullptr;
  }
  for (int* fd : {&rowsPipe[0], &rowsPipe[1], &recordsPipe[0], &recordsPipe[1]}) *fd = HighFd(*fd);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, rowsPipe[0], 3);
  posix_spawn_file_actions_adddup2(&actions, recordsPipe[1], 4);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes,
                           POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  posix_spawnattr_setpgroup(&attributes, 0);
  sigset_t signals;
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&attributes, &signals);
  for (const int each : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) sigaddset(&signals, each);
  posix_spawnattr_setsigdefault(&attributes, &signals);

  std::vector<char*> argv;
  for (const std::string& each : command) argv.push_back(const_cast<char*>(each.c_str()));
  argv.push_back(nullptr);
  pid_t pid = -1;
  const int started = posix_spawn(&pid, argv[0], &actions, &attributes, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  posix_spawnattr_destroy(&attributes);
  close(rowsPipe[0]);
  close(recordsPipe[1]);
  if (started != 0) {
    error = command.front() + " : " + std::strerror(started);
    close(rowsPipe[1]), close(recordsPipe[0]);
    return nullptr;
  }
  std::unique_ptr<WorkerProcess> worker(new WorkerProcess());
  worker->pid_ = pid;
  worker->rowsFd_ = rowsPipe[1];
  worker->records_ = recordsPipe[0];
  // A worker that died before reading leaves the write failing, and the end
  // of its records says the rest.
  WriteAllTo(worker->rowsFd_, greeting);
  return worker;
}

WorkerProcess::~WorkerProcess() {
  CloseFd(rowsFd_);
  CloseFd(records_);
  if (pid_ > 0) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
}

bool WorkerProcess::SendRow(int row) {
  rows.push_back(row);
  return rowsFd_ >= 0 && WriteAllTo(rowsFd_, std::to_string(row) + "\n");
}

bool WorkerProcess::ReadRecords(std::vector<RowRecord>& out) {
  char buffer[65536];
  ssize_t n;
  do {
    n = read(records_, buffer, sizeof buffer);
  } while (n < 0 && errno == EINTR);
  if (n <= 0) return false;
  if (reader_.Feed(std::string_view(buffer, static_cast<std::size_t>(n)), out)) return true;
  kill(pid_, SIGKILL);  // it no longer speaks the run's language
  return false;
}

void WorkerProcess::Stop() {
  if (stopped_ || pid_ <= 0) return;
  stopped_ = true;
  kill(pid_, SIGINT);
}

std::string WorkerProcess::WaitForEnd() {
  CloseFd(rowsFd_);
  CloseFd(records_);
  if (pid_ <= 0) return {};
  int status = 0;
  pid_t done;
  do {
    done = waitpid(pid_, &status, 0);
  } while (done < 0 && errno == EINTR);
  pid_ = -1;
  if (done < 0) return {};
  if (WIFSIGNALED(status)) {
    const int signal = WTERMSIG(status);
    const char* name = sigabbrev_np(signal);
    return LoadResourceText(ids::kWorkerKilled) + std::to_string(signal) +
           (name ? std::string(" (SIG") + name + ")" : std::string());
  }
  if (WIFEXITED(status) && WEXITSTATUS(status) != 0) {
    return LoadResourceText(ids::kWorkerExited) + std::to_string(WEXITSTATUS(status));
  }
  return {};
}

PipeSignalIgnored::PipeSignalIgnored() : previous_(signal(SIGPIPE, SIG_IGN)) {}

PipeSignalIgnored::~PipeSignalIgnored() { signal(SIGPIPE, previous_); }

std::vector<int> WaitForReadable(const std::vector<int>& fds, int timeoutMs) {
  std::vector<pollfd> polled;
  for (const int fd : fds) polled.push_back({fd, POLLIN, 0});
  std::vector<int> ready;
  if (poll(polled.data(), polled.size(), timeoutMs) <= 0) return ready;
  for (const pollfd& each : polled) {
    if (each.revents != 0) ready.push_back(each.fd);
  }
  return ready;
}

bool RowSource::ReadLine(std::string& line) {
  for (;;) {
    if (const auto end = buffer_.find('\n'); end != std::string::npos) {
      line = buffer_.substr(0, end);
      buffer_.erase(0, end + 1);
      return true;
    }
    char chunk[4096];
    const ssize_t n = read(fd_, chunk, sizeof chunk);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    buffer_.append(chunk, static_cast<std::size_t>(n));
  }
}

bool RowSource::ReadBlock(std::string& block) {
  std::string line;
  std::size_t size = 0;
  if (!ReadLine(line)) return false;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), size);
  if (error != std::errc() || end != line.data() + line.size()) return false;
  while (buffer_.size() < size) {
    char chunk[65536];
    const ssize_t n = read(fd_, chunk, sizeof chunk);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    buffer_.append(chunk, static_cast<std::size_t>(n));
  }
  block = buffer_.substr(0, size);
  buffer_.erase(0, size);
  return true;
}

int RowSource::NextRow() {
  std::string line;
  int row = 0;
  if (!ReadLine(line)) return 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), row);
  return error == std::errc() && end == line.data() + line.size() ? row : 0;
}

#else  // Windows: a run plots its rows itself.

bool WriteAllTo(int, std::string_view) { return false; }

std::unique_ptr<WorkerProcess> WorkerProcess::Start(const std::vector<std::string>&,
                                                    std::string_view, std::string& error) {
  error = LoadResourceText(ids::kWorkersUnavailable);
  return nullptr;
}
WorkerProcess::~WorkerProcess() = default;
bool WorkerProcess::SendRow(int) { return false; }
bool WorkerProcess::ReadRecords(std::vector<RowRecord>&) { return false; }
void WorkerProcess::Stop() {}
PipeSignalIgnored::PipeSignalIgnored() = default;
PipeSignalIgnored::~PipeSignalIgnored() = default;
std::string WorkerProcess::WaitForEnd() { return {}; }
std::vector<int> WaitForReadable(const std::vector<int>&, int) { return {}; }
bool RowSource::ReadLine(std::string&) { return false; }
bool RowSource::ReadBlock(std::string&) { return false; }
int RowSource::NextRow() { return 0; }

#endif

}  // namespace sheafwork
