#include "embedded/render/pdf_book.h"

#include <filesystem>
#include <system_error>

#include "embedded/pdf/document.h"
#include "embedded/render/messages.h"
#include "embedded/render/paint_sheet.h"
#include "embedded/render/pdf_output.h"

namespace sheafwork::embedded {

struct PdfBook::Impl {
  explicit Impl(const std::string& path, pdf::DocumentInfo info)
      : document(path, std::move(info)) {}
  pdf::Document document;
};

PdfBook::PdfBook(std::string path) : path_(std::move(path)) {
  std::error_code ec;
  if (path_.empty() || std::filesystem::is_directory(path_, ec)) {
    throw PlotError(render_messages::FileCannotCreate("PDF", path_));
  }
  pdf::DocumentInfo info;
  info.title = std::filesystem::path(path_).stem().string();
  try {
    impl_ = std::make_unique<Impl>(path_, std::move(info));
  } catch (const pdf::FileError& error) {
    ThrowPdfFileError(error, path_);
  }
}

PdfBook::~PdfBook() {
  try {
    Close();
  } catch (const PlotError&) {
    // Nothing more can be done at this point; callers that care close first.
  }
}

void PdfBook::AddPage(const PlotJob& job) {
  if (!impl_) throw PlotError(render_messages::FileCannotWrite("PDF", path_));
  const SheetLayout sheet = PlanSheet(job);
  try {
    // The page stays, drawn as far as it went, when drawing throws.
    struct Count {
      int& pages;
      pdf::Document& document;
      ~Count() { pages = document.Pages(); }
    } count{pages_, impl_->document};
    AddSheetPage(impl_->document, job, sheet, kPdfDpi);  // one grid for every page
  } catch (const pdf::FileError& error) {
    ThrowPdfFileError(error, path_);
  }
}

void PdfBook::Close() {
  if (!impl_) return;
  const std::unique_ptr<Impl> book = std::move(impl_);
  if (pages_ == 0) return;  // abandoned: the file already there stays
  try {
    book->document.Close();
  } catch (const pdf::FileError& error) {
    ThrowPdfFileError(error, path_);
  }
}

}  // namespace sheafwork::embedded
