#pragma once
// The host's combined PDF: every sheet the host plots, one page each, in
// plot order, gathered into one file that is written when the batch ends or
// the host quits.

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "embedded/automation/embedded_host.h"
#include "embedded/automation/progress_display.h"
#include "embedded/render/pdf_book.h"

namespace sheafwork::embedded {

/// Told once when the combined PDF is closed: the pages it holds, and why
/// it could not be written (empty when it was, or when there was nothing to
/// write).
using CombinedPdfClosed = std::function<void(int pages, const std::string& error)>;

class CombinedPdf {
 public:
  /// Prepares `path`. Throws host::Error (file access) when the file cannot
  /// be created.
  CombinedPdf(std::string path, CombinedPdfClosed closed,
              std::shared_ptr<ProgressDisplay> progress);
  /// Writes each sheet as a PDF file of its own in `folder`, told to
  /// `written`, for another process to put together.
  CombinedPdf(std::string folder, std::function<void(const CombinedPage&)> written,
              std::shared_ptr<ProgressDisplay> progress);
  /// Closes the file when Close() was not called.
  ~CombinedPdf();
  CombinedPdf(const CombinedPdf&) = delete;
  CombinedPdf& operator=(const CombinedPdf&) = delete;

  /// Adds the sheet of a plot that succeeded. A page that cannot be added
  /// is named on the progress display; the plot itself stands.
  void Add(const PlotJob& job);
  /// Writes the file; failures go to the progress display and to `closed`.
  /// Only the first call does anything.
  void Close();

 private:
  std::optional<PdfBook> book_;
  CombinedPdfClosed closed_;
  std::string pageFolder_;
  std::function<void(const CombinedPage&)> pageWritten_;
  int pagesWritten_ = 0;
  std::shared_ptr<ProgressDisplay> progress_;
  bool done_ = false;
};

}  // namespace sheafwork::embedded
