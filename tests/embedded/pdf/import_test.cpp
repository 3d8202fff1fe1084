// Pages of a file our writer made, added to another document: they look as
// if painted there, keep their own fonts and images, share the document's
// layers by name, and a file of any other kind is refused whole.

#include <gtest/gtest.h>

#include <cctype>
#include <chrono>
#include <fstream>
#include <functional>
#include <map>
#include <set>

#include "embedded/pdf/document.h"
#include "embedded/pdf/pdf_reading.h"
#include "embedded/pdf/pdf_strings.h"
#include "embedded/pdf/pdf_syntax.h"
#include "fakes/cups_queue.h"
#include "fakes/temp_folder.h"

namespace sheafwork::embedded::pdf {
namespace {

using sheafwork::testing::TempFolder;

const std::string kData = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/pdf";

// A sheet as our plot engine paints one: squares on layers, an image, text.
struct Sheet {
  double width = 0;
  double height = 0;
  std::vector<std::string> layers;
  std::string text;  ///< none when empty
  int shade = -1;    ///< the image's first grey; no image when negative
};

const std::vector<Sheet> kSheets = {
    {300, 200, {"Murs", "Cotes (façade) \\ 3 0 R"}, "Séjour Ω (2 0 R)", 40},
    {200, 300, {"Cotes (façade) \\ 3 0 R", "Toit"}, "Coupe ⌀ 25", 120},
    {250, 250, {"Murs"}, "", -1},
};

void Paint(Document& document, const Sheet& sheet) {
  std::string image;
  if (sheet.shade >= 0) {
    std::string samples;
    for (int i = 0; i < 16; ++i) samples += static_cast<char>(sheet.shade + 8 * i);
    image = document.AddImage(std::to_string(sheet.shade), 4, 4, 1, samples, false);
  }
  ContentStream& page = document.BeginPage(sheet.width, sheet.height);
  for (std::size_t i = 0; i < sheet.layers.size(); ++i) {
    page.Token("/OC").Token(document.Layers().Resource(sheet.layers[i])).Op("BDC");
    page.Real(0.3 * static_cast<double>(i), 2).Op("g");
    page.Int(10 + 40 * static_cast<int>(i)).Int(10).Int(30).Int(30).Op("re");
    page.Op("f");
    page.Op("EMC");
  }
  if (!image.empty()) {
    page.Op("q");
    page.Int(60).Int(0).Int(0).Int(60).Int(100).Int(100).Op("cm");
    page.Token(image).Op("Do");
    page.Op("Q");
  }
  if (!sheet.text.empty()) {
    TextFonts::Line line;
    document.Fonts().Encode(sheet.text, line);
    page.Op("BT");
    page.Int(10).Int(60).Op("Td");
    for (const TextFonts::Piece& piece : line.pieces) {
      page.Token(TextFonts::Resource(piece.font)).Int(14).Op("Tf");
      page.Token(LiteralString(piece.bytes)).Op("Tj");
    }
    page.Op("ET");
  }
  document.EndPage();
}

std::string WritePart(const TempFolder& folder, const std::string& name, const Sheet& sheet) {
  const std::string path = folder.File(name);
  Document part(path, {});
  Paint(part, sheet);
  part.Close();
  return path;
}

std::vector<int> References(const std::string& text) {
  std::vector<int> objects;
  for (std::size_t at = text.find(" 0 R"); at != std::string::npos;
       at = text.find(" 0 R", at + 1)) {
    std::size_t start = at;
    while (start > 0 && std::isdigit(static_cast<unsigned char>(text[start - 1]))) --start;
    if (start < at) objects.push_back(std::stoi(text.substr(start, at - start)));
  }
  return objects;
}

// The text between `key` and the ">>" or "]" that ends its value.
std::string Entry(const std::string& text, const std::string& key, const char* end) {
  const std::size_t at = text.find(key);
  if (at == std::string::npos) return {};
  return text.substr(at, text.find(end, at) - at);
}

// What a reader sees of a document's layers: each group's name, and for
// each page the groups its resources name.
struct LayerView {
  std::vector<std::string> groups;
  std::vector<std::set<std::string>> pages;
};

LayerView Layers(const testing::ReadPdf& pdf) {
  LayerView view;
  std::map<int, std::string> names;
  for (int group : References(Entry(testing::ObjectText(pdf, 1), "/OCGs [", "]"))) {
    const std::string text = testing::ObjectText(pdf, group);
    const std::size_t at = text.find("/Name ") + 6;
    const std::size_t end = at < text.size() && text[at] == '(' ? text.rfind(')')
                            : at < text.size()                  ? text.find('>', at)
                                                                : std::string::npos;
    EXPECT_NE(end, std::string::npos) << text;
    const std::string string = end != std::string::npos ? text.substr(at, end + 1 - at) : "";
    PdfParser parser(string, 0);
    PdfValue value;
    EXPECT_TRUE(parser.Value(value));
    names[group] = TextStringToUtf8(value.text);
    view.groups.push_back(names[group]);
  }
  for (int object = 1; pdf.offsets.contains(object); ++object) {
    const std::string text = testing::ObjectText(pdf, object);
    const std::size_t type = text.find("/Type /Page ");
    const std::size_t at = text.find("/Resources ", type == std::string::npos ? 0 : type);
    if (type == std::string::npos || at == std::string::npos) continue;
    const std::vector<int> resourceObjects = References(text.substr(at));
    if (resourceObjects.empty()) continue;
    std::set<std::string> used;
    const std::string resources = testing::ObjectText(pdf, resourceObjects.front());
    for (int group : References(Entry(resources, "/Properties <<", ">>"))) {
      EXPECT_TRUE(names.contains(group)) << "a page names a group the catalog lacks";
      used.insert(names[group]);
    }
    view.pages.push_back(used);
  }
  return view;
}

// Pages painted in one document and the same pages imported, alone or
// among painted ones: the same file as poppler sees it, one group per layer
// name, each page naming the groups of its own layers.
TEST(PdfImportTest, ImportedPagesLookAsPaintedAndShareTheLayersByName) {
  TempFolder folder;
  std::vector<std::string> parts;
  for (std::size_t i = 0; i < kSheets.size(); ++i) {
    parts.push_back(WritePart(folder, "part" + std::to_string(i) + ".pdf", kSheets[i]));
  }
  const auto write = [&](const std::string& name, const std::function<void(Document&)>& fill) {
    const std::string path = folder.File(name);
    Document document(path, {});
    fill(document);
    document.Close();
    return path;
  };
  const std::string painted = write("painted.pdf", [](Document& d) {
    for (const Sheet& sheet : kSheets) Paint(d, sheet);
  });
  const std::string imported = write("imported.pdf", [&](Document& d) {
    for (const std::string& part : parts) EXPECT_EQ(d.ImportPages(part), 1);
  });
  const std::string mixed = write("mixed.pdf", [&](Document& d) {
    Paint(d, kSheets[0]);
    EXPECT_EQ(d.ImportPages(parts[1]), 1);
    Paint(d, kSheets[2]);
    EXPECT_EQ(d.Pages(), 3);
  });

  const std::vector<std::string> names = {"Murs", "Cotes (façade) \\ 3 0 R", "Toit"};
  const std::vector<std::set<std::string>> used = {{names[0], names[1]}, {names[1], names[2]}};
  for (const std::string& path : {painted, imported, mixed}) {
    SCOPED_TRACE(path);
    const testing::ReadPdf pdf = testing::ReadStructure(path);
    ASSERT_EQ(pdf.error, "");
    const LayerView layers = Layers(pdf);
    EXPECT_EQ(layers.groups, names);
    ASSERT_EQ(layers.pages.size(), 3u);
    if (path == painted) continue;  // one resources object for every page
    EXPECT_EQ(layers.pages[1], used[1]);
    if (path == imported) {
      EXPECT_EQ(layers.pages[0], used[0]);
    }
  }

  if (!testing::HavePoppler()) GTEST_SKIP() << "poppler's tools are not installed";
  const auto sizes = sheafwork::testing::PdfPageSizes(painted);
  ASSERT_EQ(sizes.size(), kSheets.size());
  for (const std::string& path : {imported, mixed}) {
    EXPECT_EQ(sheafwork::testing::PdfPageSizes(path), sizes);
  }
  const std::map<std::string, std::string> stems = {{painted, "p"}, {imported, "i"}, {mixed, "m"}};
  for (const auto& [path, stem] : stems) {
    testing::ExpectPopplerRenders(path, "-r 20 -gray", folder.File(stem));
  }
  for (std::size_t page = 1; page <= kSheets.size(); ++page) {
    SCOPED_TRACE(page);
    const std::string expected =
        TempFolder::Read(folder.File("p-" + std::to_string(page) + ".pgm"));
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(TempFolder::Read(folder.File("i-" + std::to_string(page) + ".pgm")), expected);
    EXPECT_EQ(TempFolder::Read(folder.File("m-" + std::to_string(page) + ".pgm")), expected);
  }
}

// A file that cannot be read, is cut short or is not of our writer is
// refused before anything is added: the document goes on and closes whole.
TEST(PdfImportTest, FilesNotOfOurWriterAreRefusedAndTheDocumentGoesOn) {
  TempFolder folder;
  const std::string good = WritePart(folder, "bon.pdf", kSheets[0]);
  const std::string bytes = TempFolder::Read(good);
  const std::size_t table = bytes.rfind("\nxref\n") + 1;
  struct Bad {
    std::string name;
    std::string path;
    FileError::Stage stage;
  };
  std::vector<Bad> bad = {
      {"absent", folder.File("absent.pdf"), FileError::Stage::Read},
      {"folder", folder.path().string(), FileError::Stage::Read},
      {"other program", kData + "/other-program.pdf", FileError::Stage::Format},
      {"nested pages", kData + "/nested-pages.pdf", FileError::Stage::Format},
      {"not a PDF", kData + "/not-a-pdf.pdf", FileError::Stage::Format},
  };
  const std::vector<std::pair<std::string, std::string>> damaged = {
      {"empty", ""},
      {"header only", bytes.substr(0, 15)},
      {"cut in the objects", bytes.substr(0, table / 2)},
      {"cut in the table", bytes.substr(0, table + 40)},
      {"last byte missing", bytes.substr(0, bytes.size() - 1)},
      {"table elsewhere",
       bytes.substr(0, bytes.rfind("startxref\n") + 10) + std::to_string(table + 1) + "\n%%EOF\n"},
  };
  for (const auto& [name, content] : damaged) {
    bad.push_back({name, folder.Write(name + ".pdf", content), FileError::Stage::Format});
  }

  const std::string path = folder.File("livre.pdf");
  Document document(path, {});
  Paint(document, kSheets[2]);
  for (const Bad& part : bad) {
    SCOPED_TRACE(part.name);
    try {
      document.ImportPages(part.path);
      ADD_FAILURE() << "imported";
    } catch (const FileError& e) {
      EXPECT_EQ(e.WhichStage(), part.stage);
      EXPECT_EQ(std::string(e.what()), part.path);
    }
  }
  EXPECT_EQ(document.Pages(), 1);
  EXPECT_EQ(document.ImportPages(good), 1);
  document.Close();
  const testing::ReadPdf pdf = testing::ReadStructure(path);
  ASSERT_EQ(pdf.error, "");
  EXPECT_EQ(testing::PageContents(pdf).size(), 2u);
  if (!testing::HavePoppler()) GTEST_SKIP() << "poppler's tools are not installed";
  testing::ExpectPopplerRenders(path, "-r 10 -gray", folder.File("p"));
}

std::vector<std::string> Lines(const std::string& file) {
  std::ifstream in(kData + "/" + file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line[0] != '#') lines.push_back(line);
  }
  EXPECT_FALSE(lines.empty()) << file;
  return lines;
}

TEST(PdfImportTest, ReferencesAreRenumberedWhereverTheyAreAndNowhereElse) {
  std::vector<int> renumbered(20);
  for (int i = 0; i < 20; ++i) renumbered[static_cast<std::size_t>(i)] = i + 100;
  for (const std::string& line : Lines("renumbering.txt")) {
    SCOPED_TRACE(line);
    const std::size_t arrow = line.find(" => ");
    ASSERT_NE(arrow, std::string::npos);
    const std::string text = line.substr(0, arrow);
    PdfParser parser(text, 0);
    PdfValue value;
    ASSERT_TRUE(parser.Value(value));
    EXPECT_EQ(parser.Position(), text.size());
    EXPECT_EQ(RenumberReferences(text, parser.References(), renumbered), line.substr(arrow + 4));
  }
  for (const std::string& line : Lines("bad-values.txt")) {
    SCOPED_TRACE(line);
    PdfParser parser(line, 0);
    PdfValue value;
    EXPECT_FALSE(parser.Value(value));
  }
}

// Reading a part is linear: a page in ten thousand content streams is
// imported in milliseconds.
TEST(PdfImportTest, APartOfManyObjectsImportsQuickly) {
  TempFolder folder;
  const std::string part = folder.File("morceaux.pdf");
  {
    WriterOptions options;
    options.chunkBytes = 8;  // a stream per line
    Document document(part, {}, options);
    ContentStream& page = document.BeginPage(600, 600);
    for (int i = 0; i < 10000; ++i) page.Int(i % 500).Int(i / 20).Int(2).Int(2).Op("re");
    page.Op("f");
    document.Close();
  }
  const std::string path = folder.File("livre.pdf");
  Document document(path, {});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(document.ImportPages(part), 1);
  const auto took = std::chrono::steady_clock::now() - start;
  document.Close();
  const testing::ReadPdf pdf = testing::ReadStructure(path);
  ASSERT_EQ(pdf.error, "");
  const auto contents = testing::PageContents(pdf);
  ASSERT_EQ(contents.size(), 1u);
  EXPECT_GE(contents[0].size(), 10000u);
  // About 15 ms here: a step that looks through every object for each one
  // would take far longer.
#if defined(__SANITIZE_ADDRESS__)
  constexpr int kMilliseconds = 800;
#else
  constexpr int kMilliseconds = 200;
#endif
  EXPECT_LT(std::chrono::duration_cast<std::chrono::milliseconds>(took).count(), kMilliseconds);
}

}  // namespace
}  // namespace sheafwork::embedded::pdf
