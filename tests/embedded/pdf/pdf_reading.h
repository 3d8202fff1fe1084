#pragma once
// Reading back the PDF files our writer makes: the cross-reference table,
// the objects it points at and their streams, inflated; and poppler's view
// of the file.

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

/// What `tool` (pdfinfo, pdftoppm...) with `args` prints, standard error
/// included; `status` its exit status.
std::string Poppler(const std::string& tool, const std::string& args, int& status);

/// Whether poppler's output complains about the file's structure.
bool PopplerComplains(const std::string& output);

/// Rasterises `path` with pdftoppm and `args` into files named from `stem`,
/// failing the test when pdftoppm fails or complains.
void ExpectPopplerRenders(const std::string& path, const std::string& args,
                          const std::string& stem);

/// A page in greys, one byte a pixel, rows from the top.
struct GreyPage {
  int width = 0;
  int height = 0;
  std::string pixels;
};

/// Page `page` (from 1) of `path` as pdftoppm draws it in greys at `dpi`,
/// through the file `stem`.pgm; empty, failing the test, when it cannot.
GreyPage RasterisePage(const std::string& path, int page, int dpi, const std::string& stem);

/// Fails the test unless the two pages look alike: the same size, something
/// drawn, and at most one pixel in 200 differing by more than a light grey.
void ExpectSamePicture(const GreyPage& a, const GreyPage& b);

}  // namespace sheafwork::embedded::pdf::testing
