#pragma once
// Reading back the PDF files our writer makes: their structure is checked by
// the reader that imports pages (ReadPdfPart, which throws FileError when it
// does not hold together); here, the objects it does not keep and the
// outline. Poppler's view of the file is the outside check.

#include <QImage>
#include <string>
#include <vector>

#include "embedded/pdf/part_reader.h"

namespace sheafwork::embedded::pdf::testing {

/// Object `number` of `pdf` as the cross-reference table finds it: its value
/// (a stream's dictionary) and, when `stream` is given, its deflated data
/// inflated. Fails the test when it cannot be read.
PdfValue ObjectOf(const PdfPart& pdf, int number, std::string* stream = nullptr);

/// The document's catalog, as the trailer's /Root names it.
PdfValue CatalogOf(const PdfPart& pdf);

/// An entry of the document's outline as read back.
struct OutlineEntry {
  std::string title;  ///< UTF-8
  int page = -1;      ///< from 0: its destination among the pages, -1 for none
  std::vector<OutlineEntry> children;
};

/// The outline the catalog's /Outlines points at, followed from /First
/// through /Next; `error` says what does not hold together (a /Count, a
/// /Parent, a /Last or /Prev that does not match the chain).
std::vector<OutlineEntry> ReadOutline(const PdfPart& pdf, std::string& error);

/// The outline as lines "depth title page", in order.
std::vector<std::string> Flat(const std::vector<OutlineEntry>& entries, int depth = 0);

/// Whether poppler's tools (pdftoppm, pdftotext) are installed.
bool HavePoppler();

/// pdftotext's output for `path` with `options` ("-raw", "-bbox"...).
std::string PdfText(const std::string& path, const std::string& options = "");

/// Page `page` (from 1) of `path` as pdftoppm draws it at `dpi`, through
/// the file `stem`.png; a null image when poppler's tools are not installed.
/// Fails the test when pdftoppm fails or complains about the file.
QImage RasterisePage(const std::string& path, int page, int dpi, const std::string& stem);

/// Fails the test unless the two pictures look alike: the same size,
/// something drawn, and at most one pixel in 200 differing by more than a
/// light grey.
void ExpectSamePicture(const QImage& a, const QImage& b);

}  // namespace sheafwork::embedded::pdf::testing
