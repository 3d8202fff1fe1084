#include "embedded/pdf/part_reader.h"

#include <cmath>
#include <new>

#include "embedded/pdf/document.h"
#include "embedded/pdf/pdf_strings.h"
#include "log/regular_file.h"

namespace sheafwork::embedded::pdf {

namespace {

// What our writer puts first and last.
constexpr std::string_view kHeader = "%PDF-1.5\n%\xE2\xE3\xCF\xD3\n";
constexpr std::string_view kEnd = "%%EOF\n";
// "startxref", its offset and %%EOF end the file within this many bytes.
constexpr std::size_t kTail = 64;
// A cross-reference entry: ten digits of offset, a generation, n or f.
constexpr std::size_t kEntry = 20;
constexpr std::string_view kFreeHead = "0000000000 65535 f \n";
constexpr std::string_view kInUse = " 00000 n \n";

class PartReader {
 public:
  PartReader(const std::string& path, PdfPart& part) : path_(path), part_(part) {}

  void Read() {
    ReadTable();
    for (int number = 1; number < part_.objectCount; ++number) ReadObject(number);
    ReadPages();
    CollectReachable();
  }

 private:
  // What each object is to the copy.
  enum class Role { Unseen, Copied, PageTree, Layer, Refused };
  struct Parsed {
    PdfValue value;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::vector<ReferenceSpan> references;
    bool stream = false;
    Role role = Role::Unseen;
  };

  void Check(bool ok) const {
    if (!ok) throw FileError(FileError::Stage::Format, path_);
  }

  std::string_view Bytes() const { return part_.bytes; }

  /// The object a reference names; checks there is one.
  int Target(const PdfValue* reference) const {
    Check(reference != nullptr && reference->kind == PdfValue::Kind::Reference &&
          reference->number < part_.objectCount);
    return static_cast<int>(reference->number);
  }

  const PdfValue& Dictionary(int number) const {
    const Parsed& object = objects_[static_cast<std::size_t>(number)];
    Check(!object.stream && object.value.kind == PdfValue::Kind::Dictionary);
    return object.value;
  }

  void ReadTable() {
    const std::string_view bytes = Bytes();
    Check(bytes.starts_with(kHeader) && bytes.ends_with(kEnd));
    const std::size_t start =
        bytes.find("startxref", bytes.size() > kTail ? bytes.size() - kTail : 0);
    Check(start != std::string_view::npos);
    PdfParser tail(bytes, start + 9);
    PdfValue offset;
    Check(tail.Value(offset) && offset.kind == PdfValue::Kind::Integer && offset.number > 0 &&
          offset.number < static_cast<double>(bytes.size()));
    xref_ = static_cast<std::size_t>(offset.number);
    Check(xref_ >= kHeader.size() && bytes.substr(xref_, 5) == "xref\n");

    PdfParser table(bytes, xref_ + 5);
    PdfValue first, count;
    Check(table.Value(first) && first.kind == PdfValue::Kind::Integer && first.number == 0 &&
          table.Value(count) && count.kind == PdfValue::Kind::Integer && count.number >= 1);
    const std::size_t entries = table.Position() + 1;
    Check(entries <= bytes.size() && bytes[entries - 1] == '\n' &&
          count.number <= static_cast<double>((bytes.size() - entries) / kEntry));
    part_.objectCount = static_cast<int>(count.number);
    Check(bytes.substr(entries, kEntry) == kFreeHead);
    objects_.resize(static_cast<std::size_t>(part_.objectCount));
    offsets_.resize(objects_.size());
    for (std::size_t i = 1; i < objects_.size(); ++i) {
      const std::string_view entry = bytes.substr(entries + i * kEntry, kEntry);
      std::size_t at = 0;
      for (int digit = 0; digit < 10; ++digit) {
        const char c = entry[static_cast<std::size_t>(digit)];
        Check(c >= '0' && c <= '9');
        at = at * 10 + static_cast<std::size_t>(c - '0');
      }
      Check(entry.substr(10) == kInUse && at >= kHeader.size() && at < xref_);
      offsets_[i] = at;
    }

    PdfParser trailer(bytes, entries + objects_.size() * kEntry);
    PdfValue dictionary;
    Check(trailer.Keyword("trailer") && trailer.Value(dictionary));
    const PdfValue* size = dictionary.Find("Size");
    Check(size != nullptr && size->number == count.number && trailer.Keyword("startxref"));
    Check(trailer.Position() == start + 9);  // the table is the file's last
    catalog_ = Target(dictionary.Find("Root"));
    info_ = Target(dictionary.Find("Info"));
  }

