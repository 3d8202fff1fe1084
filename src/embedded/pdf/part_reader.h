#pragma once
// Reading back a PDF file that our Document wrote, to copy its pages into
// another document: one cross-reference table, objects numbered from 1,
// a flat page tree whose pages share one resources object. Anything else
// (a truncated file, another program's PDF) is refused, never guessed at.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/pdf/pdf_syntax.h"

namespace sheafwork::embedded::pdf {

struct PdfPart {
  /// An object the pages need: its text from its value's start up to
  /// "endobj" (a stream's data included); its references relative to that.
  struct Object {
    int number = 0;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::vector<ReferenceSpan> references;
  };
  struct Page {
    int object = 0;
    double width = 0;  ///< points
    double height = 0;
  };

  std::string_view Text(const Object& object) const {
    return std::string_view(bytes).substr(object.begin, object.end - object.begin);
  }

  std::string bytes;  ///< the whole file
  /// The objects the pages reach (their resources, fonts, images, content
  /// streams), the pages among them; not the catalog, page tree, outline,
  /// information, nor the layers' groups.
  std::vector<Object> objects;
  std::vector<Page> pages;  ///< in order
  /// The layers' groups the pages reach: object number, layer name (UTF-8).
  std::vector<std::pair<int, std::string>> layers;
  int pageTree = 0;     ///< the pages' parent
  int objectCount = 0;  ///< every object number is below it
};

/// Reads and checks the whole of `path`. Throws FileError: Read when it
/// cannot be read, Format when it is not a whole file of our writer.
PdfPart ReadPdfPart(const std::string& path);

/// The same for the file's `bytes` already read; `path` names it in the
/// FileError (Format).
PdfPart ReadPdfPartBytes(std::string bytes, const std::string& path);

}  // namespace sheafwork::embedded::pdf
