#include "embedded/automation/combined_pdf.h"

#include "embedded/automation/messages.h"
#include "host/error.h"

namespace sheafwork::embedded {

namespace msg = host_messages;

namespace {

PdfBook OpenBook(std::string path) {
  try {
    return PdfBook(std::move(path));
  } catch (const PlotError& error) {
    throw host::Error(msg::kFileAccess, error.what());
  }
}

}  // namespace

CombinedPdf::CombinedPdf(std::string path, CombinedPdfClosed closed,
                         std::shared_ptr<ProgressDisplay> progress)
    : book_(OpenBook(std::move(path))),
      closed_(std::move(closed)),
      progress_(std::move(progress)) {}

CombinedPdf::~CombinedPdf() { Close(); }

void CombinedPdf::Add(const PlotJob& job) {
  if (done_) return;
  try {
    book_.AddPage(job);
  } catch (const std::exception& error) {
    progress_->PlotFailed(msg::CombinedPageFailed(error.what()));
  }
}

void CombinedPdf::Close() {
  if (done_) return;
  done_ = true;
  std::string error;
  try {
    book_.Close();
  } catch (const std::exception& failure) {
    error = failure.what();
    progress_->PlotFailed(msg::CombinedNotWritten(error));
  }
  if (closed_) closed_(book_.Pages(), error);
}

}  // namespace sheafwork::embedded
