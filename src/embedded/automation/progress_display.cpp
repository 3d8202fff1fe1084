#include "embedded/automation/progress_display.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

#include "embedded/automation/messages.h"
#include "platform/stop_request.h"

namespace sheafwork::embedded {

namespace {

// From Start to Finish of a batch on the command line, Ctrl+C, SIGTERM and
// SIGHUP ask the run to stop.
class StopOnSignals {
 protected:
  void Listen(bool announce = true) {
    signals_.reset();  // the previous batch's, if it was never finished
    signals_ = std::make_unique<StopSignals>(announce ? host_messages::kStopRequested : "");
  }
  bool Stopped() const { return signals_ && StopRequested(); }
  void Unlisten() { signals_.reset(); }

 private:
  std::unique_ptr<StopSignals> signals_;
};

class ConsoleDisplay : public ProgressDisplay, private StopOnSignals {
 public:
  ConsoleDisplay(std::ostream& out, bool terminal) : out_(out), terminal_(terminal) {}

  void Start(int) override {
    drawn_ = false;
    Listen();
  }

  void Step(const std::string& drawing, const std::string& layout, int n, int total) override {
    if (!terminal_) return;
    constexpr int kWidth = 30;
    const int shown = std::max(total, n);
    const int filled = shown > 0 ? kWidth * (n - 1) / shown : 0;
    out_ << "\r\033[K[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] "
         << n << "/" << shown << " " << drawing << " - " << layout << std::flush;
    drawn_ = true;
  }

  bool Cancelled() override { return Stopped(); }

  void Finish() override {
    if (terminal_ && drawn_) out_ << "\r\033[K" << std::flush;
    drawn_ = false;
    Unlisten();
  }

  void PlotFailed(const std::string& reason) override { Notice(reason); }

  void Notice(const std::string& text) override {
    if (terminal_ && drawn_) out_ << "\r\033[K";
    out_ << "sheafwork: " << text << '\n' << std::flush;
    drawn_ = false;
  }

 private:
  std::ostream& out_;
  bool terminal_;
  bool drawn_ = false;
};

class ReportingDisplay : public ProgressDisplay, private StopOnSignals {
 public:
  explicit ReportingDisplay(std::shared_ptr<ConsoleReports> reports)
      : reports_(std::move(reports)) {}

  void Start(int) override { Listen(reports_->AnnouncesStop()); }
  void Step(const std::string&, const std::string&, int, int) override {}
  bool Cancelled() override { return Stopped(); }
  void Finish() override { Unlisten(); }
  void PlotFailed(const std::string& reason) override { reports_->PlotFailed(reason); }
  void Notice(const std::string& text) override { reports_->Notice(text); }

 private:
  std::shared_ptr<ConsoleReports> reports_;
};

}  // namespace

void ProgressDisplay::Notice(const std::string& text) {
  std::cerr << "sheafwork: " << text << '\n' << std::flush;
}

std::shared_ptr<ProgressDisplay> ConsoleProgressDisplay(std::ostream& out, bool terminal) {
  return std::make_shared<ConsoleDisplay>(out, terminal);
}

std::shared_ptr<ProgressDisplay> ConsoleProgressDisplay(std::shared_ptr<ConsoleReports> reports) {
  return std::make_shared<ReportingDisplay>(std::move(reports));
}

std::shared_ptr<ProgressDisplay> ConsoleProgressDisplay() {
  return ConsoleProgressDisplay(std::cerr, isatty(STDERR_FILENO) == 1);
}

}  // namespace sheafwork::embedded
