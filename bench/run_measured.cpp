// run_measured: runs one program and prints its wall time and peak memory,
// for the plot benchmark (bench/plot-peers.sh). It replaces a shell timing
// `/usr/bin/time` running `timeout` running the program: here the program is
// the only process started, so a run of a few milliseconds is not lengthened
// by the exec of two helpers.
//
//   run_measured [--timeout SECONDS] [--stdout FILE] [--stderr FILE] -- PROGRAM [ARGS...]
//
// PROGRAM is looked up in PATH (execvp); its standard output and error go to
// FILE when given (one file opened once when both name the same path), else
// they are inherited. One line on standard output:
//
//   MILLISECONDS PEAK_KILOBYTES STATUS
//
// MILLISECONDS    wall time on the monotonic clock, from just before fork to
//                 the return of wait4, with three decimals.
// PEAK_KILOBYTES  ru_maxrss of the program as wait4 returns it: the largest
//                 resident set of the program itself or of any descendant it
//                 waited for (the largest of them, not a sum of processes
//                 that ran at the same time); descendants it did not wait for
//                 are not counted. Never less than the resident set of this
//                 small program at fork, about 1 MB, as with GNU time.
// STATUS          ok; timeout (at the time limit the program's process group
//                 was killed with SIGKILL); crash(N) when it exited with code
//                 N != 0; crash(SIGNAME) when a signal ended it.
//
// The program runs in a process group of its own, so that the time limit also
// ends what it started. Exit status: 0 when the line was printed, whatever
// the program did; 2 for a bad command line; 125 when this program failed
// (an output file, fork); 126 when PROGRAM cannot be executed and 127 when it
// is not found, with a message on standard error and no line.

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr int kExitUsage = 2;
constexpr int kExitInternal = 125;
constexpr int kExitCannotExecute = 126;
constexpr int kExitNotFound = 127;

// Set before the timer is armed, read by the alarm handler.
volatile sig_atomic_t g_child = 0;
volatile sig_atomic_t g_timedOut = 0;

extern "C" void onAlarm(int) {
  g_timedOut = 1;
  kill(-g_child, SIGKILL);
}

struct Options {
  double timeoutSeconds = 0;  // 0: no limit
  std::string stdoutPath;
  std::string stderrPath;
  char** command = nullptr;  // PROGRAM ARGS..., null-terminated
};

void printUsage(std::FILE* to) {
  std::fputs(
      "usage: run_measured [--timeout SECONDS] [--stdout FILE] [--stderr FILE] -- PROGRAM "
      "[ARGS...]\n"
      "prints: MILLISECONDS PEAK_KILOBYTES STATUS (ok, timeout, crash(N))\n",
      to);
}

[[noreturn]] void failUsage(const char* what, const char* value) {
  std::fprintf(stderr, "run_measured: %s%s%s\n", what, value ? ": " : "", value ? value : "");
  printUsage(stderr);
  std::exit(kExitUsage);
}

Options parseOptions(int argc, char** argv) {
  Options options;
  int i = 1;
  for (; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--") {
      ++i;
      break;
    }
    if (arg == "--help" || arg == "-h") {
      printUsage(stdout);
      std::exit(0);
    }
    if (arg != "--timeout" && arg != "--stdout" && arg != "--stderr") {
      // Without "--", the first word that is not an option is the program.
      if (!arg.empty() && arg[0] == '-') failUsage("unknown option", argv[i]);
      break;
    }
    if (i + 1 >= argc) failUsage("missing value after", argv[i]);
    const char* value = argv[++i];
    if (arg == "--timeout") {
      char* end = nullptr;
      errno = 0;
      const double seconds = std::strtod(value, &end);
      if (errno != 0 || end == value || *end != '\0' || !std::isfinite(seconds) || seconds < 0) {
        failUsage("--timeout wants a number of seconds >= 0, found", value);
      }
      options.timeoutSeconds = seconds;
    } else if (arg == "--stdout") {
      options.stdoutPath = value;
    } else {
      options.stderrPath = value;
    }
  }
  if (i >= argc) failUsage("no program to run", nullptr);
  options.command = argv + i;
  return options;
}

// An output file for the child, opened before the clock starts; -1 when the
// stream is inherited.
int openOutput(const std::string& path) {
  if (path.empty()) return -1;
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) {
    std::fprintf(stderr, "run_measured: cannot open %s: %s\n", path.c_str(), std::strerror(errno));
    std::exit(kExitInternal);
  }
  return fd;
}

