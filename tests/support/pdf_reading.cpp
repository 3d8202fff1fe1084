#include "support/pdf_reading.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdlib>
#include <functional>
#include <span>
#include <sstream>

#include "fakes/cups_queue.h"
#include "fakes/temp_folder.h"
#include "text/utf8.h"

namespace sheafwork::embedded::pdf::testing {

namespace {

long NumberAfter(const std::string& text, std::size_t at) {
  return std::strtol(text.c_str() + at, nullptr, 10);
}

// The objects "N 0 R" in the array that follows `key` in `text`.
std::vector<int> References(const std::string& text, const std::string& key) {
  std::vector<int> objects;
  const std::size_t open = text.find(key);
  if (open == std::string::npos) return objects;
  std::istringstream array(text.substr(open + key.size(), text.find(']', open) - open));
  int number = 0, generation = 0;
  std::string r;
  while (array >> number >> generation >> r && r.rfind('R', 0) == 0) objects.push_back(number);
  return objects;
}

// The object "N 0 R" after `key` in `text`, 0 when none.
int ReferenceAfter(const std::string& text, const std::string& key) {
  const std::size_t at = text.find(key + " ");
  return at == std::string::npos ? 0 : static_cast<int>(NumberAfter(text, at + key.size() + 1));
}

// A text string's characters in UTF-8: a literal of ASCII or hexadecimal
// UTF-16BE after its byte order mark.
std::string TextStringValue(const std::string& text, std::size_t at) {
  std::string out;
  if (text[at] == '(') {
    for (std::size_t i = at + 1; i < text.size() && text[i] != ')'; ++i) {
      if (text[i] == '\\') ++i;
      out += text[i];
    }
    return out;
  }
  const std::size_t end = text.find('>', at);
  const std::string hex = text.substr(at + 1, end - at - 1);
  if (hex.rfind("FEFF", 0) != 0) return "?";
  for (std::size_t i = 4; i + 4 <= hex.size(); i += 4) {
    char32_t c = static_cast<char32_t>(std::stoul(hex.substr(i, 4), nullptr, 16));
    if (c >= 0xD800 && c < 0xDC00 && i + 8 <= hex.size()) {
      const auto low = static_cast<char32_t>(std::stoul(hex.substr(i + 4, 4), nullptr, 16));
      c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
      i += 4;
    }
    AppendUtf8(out, c);
  }
  return out;
}

// The children of outline object `parent`, followed from its /First.
std::vector<OutlineEntry> Children(const ReadPdf& pdf, int parent, std::span<const int> pages,
                                   std::string& error, int depth) {
  std::vector<OutlineEntry> entries;
  const std::string parentText = ObjectText(pdf, parent);
  int previous = 0;
  int last = 0;
  for (int item = ReferenceAfter(parentText, "/First"); item != 0 && depth < 8;
       item = ReferenceAfter(ObjectText(pdf, item), "/Next")) {
    const std::string text = ObjectText(pdf, item);
    if (entries.size() > 1000) break;
    OutlineEntry entry;
    const std::size_t title = text.find("/Title ");
    if (title != std::string::npos) entry.title = TextStringValue(text, title + 7);
    const std::vector<int> dest = References(text, "/Dest [");
    for (std::size_t i = 0; !dest.empty() && i < pages.size(); ++i) {
      if (pages[i] == dest.front()) entry.page = static_cast<int>(i);
    }
    if (ReferenceAfter(text, "/Parent") != parent) error += "wrong /Parent; ";
    if (ReferenceAfter(text, "/Prev") != previous) error += "wrong /Prev; ";
    entry.children = Children(pdf, item, pages, error, depth + 1);
    entries.push_back(std::move(entry));
    previous = last = item;
  }
  if (ReferenceAfter(parentText, "/Last") != last) error += "wrong /Last; ";
  const std::size_t count = parentText.find("/Count ");
  const long expected = count == std::string::npos ? 0 : NumberAfter(parentText, count + 7);
  long open = 0;
  const std::function<void(const std::vector<OutlineEntry>&)> countOpen =
      [&](const std::vector<OutlineEntry>& list) {
        for (const OutlineEntry& e : list) {
          ++open;
          countOpen(e.children);
        }
      };
  countOpen(entries);
  if (expected != open) error += "wrong /Count; ";
  return entries;
}

}  // namespace

std::vector<OutlineEntry> ReadOutline(const ReadPdf& pdf, std::string& error) {
  const int root = ReferenceAfter(ObjectText(pdf, 1), "/Outlines");
  if (root == 0) {
    error = "no /Outlines in the catalog";
    return {};
  }
  std::vector<int> pages = References(ObjectText(pdf, 2), "/Kids [");
  return Children(pdf, root, pages, error, 0);
}

ReadPdf ReadStructure(const std::string& path) {
  ReadPdf pdf;
  pdf.bytes = sheafwork::testing::TempFolder::Read(path);
  const std::string& b = pdf.bytes;
  if (b.rfind("%PDF-1.", 0) != 0) {
    pdf.error = "no header";
    return pdf;
  }
  const std::size_t startxref = b.rfind("startxref\n");
  if (startxref == std::string::npos || b.find("%%EOF", startxref) == std::string::npos) {
    pdf.error = "no startxref or %%EOF at the end";
    return pdf;
  }
  const auto xref = static_cast<std::size_t>(NumberAfter(b, startxref + 10));
  if (b.compare(xref, 5, "xref\n") != 0) {
    pdf.error = "startxref does not point at the table";
    return pdf;
  }
  std::size_t at = xref + 5;
  if (b.compare(at, 2, "0 ") != 0) {
    pdf.error = "the table does not start at object 0";
    return pdf;
  }
  const long count = NumberAfter(b, at + 2);
  at = b.find('\n', at) + 1;
  for (long object = 0; object < count; ++object, at += 20) {
    const std::string entry = b.substr(at, 20);
    if (entry.size() != 20 || entry[19] != '\n' || entry[10] != ' ' || entry[16] != ' ') {
      pdf.error = "entry " + std::to_string(object) + " is not 20 bytes";
      return pdf;
    }
    if (object == 0) continue;
    if (entry[17] != 'n') {
      pdf.error = "object " + std::to_string(object) + " is not in use";
      return pdf;
    }
    const auto offset = static_cast<std::size_t>(std::strtoul(entry.c_str(), nullptr, 10));
    const std::string head = std::to_string(object) + " 0 obj";
    if (b.compare(offset, head.size(), head) != 0) {
      pdf.error = "object " + std::to_string(object) + " is not where the table says";
      return pdf;
    }
    pdf.offsets[static_cast<int>(object)] = offset;
  }
  if (b.compare(at, 8, "trailer\n") != 0 ||
      b.find("/Size " + std::to_string(count) + " ", at) == std::string::npos) {
    pdf.error = "no trailer of the table's size after it";
  }
  return pdf;
}

std::string ObjectText(const ReadPdf& pdf, int number) {
  const auto it = pdf.offsets.find(number);
  if (it == pdf.offsets.end()) return {};
  const std::size_t end = pdf.bytes.find("endobj", it->second);
  return pdf.bytes.substr(it->second, end - it->second);
}

std::vector<std::vector<int>> PageContents(const ReadPdf& pdf) {
  std::vector<std::vector<int>> pages;
  for (int page : References(ObjectText(pdf, 2), "/Kids [")) {
    pages.push_back(References(ObjectText(pdf, page), "/Contents ["));
  }
  return pages;
}

std::string InflatedStream(const ReadPdf& pdf, int number, std::string& error) {
  const std::string object = ObjectText(pdf, number);
  const std::size_t length = object.find("/Length ");
  const std::size_t start = object.find("stream\n");
  if (length == std::string::npos || start == std::string::npos ||
      object.find("/FlateDecode") == std::string::npos) {
    error = "object " + std::to_string(number) + " is not a deflated stream";
    return {};
  }
  const auto size = static_cast<std::size_t>(NumberAfter(object, length + 8));
  const std::string packed = object.substr(start + 7, size);
  if (object.compare(start + 7 + size, 10, "\nendstream") != 0) {
    error = "object " + std::to_string(number) + ": /Length does not end the stream";
    return {};
  }
  std::string out(packed.size() * 20 + 1024, '\0');
  for (;;) {
    uLongf outSize = static_cast<uLongf>(out.size());
    const int result = uncompress(reinterpret_cast<Bytef*>(out.data()), &outSize,
                                  reinterpret_cast<const Bytef*>(packed.data()),
                                  static_cast<uLong>(packed.size()));
    if (result == Z_BUF_ERROR) {
      out.resize(out.size() * 4);
      continue;
    }
    if (result != Z_OK) {
      error = "object " + std::to_string(number) + " does not inflate";
      return {};
    }
    out.resize(outSize);
    return out;
  }
}

bool HavePoppler() { return std::system("pdfinfo -v >/dev/null 2>&1") == 0; }

QImage RasterisePage(const std::string& path, int page, int dpi, const std::string& stem) {
  if (!HavePoppler()) return {};
  const std::string p = std::to_string(page);
  int status = 0;
  const std::string out =
      sheafwork::testing::RunCommand("pdftoppm -png -singlefile -r " + std::to_string(dpi) +
                                         " -f " + p + " -l " + p + " '" + path + "' '" + stem + "'",
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