  void ReadObject(int number) {
    // Objects lie before the table; nothing read may run into it.
    const std::string_view body = Bytes().substr(0, xref_);
    Parsed& object = objects_[static_cast<std::size_t>(number)];
    PdfParser parser(body, offsets_[static_cast<std::size_t>(number)]);
    Check(parser.Keyword(std::to_string(number)) && parser.Keyword("0") && parser.Keyword("obj"));
    parser.SkipSpace();
    object.begin = parser.Position();
    Check(parser.Value(object.value));
    object.end = parser.Position();
    object.references = parser.References();
    for (ReferenceSpan& span : object.references) {
      span.begin -= object.begin;
      span.end -= object.begin;
    }
    if (parser.Keyword("stream")) {
      object.stream = true;
      const PdfValue* length = object.value.Find("Length");
      const PdfValue* filter = object.value.Find("Filter");
      Check(length != nullptr && length->kind == PdfValue::Kind::Integer && length->number >= 0);
      Check(filter != nullptr && filter->kind == PdfValue::Kind::Name &&
            (filter->text == "FlateDecode" || filter->text == "DCTDecode"));
      std::size_t data = parser.Position();
      if (body.substr(data, 2) == "\r\n") ++data;
      Check(body.substr(data, 1) == "\n");
      const double end = static_cast<double>(data + 1) + length->number;
      Check(end <= static_cast<double>(body.size()));
      PdfParser after(body, static_cast<std::size_t>(end));
      Check(after.Keyword("endstream"));
      object.end = after.Position();
      Check(after.Keyword("endobj"));
    } else {
      Check(parser.Keyword("endobj"));
    }
  }

  void ReadPages() {
    const PdfValue& catalog = Dictionary(catalog_);
    Check(catalog.NameIs("Type", "Catalog"));
    part_.pageTree = Target(catalog.Find("Pages"));
    const PdfValue& tree = Dictionary(part_.pageTree);
    const PdfValue* kids = tree.Find("Kids");
    const PdfValue* count = tree.Find("Count");
    Check(tree.NameIs("Type", "Pages") && kids != nullptr && kids->kind == PdfValue::Kind::Array &&
          count != nullptr && count->number == static_cast<double>(kids->items.size()));
    RoleOf(catalog_) = Role::Refused;
    RoleOf(info_) = Role::Refused;
    RoleOf(part_.pageTree) = Role::PageTree;
    for (const PdfValue& kid : kids->items) {
      const int number = Target(&kid);
      Check(RoleOf(number) == Role::Unseen);
      const PdfValue& page = Dictionary(number);
      const PdfValue* box = page.Find("MediaBox");
      const PdfValue* contents = page.Find("Contents");
      Check(page.NameIs("Type", "Page") && Target(page.Find("Parent")) == part_.pageTree);
      Check(box != nullptr && box->kind == PdfValue::Kind::Array && box->items.size() == 4);
      for (const PdfValue& corner : box->items) Check(corner.IsNumber());
      const double width = box->items[2].number - box->items[0].number;
      const double height = box->items[3].number - box->items[1].number;
      Check(std::isfinite(width) && std::isfinite(height) && width > 0 && height > 0);
      Dictionary(Target(page.Find("Resources")));
      Check(contents != nullptr && contents->kind == PdfValue::Kind::Array);
      for (const PdfValue& stream : contents->items) {
        Check(objects_[static_cast<std::size_t>(Target(&stream))].stream);
      }
      Copy(number);
      part_.pages.push_back({number, width, height});
    }
  }

  // Every object the pages reach, each once, breadth first.
  void CollectReachable() {
    for (std::size_t next = 0; next < part_.objects.size(); ++next) {
      // Copy() adds to the objects: an entry is looked up again each time.
      for (std::size_t r = 0; r < part_.objects[next].references.size(); ++r) {
        const ReferenceSpan span = part_.objects[next].references[r];
        Check(span.object < part_.objectCount);
        Parsed& target = objects_[static_cast<std::size_t>(span.object)];
        Check(target.role != Role::Refused);
        if (target.role != Role::Unseen) continue;
        if (!target.stream && target.value.NameIs("Type", "OCG")) {
          const PdfValue* name = target.value.Find("Name");
          Check(name != nullptr && name->kind == PdfValue::Kind::String);
          target.role = Role::Layer;
          part_.layers.emplace_back(span.object, TextStringToUtf8(name->text));
        } else {
          Copy(span.object);
        }
      }
    }
  }

  void Copy(int number) {
    Parsed& object = objects_[static_cast<std::size_t>(number)];
    object.role = Role::Copied;
    part_.objects.push_back({number, object.begin, object.end, std::move(object.references)});
  }

  Role& RoleOf(int number) { return objects_[static_cast<std::size_t>(number)].role; }

  const std::string& path_;
  PdfPart& part_;
  std::vector<Parsed> objects_;
  std::vector<std::size_t> offsets_;
  std::size_t xref_ = 0;
  int catalog_ = 0;
  int info_ = 0;
};

}  // namespace

PdfPart ReadPdfPart(const std::string& path) {
  RegularFileRead read = ReadRegularFile(path, kNoSizeLimit);
  if (!read.ok) throw FileError(FileError::Stage::Read, path, read.reason);
  return ReadPdfPartBytes(std::move(read.bytes), path);
}

PdfPart ReadPdfPartBytes(std::string bytes, const std::string& path) {
  PdfPart part;
  part.bytes = std::move(bytes);
  try {
    PartReader(path, part).Read();
  } catch (const std::bad_alloc&) {
    throw FileError(FileError::Stage::Format, path);  // sizes no file of ours has
  }
  return part;
}

}  // namespace sheafwork::embedded::pdf
