#pragma once
// A PDF document written page by page straight to its file: the pages'
// content goes out in deflated chunks while the caller is still painting,
// and the file takes its target's place only when Close() succeeds.
//
//   Document doc(path, {.title = "Plan"});
//   ContentStream& page = doc.BeginPage(842, 595);  // points
//   page.Int(0).Int(0).Op("m"); ...
//   doc.EndPage();
//   doc.Close();

#include <cstddef>
#include <ctime>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "embedded/pdf/content_stream.h"
#include "embedded/pdf/optional_content.h"
#include "embedded/pdf/outline.h"
#include "embedded/pdf/text_fonts.h"

namespace sheafwork::embedded::pdf {

/// Why a document could not be made: its file could not be created, or not
/// written (or renamed into place); or why a file to import pages from
/// could not be: it could not be read (`Reason()` says why, in French), or
/// it is not a whole file of this writer (truncated, or another program's).
/// what() is the path of the file in question.
class FileError : public std::runtime_error {
 public:
  enum class Stage { Create, Write, Read, Format };
  FileError(Stage stage, const std::string& path, std::string reason = {})
      : std::runtime_error(path), stage_(stage), reason_(std::move(reason)) {}
  Stage WhichStage() const { return stage_; }
  const std::string& Reason() const { return reason_; }

 private:
  Stage stage_;
  std::string reason_;
};

struct DocumentInfo {
  std::string title;  ///< UTF-8
  std::string creator = "Sheafwork";
  std::string producer = "Sheafwork";
  std::time_t created = 0;  ///< 0: now
};

struct WriterOptions {
  /// Uncompressed bytes per content stream object.
  std::size_t chunkBytes = std::size_t{4} << 20;
  /// Content waiting for compression, at most about this many chunks.
  std::size_t queuedChunks = 2;
  int deflateLevel = 1;
};

class Document {
 public:
  /// Creates the file beside `path`. Throws FileError (Create).
  Document(std::string path, DocumentInfo info, WriterOptions options = {});
  /// Abandons the file unless Close() succeeded: nothing is left behind and
  /// a file already at `path` stays as it was.
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  /// Starts a page of `widthPt` × `heightPt` points (y up, origin at the
  /// lower-left corner); its content goes into the stream returned, valid
  /// until EndPage().
  ContentStream& BeginPage(double widthPt, double heightPt);
  void EndPage();
  int Pages() const { return static_cast<int>(pages_.size()); }
  /// The document's layers, shared by all its pages.
  OptionalContent& Layers() { return layers_; }
  /// The fonts of the pages' invisible text, shared by all its pages.
  TextFonts& Fonts() { return fonts_; }
  /// Appends every page of the PDF file `path`, which this writer made, as
  /// the next pages, in order, and returns how many (an open page is ended
  /// first). Each page keeps its own file's resources (fonts, images),
  /// copied with its content as they are; its layers are this document's
  /// groups of the same names. The whole file is read and checked before
  /// anything is added: throws FileError (Read, Format) naming `path`, the
  /// document unchanged; or (Write) naming this document's path.
  int ImportPages(const std::string& path);
  /// The outline written with the document, replacing any given before;
  /// its entries open pages by their index.
  void SetOutline(std::vector<OutlineItem> outline) { outline_ = std::move(outline); }

  /// An image every page may draw (`/Name Do`), written at once; returns
  /// its resource name ("/Im1"). `samples` are 8-bit, `components` (1 grey,
  /// 3 RGB, 4 CMYK) per pixel, row by row from the top, and are deflated;
  /// with `jpeg` they are a JPEG file, embedded as it is. `key` finds it
  /// again (FindImage).
  std::string AddImage(const std::string& key, int width, int height, int components,
                       std::string samples, bool jpeg);
  /// The resource name of the image added under `key`, null when none.
  const std::string* FindImage(const std::string& key) const;

  /// Ends an open page, writes the rest and renames the file onto `path`.
  /// Throws FileError (Write); the file is abandoned then.
  void Close();
  /// Removes the file written so far.
  void Abandon();

 private:
  struct Open;
  struct Page {
    int object = 0;
    double width = 0;
    double height = 0;
    std::vector<int> contents;
  };

  int NewObject() { return nextObject_++; }

  std::string path_;
  DocumentInfo info_;
  WriterOptions options_;
  std::unique_ptr<Open> open_;
  std::vector<Page> pages_;
  std::unique_ptr<ContentStream> content_;  // of the open page
  OptionalContent layers_{[this] { return NewObject(); }};
  TextFonts fonts_;
  std::vector<OutlineItem> outline_;
  std::map<std::string, std::string> images_;  ///< key -> resource name
  std::string imageResources_;                 ///< "/Im1 7 0 R ..."
  int nextObject_ = 1;
};

}  // namespace sheafwork::embedded::pdf
