#include "app/run_progress.h"

#include <algorithm>
#include <cmath>

#include "log/paths.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {

namespace {

constexpr const char* kSeparator = " \xC2\xB7 ";  // a middle dot between blanks

// The first `columns` characters of a UTF-8 text.
std::string FirstColumns(const std::string& text, int columns) {
  int seen = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80 && seen++ == columns) return text.substr(0, i);
  }
  return text;
}

}  // namespace

std::string FormatDuration(double seconds) {
  const long total = std::max(0L, std::lround(seconds));
  const long hours = total / 3600;
  const long minutes = total / 60 % 60;
  const long rest = total % 60;
  const auto two = [](long n) { return (n < 10 ? "0" : "") + std::to_string(n); };
  return (hours > 0 ? std::to_string(hours) + ":" : "") + two(minutes) + ":" + two(rest);
}

RunProgress::RunProgress(std::ostream& err, ProgressStyle style, std::function<double()> seconds,
                         int width)
    : err_(err), style_(style), seconds_(std::move(seconds)), width_(std::max(width, 20)) {}

std::string RunProgress::RowLabel() const {
  return LoadResourceText(ids::kCliProgressRow) + " " + std::to_string(row_) + "/" +
         std::to_string(count_);
}

void RunProgress::RowStarted(int row, int count, const BatchEntry& entry) {
  if (!started_) {
    start_ = seconds_();
    started_ = true;
  }
  inRow_ = true;
  row_ = row;
  count_ = count;
  drawing_ = entry.FileName;
  reasons_.clear();
  if (style_ == ProgressStyle::Lines) err_ << RowLabel() << " : " << drawing_ << '\n';
  if (style_ == ProgressStyle::Terminal) Draw();
}

void RunProgress::SheetPlotted(int) {
  ++sheets_;
  if (style_ == ProgressStyle::Terminal) Draw();
}

void RunProgress::RowFinished(int, RowStatus status) {
  inRow_ = false;
  ++rowsDone_;
  const bool failed = status == RowStatus::Failed;
  const std::string outcome = LoadResourceText(failed ? ids::kCliRowFailed : ids::kCliRowPlotted);
  if (style_ == ProgressStyle::Lines) {
    err_ << RowLabel() << " : " << outcome << '\n';
  } else if (failed) {
    Clear();
    err_ << RowLabel() << " : " << outcome << " : " << drawing_ << '\n';
  }
  if (failed) {
    for (const std::string& reason : reasons_) err_ << "sheafwork: " << reason << '\n';
  }
  reasons_.clear();
  if (style_ == ProgressStyle::Terminal) Draw();
  err_.flush();
}

// A row stopped by the user is neither plotted nor failed: its line says so,
// without the reasons gathered for it.
void RunProgress::RowCancelled(int) {
  inRow_ = false;
  Clear();
  err_ << RowLabel() << " : " << LoadResourceText(ids::kCliRowCancelled) << '\n';
  reasons_.clear();
  err_.flush();
}

void RunProgress::PlotFailed(const std::string& reason) { AddReason(reason); }

void RunProgress::HostReported(const std::string& text, bool failure) {
  if (failure) {
    PlotFailed(text);
  } else {
    Notice(text);
  }
}

void RunProgress::ErrorLogged(const std::string& line) {
  // The row's own line says that it failed.
  if (inRow_ && line == LoadResourceText(ids::kPlotFailed) + drawing_) return;
  AddReason(line);
}

void RunProgress::AddReason(const std::string& reason) {
  if (!inRow_) {
    PrintReason(reason);
    return;
  }
  if (std::find(reasons_.begin(), reasons_.end(), reason) == reasons_.end()) {
    reasons_.push_back(reason);
  }
}

void RunProgress::Notice(const std::string& text) {
  if (style_ == ProgressStyle::Quiet) return;
  PrintReason(text);
}

void RunProgress::PrintReason(const std::string& reason) {
  Clear();
  err_ << "sheafwork: " << reason << '\n';
  if (style_ == ProgressStyle::Terminal && inRow_) Draw();
  err_.flush();
}

void RunProgress::Finish() { Clear(); }

void RunProgress::Draw() {
  if (style_ != ProgressStyle::Terminal || !started_) return;
  const double elapsed = seconds_() - start_;
  std::string line = RowLabel() + kSeparator + std::to_string(sheets_) + " " +
                     LoadResourceText(ids::kCliProgressSheets) + kSeparator +
                     FormatDuration(elapsed) + " " + LoadResourceText(ids::kCliProgressElapsed);
  const int rows = planned_ > 0 ? planned_ : count_;
  if (rowsDone_ > 0 && rowsDone_ < rows) {
    const double left = elapsed / rowsDone_ * (rows - rowsDone_);
    line += kSeparator + LoadResourceText(ids::kCliProgressLeft) + " " + FormatDuration(left);
  }
  if (inRow_) line += kSeparator + FileNameFromPath(drawing_);
  err_ << "\r\033[K" << FirstColumns(line, width_ - 1) << std::flush;
  drawn_ = true;
}

void RunProgress::Clear() {
  if (!drawn_) return;
  err_ << "\r\033[K";
  drawn_ = false;
}

}  // namespace sheafwork
