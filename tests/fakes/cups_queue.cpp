#include "fakes/cups_queue.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

#include "fakes/log_lines.h"
#include "fakes/shell.h"

namespace sheafwork::testing {

namespace {

std::string Run(const std::string& command) {
  int status = 0;
  return RunCommand(command, status);
}

}  // namespace

std::string CupsUnavailable() {
  int status = 0;
  RunCommand("command -v lpadmin lpstat", status);
  if (status != 0) {
    return "CUPS is not installed (lpadmin, lpstat); run scripts/setup.sh";
  }
  const std::string scheduler = Run("lpstat -r");
  if (scheduler.find("scheduler is running") == std::string::npos) {
    return "no CUPS server answers (lpstat -r: " + scheduler +
           "); start it with `cupsd` or run scripts/test.sh";
  }
  return {};
}

CupsQueue::CupsQueue(const std::string& stem, std::string outputFile)
    : name_(stem + "-" + std::to_string(getpid())), output_(std::move(outputFile)) {
  const std::string ppd = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/fakes/cups/pdf-printer.ppd";
  int status = 0;
  const std::string said = RunCommand("lpadmin -p " + Quoted(name_) + " -E -v " +
                                          Quoted("file://" + output_) + " -P " + Quoted(ppd),
                                      status);
  added_ = status == 0;
  if (!added_) error_ = "lpadmin could not add the queue " + name_ + ": " + said;
}

CupsQueue::~CupsQueue() {
  if (added_) Run("lpadmin -x " + Quoted(name_));
}

bool CupsQueue::WaitUntilPrinted(std::chrono::seconds timeout) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  std::string pending;
  while (std::chrono::steady_clock::now() < end) {
    pending = Run("lpstat -o " + Quoted(name_));
    std::error_code ec;
    if (pending.empty() && std::filesystem::file_size(output_, ec) > 0 && !ec) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
  error_ = "the job did not finish in time; pending: " + pending +
           "; printer: " + Run("lpstat -p " + Quoted(name_)) +
           "; last jobs: " + Run("lpstat -W completed -o " + Quoted(name_));
  return false;
}

std::vector<std::pair<double, double>> PdfPageSizes(const std::string& path) {
  int status = 0;
  const std::string info = RunCommand("pdfinfo -f 1 -l 100000 " + Quoted(path), status);
  std::vector<std::pair<double, double>> sizes;
  if (status != 0) return sizes;
  for (const std::string& line : SplitLines(info)) {
    // "Page    2 size: 841.89 x 595.276 pts (A4)"
    if (line.rfind("Page ", 0) != 0) continue;
    const auto size = line.find(" size: ");
    if (size == std::string::npos) continue;
    double width = 0, height = 0;
    if (std::sscanf(line.c_str() + size + 7, "%lf x %lf", &width, &height) == 2) {
      sizes.emplace_back(width, height);
    }
  }
  return sizes;
}

}  // namespace sheafwork::testing