double millisecondsBetween(const timespec& start, const timespec& end) {
  return static_cast<double>(end.tv_sec - start.tv_sec) * 1e3 +
         static_cast<double>(end.tv_nsec - start.tv_nsec) / 1e6;
}

void armTimer(double seconds) {
  if (seconds <= 0) return;
  itimerval timer{};
  const double whole = std::floor(seconds);
  timer.it_value.tv_sec = static_cast<time_t>(whole);
  timer.it_value.tv_usec = static_cast<suseconds_t>((seconds - whole) * 1e6);
  if (timer.it_value.tv_sec == 0 && timer.it_value.tv_usec == 0) timer.it_value.tv_usec = 1;
  setitimer(ITIMER_REAL, &timer, nullptr);
}

void disarmTimer() {
  itimerval none{};
  setitimer(ITIMER_REAL, &none, nullptr);
}

// Only async-signal-safe calls between fork and exec.
[[noreturn]] void execChild(const Options& options, int outFd, int errFd, int reportFd) {
  setpgid(0, 0);
  if (outFd >= 0) dup2(outFd, STDOUT_FILENO);
  if (errFd >= 0) dup2(errFd, STDERR_FILENO);
  execvp(options.command[0], options.command);
  const int error = errno;
  // The parent reads this after the wait; a short pipe write is atomic.
  [[maybe_unused]] const ssize_t written = write(reportFd, &error, sizeof error);
  _exit(kExitNotFound);
}

std::string describeStatus(int status, bool timedOut) {
  if (timedOut) return "timeout";
  if (WIFEXITED(status)) {
    const int code = WEXITSTATUS(status);
    return code == 0 ? "ok" : "crash(" + std::to_string(code) + ")";
  }
  if (WIFSIGNALED(status)) {
    const int signal = WTERMSIG(status);
    const char* name = sigabbrev_np(signal);
    return name ? std::string("crash(SIG") + name + ")"
                : "crash(signal " + std::to_string(signal) + ")";
  }
  return "crash(?)";
}

}  // namespace

int main(int argc, char** argv) {
  const Options options = parseOptions(argc, argv);

  const int outFd = openOutput(options.stdoutPath);
  const int errFd =
      options.stderrPath == options.stdoutPath ? outFd : openOutput(options.stderrPath);

  int report[2];
  if (pipe2(report, O_CLOEXEC) != 0) {
    std::perror("run_measured: pipe");
    return kExitInternal;
  }

  struct sigaction alarmAction {};
  alarmAction.sa_handler = onAlarm;
  sigemptyset(&alarmAction.sa_mask);
  alarmAction.sa_flags = 0;  // no SA_RESTART: the alarm interrupts wait4
  sigaction(SIGALRM, &alarmAction, nullptr);

  std::fflush(nullptr);  // nothing buffered is written twice by the child
  timespec start{};
  clock_gettime(CLOCK_MONOTONIC, &start);
  const pid_t child = fork();
  if (child < 0) {
    std::perror("run_measured: fork");
    return kExitInternal;
  }
  if (child == 0) execChild(options, outFd, errFd, report[1]);

  // Also here, so that the group exists before the timer may kill it.
  setpgid(child, child);
  g_child = child;
  close(report[1]);
  armTimer(options.timeoutSeconds);

  int status = 0;
  rusage usage{};
  while (wait4(child, &status, 0, &usage) < 0) {
    if (errno != EINTR) {
      std::perror("run_measured: wait4");
      return kExitInternal;
    }
  }
  timespec end{};
  clock_gettime(CLOCK_MONOTONIC, &end);
  disarmTimer();
  // A program that ended by itself just as the limit came is not a timeout.
  const bool timedOut = g_timedOut != 0 && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;

  int execError = 0;
  if (read(report[0], &execError, sizeof execError) == sizeof execError) {
    std::fprintf(stderr, "run_measured: cannot run %s: %s\n", options.command[0],
                 std::strerror(execError));
    return execError == ENOENT ? kExitNotFound : kExitCannotExecute;
  }

  std::printf("%.3f %ld %s\n", millisecondsBetween(start, end), usage.ru_maxrss,
              describeStatus(status, timedOut).c_str());
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    std::perror("run_measured: standard output");
    return kExitInternal;
  }
  return 0;
}
