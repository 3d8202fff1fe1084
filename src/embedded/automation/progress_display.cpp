#include "embedded/automation/progress_display.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

namespace sheafwork::embedded {

namespace {

class ConsoleDisplay : public ProgressDisplay {
 public:
  ConsoleDisplay(std::ostream& out, bool terminal) : out_(out), terminal_(terminal) {}

  void Start(int) override { drawn_ = false; }

  void Step(const std::string& drawing, const std::string& layout, int n, int total) override {
    if (!terminal_) return;
    constexpr int kWidth = 30;
    const int shown = std::max(total, n);
    const int filled = shown > 0 ? kWidth * (n - 1) / shown : 0;
    out_ << "\r\033[K[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] "
         << n << "/" << shown << " " << drawing << " - " << layout << std::flush;
    drawn_ = true;
  }

  bool Cancelled() override { return false; }

  void Finish() override {
    if (terminal_ && drawn_) out_ << "\r\033[K" << std::flush;
    drawn_ = false;
  }

  void PlotFailed(const std::string& reason) override {
    if (terminal_ && drawn_) out_ << "\r\033[K";
    out_ << "sheafwork: " << reason << '\n' << std::flush;
    drawn_ = false;
  }

 private:
  std::ostream& out_;
  bool terminal_;
  bool drawn_ = false;
};

}  // namespace

std::shared_ptr<ProgressDisplay> ConsoleProgressDisplay(std::ostream& out, bool terminal) {
  return std::make_shared<ConsoleDisplay>(out, terminal);
}

std::shared_ptr<ProgressDisplay> ConsoleProgressDisplay() {
  return ConsoleProgressDisplay(std::cerr, isatty(STDERR_FILENO) == 1);
}

}  // namespace sheafwork::embedded
