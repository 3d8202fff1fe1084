#pragma once
// Reading back the PDF files our writer makes: the cross-reference table,
// the objects it points at and their streams, inflated; and poppler's view
// of the file.

#include <QImage>
#include <map>
#include <string>
#include <vector>

namespace sheafwork::embedded::pdf::testing {

struct ReadPdf {
  std::string bytes;
  std::map<int, std::size_t> offsets;  ///< object number → where the xref says it is
  std::string error;                   ///< what is wrong with the structure, if anything
};

/// Reads `path` and checks its structure: a header, a cross-reference table
/// found by startxref whose every entry points at "N 0 obj" of its own
/// number, a trailer with the right /Size.
ReadPdf ReadStructure(const std::string& path);

/// The text of object `number` from "obj" to "endobj".
std::string ObjectText(const ReadPdf& pdf, int number);

/// The object numbers in the /Contents array of each page, in page order.
std::vector<std::vector<int>> PageContents(const ReadPdf& pdf);

/// Object `number`'s stream, inflated; empty with `error` set when it cannot
/// be.
std::string InflatedStream(const ReadPdf& pdf, int number, std::string& error);

/// An entry of the document's outline as read back.
struct OutlineEntry {
  std::string title;  ///< UTF-8, from a literal or a UTF-16BE text string
  int page = -1;      ///< from 0: its destination among the pages, -1 for none
  std::vector<OutlineEntry> children;
};

/// The outline the catalog's /Outlines points at, followed from /First
/// through /Next; `error` says what does not hold together (a /Count, a
/// /Parent, a /Last or /Prev that does not match the chain).
std::vector<OutlineEntry> ReadOutline(const ReadPdf& pdf, std::string& error);

/// Whether poppler's tools are installed.
bool HavePoppler();

/// Page `page` (from 1) of `path` as pdftoppm draws it at `dpi`, through
/// the file `stem`.png; a null image when poppler's tools are not installed.
/// Fails the test when pdftoppm fails or complains about the file.
QImage RasterisePage(const std::string& path, int page, int dpi, const std::string& stem);

/// Fails the test unless the two pictures look alike: the same size,
/// something drawn, and at most one pixel in 200 differing by more than a
/// light grey.
void ExpectSamePicture(const QImage& a, const QImage& b);

}  // namespace sheafwork::embedded::pdf::testing
