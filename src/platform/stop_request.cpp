#include "platform/stop_request.h"

#include <atomic>
#include <csignal>
#include <cstring>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace sheafwork {

namespace {

// Read and written by signal handlers: lock-free by construction.
std::atomic<bool> stopRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free);
const char* stopNote = "";

#ifndef _WIN32
constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
struct sigaction previous[std::size(kSignals)];
bool installed[std::size(kSignals)] = {};
#else
constexpr int kSignals[] = {SIGINT, SIGTERM};
#endif

extern "C" void OnStopSignal(int signal) {
  if (stopRequested.exchange(true)) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    return;
  }
#ifndef _WIN32
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, stopNote, std::strlen(stopNote));
#endif
}

}  // namespace

bool StopRequested() { return stopRequested.load(std::memory_order_relaxed); }

void RequestStop() { stopRequested.store(true); }

void ClearStopRequest() { stopRequested.store(false); }

StopSignals::StopSignals(const char* note) {
  ClearStopRequest();
  stopNote = note;
#ifndef _WIN32
  struct sigaction action = {};
  action.sa_handler = OnStopSignal;
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    // A signal ignored when we started (SIGHUP under nohup) stays ignored.
    installed[i] = sigaction(kSignals[i], nullptr, &previous[i]) == 0 &&
                   previous[i].sa_handler != SIG_IGN &&
                   sigaction(kSignals[i], &action, nullptr) == 0;
  }
#else
  for (int signal : kSignals) std::signal(signal, OnStopSignal);
#endif
}

StopSignals::~StopSignals() {
#ifndef _WIN32
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    if (installed[i]) sigaction(kSignals[i], &previous[i], nullptr);
  }
#else
  for (int signal : kSignals) std::signal(signal, SIG_DFL);
#endif
  ClearStopRequest();
}

}  // namespace sheafwork
