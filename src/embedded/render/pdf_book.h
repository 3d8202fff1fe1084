#pragma once
// One PDF file that collects sheets: a page per sheet, in the order they
// come, each page the size of its own sheet. Its outline has an entry per
// drawing, where the drawing's first page is, and under it one per sheet,
// named after the sheet's layout.

#include <memory>
#include <string>

#include "embedded/render/plot_job.h"

namespace sheafwork::embedded {

/// How a book files a sheet of `job` (AddSheetFrom's arguments): the
/// drawing's path, the drawing's name and the layout's.
struct SheetNames {
  std::string drawingKey;
  std::string drawingName;
  std::string layoutName;
};
SheetNames NamesOfSheet(const PlotJob& job);

class PdfBook {
 public:
  /// Prepares `path` for writing. The file is written beside it and takes
  /// its place only when Close() succeeds with at least one page; until then
  /// a file already there stays as it was. Throws PlotError when the file
  /// cannot be created.
  explicit PdfBook(std::string path);
  /// Closes the book when Close() was not called, errors ignored.
  ~PdfBook();
  PdfBook(const PdfBook&) = delete;
  PdfBook& operator=(const PdfBook&) = delete;

  /// Paints the job's sheet (its drawing, layout and settings; the output
  /// fields are ignored) as the next page, in the outline under the job's
  /// drawing name and layout name. Throws PlotError; a page that
  /// could not be planned is not added.
  void AddPage(const PlotJob& job);

  /// Adds the pages of `pdfPath`, a PDF file of our own writer holding one
  /// sheet (a one-page file written by a PdfBook or a PDF plot), as the next
  /// pages, filed in the outline as AddPage() files a sheet: under the entry
  /// of the drawing `drawingKey` (its path; empty: `drawingName`), named
  /// `drawingName` (empty: the key's file name), then `layoutName`. Throws
  /// PlotError naming `pdfPath` when it cannot be read or is not such a
  /// file; the book is unchanged then and goes on.
  void AddSheetFrom(const std::string& pdfPath, const std::string& drawingKey,
                    const std::string& drawingName, const std::string& layoutName);

  /// Finishes the file. Without any page nothing is written and the file
  /// already there stays. Throws PlotError when the file cannot be written.
  /// Further calls do nothing.
  void Close();

  /// The pages added so far, also after Close().
  int Pages() const { return pages_; }
  const std::string& Path() const { return path_; }
  bool IsOpen() const { return impl_ != nullptr; }

 private:
  struct Impl;
  std::string path_;
  std::unique_ptr<Impl> impl_;
  int pages_ = 0;
};

}  // namespace sheafwork::embedded
