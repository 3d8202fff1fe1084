#include "embedded/automation/combined_pdf.h"

#include "embedded/automation/messages.h"
#include "host/error.h"
#include "log/wide_path.h"

namespace sheafwork::embedded {

namespace msg = host_messages;

CombinedPdf::CombinedPdf(std::string path, CombinedPdfClosed closed,
                         std::shared_ptr<ProgressDisplay> progress)
    : closed_(std::move(closed)), progress_(std::move(progress)) {
  try {
    book_.emplace(std::move(path));
  } catch (const PlotError& error) {
    throw host::Error(msg::kFileAccess, error.what());
  }
}

CombinedPdf::CombinedPdf(std::string folder, std::function<void(const CombinedPage&)> written,
                         std::shared_ptr<ProgressDisplay> progress)
    : pageFolder_(std::move(folder)),
      pageWritten_(std::move(written)),
      progress_(std::move(progress)) {}

CombinedPdf::~CombinedPdf() { Close(); }

void CombinedPdf::Add(const PlotJob& job) {
  if (done_) return;
  try {
    if (book_) {
      book_->AddPage(job);
      return;
    }
    const std::string path =
        PathText(FsPath(pageFolder_) / FsPath(std::to_string(++pagesWritten_) + ".pdf"));
    PdfBook page(path);
    page.AddPage(job);
    page.Close();
    const SheetNames names = NamesOfSheet(job);
    if (pageWritten_) pageWritten_({path, names.drawingKey, names.drawingName, names.layoutName});
  } catch (const std::exception& error) {
    progress_->PlotFailed(msg::CombinedPageFailed(error.what()));
  }
}

void CombinedPdf::Close() {
  if (done_) return;
  done_ = true;
  if (!book_) return;
  std::string error;
  try {
    book_->Close();
  } catch (const std::exception& failure) {
    error = failure.what();
    progress_->PlotFailed(msg::CombinedNotWritten(error));
  }
  if (closed_) closed_(book_->Pages(), error);
}

}  // namespace sheafwork::embedded
