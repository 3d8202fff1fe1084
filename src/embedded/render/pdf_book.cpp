#include "embedded/render/pdf_book.h"

#include <QFileInfo>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

#include "embedded/render/messages.h"
#include "embedded/render/paint_sheet.h"
#include "embedded/render/qt_application.h"

namespace sheafwork::embedded {

namespace {

// One resolution for every page: the painter keeps its device for the whole
// file. The output stays vector; this is only the grid of coordinates.
constexpr int kDpi = 1200;

}  // namespace

struct PdfBook::Impl {
  explicit Impl(const QString& path) : file(path), writer(&file) {}
  // Declared in this order so that the painter ends before the writer and
  // the writer goes before the file.
  QSaveFile file;
  QPdfWriter writer;
  QPainter painter;
};

PdfBook::PdfBook(std::string path) : path_(std::move(path)) {
  const QString name = QString::fromStdString(path_);
  if (name.isEmpty() || QFileInfo(name).isDir()) {
    throw PlotError(render_messages::FileCannotCreate("PDF", path_));
  }
  impl_ = std::make_unique<Impl>(name);
  if (!impl_->file.open(QIODevice::WriteOnly)) {
    impl_.reset();
    throw PlotError(render_messages::FileCannotCreate("PDF", path_));
  }
  impl_->writer.setResolution(kDpi);
  impl_->writer.setCreator(QStringLiteral("Sheafwork"));
  impl_->writer.setTitle(QFileInfo(name).completeBaseName());
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
  EnsureGuiApplication();
  Impl& book = *impl_;
  // The layout set now is the one of the next page the writer starts.
  if (!book.writer.setPageLayout(SheetPageLayout(sheet.frame, QPageSize::ExactMatch))) {
    throw PlotError(render_messages::InvalidPaper(sheet.frame.width, sheet.frame.height));
  }
  if (pages_ == 0) {
    if (!book.painter.begin(&book.writer)) {
      throw PlotError(render_messages::FileCannotCreate("PDF", path_));
    }
  } else if (!book.writer.newPage()) {
    throw PlotError(render_messages::FileCannotWrite("PDF", path_));
  }
  ++pages_;
  PaintOptions options;
  options.pixelsPerMm = kDpi / 25.4;
  PaintSheet(book.painter, job, sheet, options);
}

void PdfBook::Close() {
  if (!impl_) return;
  const std::unique_ptr<Impl> book = std::move(impl_);
  if (pages_ == 0) {
    book->file.cancelWriting();
    return;
  }
  const bool ended = book->painter.end();
  if (!ended || !book->file.commit())
    throw PlotError(render_messages::FileCannotWrite("PDF", path_));
}

}  // namespace sheafwork::embedded
