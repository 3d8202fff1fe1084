#include "embedded/render/pdf_book.h"

#include <filesystem>
#include <map>
#include <string>
#include <system_error>
#include <vector>

#include "embedded/pdf/document.h"
#include "embedded/render/messages.h"
#include "embedded/render/paint_sheet.h"
#include "embedded/render/pdf_output.h"
#include "log/wide_path.h"

namespace sheafwork::embedded {

SheetNames NamesOfSheet(const PlotJob& job) {
  return {job.drawing != nullptr ? job.drawing->path : std::string(), job.drawingName,
          !job.layoutName.empty() || job.layout == nullptr ? job.layoutName : job.layout->name};
}

struct PdfBook::Impl {
  explicit Impl(const std::string& path, pdf::DocumentInfo info)
      : document(path, std::move(info)) {}

  /// Files sheet `page` (its first page) under the entry of its drawing,
  /// `key`, made with the drawing's first sheet and named `name` (empty:
  /// the key's file name); the sheet's own entry is `layout`.
  void AddToOutline(const std::string& key, const std::string& name, const std::string& layout,
                    int page) {
    auto [at, added] = drawings.try_emplace(key.empty() ? name : key, outline.size());
    if (added) {
      outline.push_back({!name.empty() ? name : PathText(FsPath(key).filename()), page, {}});
    }
    outline[at->second].children.push_back({layout, page, {}});
  }

  void AddToOutline(const PlotJob& job, int page) {
    const SheetNames names = NamesOfSheet(job);
    AddToOutline(names.drawingKey, names.drawingName, names.layoutName, page);
  }

  pdf::Document document;
  std::vector<pdf::OutlineItem> outline;
  std::map<std::string, std::size_t> drawings;  ///< path → its entry in `outline`
};

PdfBook::PdfBook(std::string path) : path_(std::move(path)) {
  std::error_code ec;
  if (path_.empty() || std::filesystem::is_directory(path_, ec)) {
    throw PlotError(render_messages::FileCannotCreate("PDF", path_));
  }
  pdf::DocumentInfo info;
  info.title = PathText(FsPath(path_).stem());
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
    // The page stays, drawn as far as it went, when drawing throws, and is
    // in the outline.
    struct Count {
      int& pages;
      Impl& book;
      const PlotJob& job;
      ~Count() {
        if (book.document.Pages() > pages) book.AddToOutline(job, pages);
        pages = book.document.Pages();
      }
    } count{pages_, *impl_, job};
    AddSheetPage(impl_->document, job, sheet, kPdfDpi);  // one grid for every page
  } catch (const pdf::FileError& error) {
    ThrowPdfFileError(error, path_);
  }
}

void PdfBook::AddSheetFrom(const std::string& pdfPath, const std::string& drawingKey,
                           const std::string& drawingName, const std::string& layoutName) {
  if (!impl_) throw PlotError(render_messages::FileCannotWrite("PDF", path_));
  try {
    if (impl_->document.ImportPages(pdfPath) > 0) {
      impl_->AddToOutline(drawingKey, drawingName, layoutName, pages_);
    }
  } catch (const pdf::FileError& error) {
    ThrowPdfFileError(error, path_);
  }
  pages_ = impl_->document.Pages();
}

void PdfBook::Close() {
  if (!impl_) return;
  const std::unique_ptr<Impl> book = std::move(impl_);
  if (pages_ == 0) return;  // abandoned: the file already there stays
  book->document.SetOutline(std::move(book->outline));
  try {
    book->document.Close();
  } catch (const pdf::FileError& error) {
    ThrowPdfFileError(error, path_);
  }
}

}  // namespace sheafwork::embedded
