// Feeds arbitrary bytes to the reader of our own PDF files, whose pages a
// document imports. The only way out besides a part is a FileError
// (Format). A part that is read holds together: every object's text lies in
// the file, every reference found lies in its object's text and reads there
// as a reference to the object it names, which the part has, and its pages
// are among the objects it copies.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>

#include "embedded/pdf/document.h"
#include "embedded/pdf/part_reader.h"

namespace {

namespace pdf = sheafwork::embedded::pdf;

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "pdf_part_fuzzer: %s\n", what);
  std::abort();
}

void Check(const pdf::PdfPart& part) {
  std::set<int> copied;
  for (const pdf::PdfPart::Object& object : part.objects) {
    if (object.begin > object.end || object.end > part.bytes.size())
      Fail("an object beyond the file");
    if (object.number < 1 || object.number >= part.objectCount) Fail("an object out of range");
    if (!copied.insert(object.number).second) Fail("an object copied twice");
    const std::string_view text = part.Text(object);
    for (const pdf::ReferenceSpan& span : object.references) {
      if (span.begin >= span.end || span.end > text.size()) Fail("a reference beyond its object");
      if (span.object < 1 || span.object >= part.objectCount) Fail("a reference to no object");
      pdf::PdfParser parser(text, span.begin);
      pdf::PdfValue value;
      if (!parser.Value(value) || value.kind != pdf::PdfValue::Kind::Reference ||
          value.number != span.object || parser.Position() != span.end) {
        Fail("a reference that does not read as one");
      }
    }
  }
  for (const pdf::PdfPart::Page& page : part.pages) {
    if (!copied.contains(page.object)) Fail("a page not copied");
    if (!(page.width > 0 && page.height > 0)) Fail("a page without a size");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    Check(
        pdf::ReadPdfPartBytes(std::string(reinterpret_cast<const char*>(data), size), "fuzz.pdf"));
  } catch (const pdf::FileError& error) {
    if (error.WhichStage() != pdf::FileError::Stage::Format) Fail("an error of another stage");
  }
  return 0;
}
