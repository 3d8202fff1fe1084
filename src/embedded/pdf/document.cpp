#include "embedded/pdf/document.h"

#include "embedded/pdf/object_writer.h"
#include "embedded/pdf/part_reader.h"
#include "embedded/pdf/pdf_strings.h"
#include "log/output_file.h"

namespace sheafwork::embedded::pdf {

namespace {

// Objects with a fixed number; pages and their content come after.
constexpr int kCatalog = 1;
constexpr int kPageTree = 2;
constexpr int kInfo = 3;
constexpr int kResources = 4;
constexpr int kFirstFree = 5;

std::string Number(double value) {
  std::string text;
  AppendDecimal(text, value, 4);
  return text;
}

std::string Reference(int object) { return std::to_string(object) + " 0 R"; }

}  // namespace

struct Document::Open {
  Open(const std::string& path, const WriterOptions& options)
      : file(path), writer(file, options.deflateLevel, options.chunkBytes * options.queuedChunks) {}
  OutputFile file;
  ObjectWriter writer;  // after the file: stops before it closes
};

Document::Document(std::string path, DocumentInfo info, WriterOptions options)
    : path_(std::move(path)), info_(std::move(info)), options_(options) {
  open_ = std::make_unique<Open>(path_, options_);
  if (!open_->file.IsOpen()) {
    open_.reset();
    throw FileError(FileError::Stage::Create, path_);
  }
  nextObject_ = kFirstFree;
  // The binary comment tells transfer tools the file is not text.
  open_->writer.Raw("%PDF-1.5\n%\xE2\xE3\xCF\xD3\n");
}

Document::~Document() { Abandon(); }

ContentStream& Document::BeginPage(double widthPt, double heightPt) {
  if (!open_) throw FileError(FileError::Stage::Write, path_);
  if (content_) EndPage();
  pages_.push_back(Page{0, widthPt, heightPt, {}});
  content_ = std::make_unique<ContentStream>(
      [this](std::string chunk) {
        const int object = NewObject();
        pages_.back().contents.push_back(object);
        open_->writer.Stream(object, {}, std::move(chunk));
      },
      options_.chunkBytes);
  return *content_;
}

void Document::EndPage() {
  if (!content_ || !open_) return;
  content_->Finish();
  content_.reset();
  Page& page = pages_.back();
  page.object = NewObject();
  std::string body = "<< /Type /Page /Parent " + Reference(kPageTree) + " /MediaBox [0 0 " +
                     Number(page.width) + " " + Number(page.height) + "] /Resources " +
                     Reference(kResources) + " /Contents [";
  for (std::size_t i = 0; i < page.contents.size(); ++i) {
    if (i > 0) body += ' ';
    body += Reference(page.contents[i]);
  }
  body += "] >>";
  open_->writer.Object(page.object, std::move(body));
}

std::string Document::AddImage(const std::string& key, int width, int height, int components,
                               std::string samples, bool jpeg) {
  if (!open_) throw FileError(FileError::Stage::Write, path_);
  const std::string name = "/Im" + std::to_string(images_.size() + 1);
  const int object = NewObject();
  const char* space = components == 1   ? "/DeviceGray"
                      : components == 4 ? "/DeviceCMYK"
                                        : "/DeviceRGB";
  std::string dictionary = "/Type /XObject /Subtype /Image /Width " + std::to_string(width) +
                           " /Height " + std::to_string(height) + " /ColorSpace " + space +
                           " /BitsPerComponent 8";
  if (jpeg) {
    open_->writer.EncodedStream(object, std::move(dictionary) + " /Filter /DCTDecode",
                                std::move(samples));
  } else {
    open_->writer.Stream(object, std::move(dictionary), std::move(samples));
  }
  images_[key] = name;
  imageResources_ += name + " " + Reference(object) + " ";
  return name;
}

const std::string* Document::FindImage(const std::string& key) const {
  const auto it = images_.find(key);
  return it != images_.end() ? &it->second : nullptr;
}

int Document::ImportPages(const std::string& path) {
  if (!open_) throw FileError(FileError::Stage::Write, path_);
  const PdfPart part = ReadPdfPart(path);  // checked whole before anything changes
  EndPage();
  std::vector<int> renumbered(static_cast<std::size_t>(part.objectCount), 0);
  renumbered[static_cast<std::size_t>(part.pageTree)] = kPageTree;
  for (const auto& [object, name] : part.layers) {
    renumbered[static_cast<std::size_t>(object)] = layers_.Object(name);
  }
  for (const PdfPart::Object& object : part.objects) {
    renumbered[static_cast<std::size_t>(object.number)] = NewObject();
  }
  for (const PdfPart::Object& object : part.objects) {
    open_->writer.Object(renumbered[static_cast<std::size_t>(object.number)],
                         RenumberReferences(part.Text(object), object.references, renumbered));
  }
  for (const PdfPart::Page& page : part.pages) {
    pages_.push_back(
        Page{renumbered[static_cast<std::size_t>(page.object)], page.width, page.height, {}});
  }
  return static_cast<int>(part.pages.size());
}

void Document::Close() {
  if (!open_) throw FileError(FileError::Stage::Write, path_);
  EndPage();
  ObjectWriter& writer = open_->writer;
  std::string kids;
  for (const Page& page : pages_) {
    if (!kids.empty()) kids += ' ';
    kids += Reference(page.object);
  }
  writer.Object(kPageTree, "<< /Type /Pages /Kids [" + kids + "] /Count " +
                               std::to_string(pages_.size()) + " >>");
  for (auto& [object, group] : layers_.GroupObjects()) writer.Object(object, std::move(group));
  const bool layered = layers_.Size() > 0;
  std::string outline;
  if (!outline_.empty()) {
    std::vector<int> pageObjects;
    for (const Page& page : pages_) pageObjects.push_back(page.object);
    const int root = nextObject_;
    for (std::string& body : OutlineObjects(outline_, pageObjects, root)) {
      writer.Object(NewObject(), std::move(body));
    }
    outline = " /Outlines " + Reference(root) + " /PageMode /UseOutlines";
  }
  writer.Object(kCatalog, "<< /Type /Catalog /Pages " + Reference(kPageTree) +
                              (layered ? " " + layers_.CatalogEntry() : "") + outline + " >>");
  const std::time_t created = info_.created != 0 ? info_.created : std::time(nullptr);
  writer.Object(kInfo, "<< /Title " + TextString(info_.title) + " /Creator " +
                           TextString(info_.creator) + " /Producer " + TextString(info_.producer) +
                           " /CreationDate " + LiteralString(DateString(created)) + " >>");
  std::vector<int> fonts;
  for (std::size_t font = 0; font < fonts_.Size(); ++font) {
    const int toUnicode = NewObject();
    writer.Stream(toUnicode, {}, fonts_.ToUnicodeMap(font));
    fonts.push_back(NewObject());
    writer.Object(fonts.back(), fonts_.FontDictionary(font, toUnicode));
  }
  const std::string fontEntry = fonts_.ResourceEntry(fonts);
  writer.Object(kResources, "<<" + (fontEntry.empty() ? "" : " " + fontEntry) +
                                (layered ? " " + layers_.PropertiesEntry() : "") +
                                (images_.empty() ? "" : " /XObject << " + imageResources_ + ">>") +
                                " >>");
  bool ok = writer.Drain();
  if (ok) {
    // Every object is in the file now; the table that finds them follows.
    OutputFile& file = open_->file;
    const std::vector<std::uint64_t>& offsets = writer.Offsets();
    const std::uint64_t xref = file.Offset();
    std::string table = "xref\n0 " + std::to_string(nextObject_) + "\n0000000000 65535 f \n";
    for (int object = 1; object < nextObject_; ++object) {
      const std::uint64_t offset = static_cast<std::size_t>(object) < offsets.size()
                                       ? offsets[static_cast<std::size_t>(object)]
                                       : 0;
      ok = ok && offset > 0;
      std::string digits = std::to_string(offset);
      table.append(10 - std::min<std::size_t>(digits.size(), 10), '0');
      table += digits;
      table += " 00000 n \n";
    }
    table += "trailer\n<< /Size " + std::to_string(nextObject_) + " /Root " + Reference(kCatalog) +
             " /Info " + Reference(kInfo) + " >>\nstartxref\n" + std::to_string(xref) + "\n%%EOF\n";
    ok = ok && file.Write(table) && file.Commit();
  }
  open_.reset();
  if (!ok) throw FileError(FileError::Stage::Write, path_);
}

void Document::Abandon() {
  content_.reset();
  open_.reset();  // the writer stops, then the file goes
}

}  // namespace sheafwork::embedded::pdf
