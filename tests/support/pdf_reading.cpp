#include "support/pdf_reading.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "compress/zlib_stream.h"
#include "embedded/pdf/pdf_strings.h"
#include "fakes/shell.h"

namespace sheafwork::embedded::pdf::testing {

using sheafwork::testing::Quoted;
using sheafwork::testing::RunCommand;

namespace {

// The object `key` refers to in `dictionary`, 0 when none.
int Reference(const PdfValue& dictionary, std::string_view key) {
  const PdfValue* value = dictionary.Find(key);
  return value != nullptr && value->kind == PdfValue::Kind::Reference
             ? static_cast<int>(value->number)
             : 0;
}

std::size_t EntriesIn(const std::vector<OutlineEntry>& entries) {
  std::size_t n = entries.size();
  for (const OutlineEntry& entry : entries) n += EntriesIn(entry.children);
  return n;
}

// The children of outline object `parent`, followed from its /First.
std::vector<OutlineEntry> Children(const PdfPart& pdf, int parent, std::string& error, int depth) {
  std::vector<OutlineEntry> entries;
  const PdfValue parentValue = ObjectOf(pdf, parent);
  int previous = 0;
  for (int item = Reference(parentValue, "First"); item != 0 && depth < 8 && entries.size() < 1000;
       item = Reference(ObjectOf(pdf, item), "Next")) {
    const PdfValue value = ObjectOf(pdf, item);
    OutlineEntry entry;
    if (const PdfValue* title = value.Find("Title")) entry.title = TextStringToUtf8(title->text);
    const PdfValue* dest = value.Find("Dest");
    for (std::size_t i = 0; dest != nullptr && !dest->items.empty() && i < pdf.pages.size(); ++i) {
      if (pdf.pages[i].object == dest->items[0].number) entry.page = static_cast<int>(i);
    }
    if (Reference(value, "Parent") != parent) error += "wrong /Parent; ";
    if (Reference(value, "Prev") != previous) error += "wrong /Prev; ";
    entry.children = Children(pdf, item, error, depth + 1);
    entries.push_back(std::move(entry));
    previous = item;
  }
  if (Reference(parentValue, "Last") != previous) error += "wrong /Last; ";
  const PdfValue* count = parentValue.Find("Count");
  if ((count == nullptr ? 0 : count->number) != static_cast<double>(EntriesIn(entries))) {
    error += "wrong /Count; ";
  }
  return entries;
}

}  // namespace

PdfValue ObjectOf(const PdfPart& pdf, int number, std::string* stream) {
  PdfValue value;
  if (number <= 0 || number >= pdf.objectCount) {
    ADD_FAILURE() << "no object " << number;
    return value;
  }
  // ReadPdfPart checked the table: twenty bytes an entry, ten digits of offset.
  const std::string& bytes = pdf.bytes;
  const std::size_t table = std::stoul(bytes.substr(bytes.rfind("startxref") + 9));
  const std::size_t entries = bytes.find('\n', table + 5) + 1;
  PdfParser parser(bytes,
                   std::stoul(bytes.substr(entries + 20 * static_cast<std::size_t>(number), 10)));
  EXPECT_TRUE(parser.Keyword(std::to_string(number)) && parser.Keyword("0") &&
              parser.Keyword("obj") && parser.Value(value))
      << "object " << number;
  if (stream == nullptr) return value;
  const PdfValue* length = value.Find("Length");
  if (!parser.Keyword("stream") || length == nullptr || !value.NameIs("Filter", "FlateDecode")) {
    ADD_FAILURE() << "object " << number << " is not a deflated stream";
    return value;
  }
  const auto* data = reinterpret_cast<const unsigned char*>(bytes.data() + parser.Position() + 1);
  Inflated inflated = InflateZlib({data, static_cast<std::size_t>(length->number)}, 1u << 26);
  EXPECT_EQ(inflated.status, Inflated::Status::Done) << "object " << number << " does not inflate";
  *stream = std::move(inflated.bytes);
  return value;
}

PdfValue CatalogOf(const PdfPart& pdf) {
  PdfParser trailer(pdf.bytes, pdf.bytes.rfind("trailer") + 7);
  PdfValue dictionary;
  EXPECT_TRUE(trailer.Value(dictionary));
  return ObjectOf(pdf, Reference(dictionary, "Root"));
}

std::vector<OutlineEntry> ReadOutline(const PdfPart& pdf, std::string& error) {
  const int root = Reference(CatalogOf(pdf), "Outlines");
  if (root == 0) {
    error = "no /Outlines in the catalog";
    return {};
  }
  return Children(pdf, root, error, 0);
}

std::vector<std::string> Flat(const std::vector<OutlineEntry>& entries, int depth) {
  std::vector<std::string> lines;
  for (const OutlineEntry& entry : entries) {
    lines.push_back(std::to_string(depth) + " " + entry.title + " " + std::to_string(entry.page));
    for (std::string& line : Flat(entry.children, depth + 1)) lines.push_back(std::move(line));
  }
  return lines;
}

bool HavePoppler() { return std::system("pdfinfo -v >/dev/null 2>&1") == 0; }

std::string PdfText(const std::string& path, const std::string& options) {
  int status = 0;
  const std::string text = RunCommand("pdftotext " + options + " " + Quoted(path) + " -", status);
  EXPECT_EQ(status, 0) << text;
  return text;
}

QImage RasterisePage(const std::string& path, int page, int dpi, const std::string& stem) {
  if (!HavePoppler()) return {};
  const std::string p = std::to_string(page);
  int status = 0;
  const std::string out =
      RunCommand("pdftoppm -png -singlefile -r " + std::to_string(dpi) + " -f " + p + " -l " + p +
                     " " + Quoted(path) + " " + Quoted(stem),
                 status);
  EXPECT_EQ(status, 0) << out;
  for (const char* complaint : {"Syntax Error", "Syntax Warning", "xref", "Internal Error"}) {
    EXPECT_EQ(out.find(complaint), std::string::npos) << out;
  }
  const QImage image(QString::fromStdString(stem + ".png"));
  EXPECT_FALSE(image.isNull()) << path;
  return image;
}

void ExpectSamePicture(const QImage& a, const QImage& b) {
  ASSERT_FALSE(a.isNull());
  ASSERT_EQ(a.size(), b.size());
  std::size_t differing = 0, inked = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      const int pa = qGray(a.pixel(x, y));
      if (std::abs(pa - qGray(b.pixel(x, y))) > 64) ++differing;
      if (pa < 192) ++inked;
    }
  }
  const auto pixels = static_cast<std::size_t>(a.width()) * static_cast<std::size_t>(a.height());
  EXPECT_GT(inked, 20u) << "the page is blank";
  EXPECT_LE(differing, pixels / 200) << "of " << pixels << " pixels";
}

}  // namespace sheafwork::embedded::pdf::testing
