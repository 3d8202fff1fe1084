// The PDF writer: content streams as written, the standard
// font's widths, values read back from a file of ours with their object
// references renumbered for another document and the values around them
// left as they are (tables in tests/data/pdf), and whole documents.

#include "embedded/pdf/content_stream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <numeric>
#include <string>
#include <vector>

#include "embedded/pdf/document.h"
#include "embedded/pdf/helvetica_widths.h"
#include "embedded/pdf/pdf_syntax.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "support/pdf_reading.h"
#include "text/decimal.h"

namespace sheafwork::embedded::pdf {
namespace {

using sheafwork::testing::ReadTestTable;
using sheafwork::testing::TempFolder;

TEST(ContentStreamTest, ChunksEndAtLineEndsAndTogetherAreTheWholeText) {
  std::vector<std::string> chunks;
  ContentStream content([&](std::string chunk) { chunks.push_back(std::move(chunk)); }, 50);
  std::string expected;
  for (int i = 0; i < 40; ++i) {
    content.Int(i).Int(-i * 1000).Op("m");
    content.Real(i / 3.0, 2).Op("w");
    expected += std::to_string(i) + " " + std::to_string(-i * 1000) + " m\n";
    std::string w;
    AppendDecimal(w, i / 3.0, 2);
    expected += w + " w\n";
  }
  content.Finish();
  ASSERT_GT(chunks.size(), 5u);
  EXPECT_EQ(content.Chunks(), chunks.size());
  std::string joined;
  for (const std::string& chunk : chunks) {
    EXPECT_EQ(chunk.back(), '\n');
    EXPECT_LT(chunk.size(), 50u + 20u);  // cut at the first line end past the size
    joined += chunk;
  }
  EXPECT_EQ(joined, expected);
  EXPECT_EQ(content.Bytes(), expected.size());
}

TEST(HelveticaWidthsTest, CountTheCharactersOfTheCodePage) {
  EXPECT_DOUBLE_EQ(HelveticaWidth(""), 0);
  EXPECT_DOUBLE_EQ(HelveticaWidth("ii"), 2 * HelveticaWidth("i"));
  EXPECT_GT(HelveticaWidth("W"), HelveticaWidth("i"));
  // Accented letters are as wide as their base letter.
  EXPECT_DOUBLE_EQ(HelveticaWidth("\xE9"), HelveticaWidth("e"));  // é
  EXPECT_DOUBLE_EQ(HelveticaWidth("\xC9"), HelveticaWidth("E"));  // É
  EXPECT_DOUBLE_EQ(HelveticaWidth("\n"), 0);
}

TEST(PdfImportTest, ReferencesAreRenumberedWhereverTheyAreAndNowhereElse) {
  std::vector<int> renumbered(20);
  std::iota(renumbered.begin(), renumbered.end(), 100);
  for (const auto& row : ReadTestTable("pdf/renumbering.txt")) {
    SCOPED_TRACE(row.where);
    const std::string& text = row[0];
    PdfParser parser(text, 0);
    PdfValue value;
    ASSERT_TRUE(parser.Value(value));
    EXPECT_EQ(parser.Position(), text.size());
    EXPECT_EQ(RenumberReferences(text, parser.References(), renumbered), row[1]);
  }
  for (const auto& row : ReadTestTable("pdf/bad-values.txt")) {
    SCOPED_TRACE(row.where);
    PdfParser parser(row[0], 0);
    PdfValue value;
    EXPECT_FALSE(parser.Value(value));
  }
}

namespace fs = std::filesystem;

// A page of `n` squares, in points, each in its own grey.
void DrawSquares(ContentStream& page, int n) {
  for (int i = 0; i < n; ++i) {
    page.Real((i % 10) / 10.0, 2).Op("g");
    page.Int(20 + 25 * (i % 20)).Int(20 + 25 * (i / 20)).Int(20).Int(20).Op("re");
    page.Op("f");
  }
}

// The outline as the reader shows it: entries and their children in order,
// titles in any script and with the characters a PDF string escapes, each
// opening its page; a document without one has
// no /Outlines.
TEST(PdfDocumentTest, TheOutlineIsATreeOfTitledEntriesOpeningPages) {
  TempFolder folder;
  const std::string path = folder.File("livre.pdf");
  const std::vector<OutlineItem> outline = {
      {"rez-de-chaussee.dxf", 0, {{"Plan (A3) \\ 1", 0, {}}, {"Plan A1", 2, {}}}},
      {"étage (1).dxf", 1, {{"Détail Ω ⌀ 😀", 1, {}}}},
      {"sans page", 9, {}},
  };
  {
    Document document(path, {});
    for (int i = 0; i < 3; ++i) DrawSquares(document.BeginPage(595, 842), 1);
    document.SetOutline(outline);
    document.Close();
  }
  const PdfPart pdf = ReadPdfPart(path);
  std::string error;
  // What was given, the entry without a page opening none.
  EXPECT_EQ(
      testing::Flat(testing::ReadOutline(pdf, error)),
      (std::vector<std::string>{"0 rez-de-chaussee.dxf 0", "1 Plan (A3) \\ 1 0", "1 Plan A1 2",
                                "0 étage (1).dxf 1", "1 Détail Ω ⌀ 😀 1", "0 sans page -1"}));
  EXPECT_EQ(error, "");
  EXPECT_TRUE(testing::CatalogOf(pdf).NameIs("PageMode", "UseOutlines"));

  const std::string plain = folder.File("simple.pdf");
  {
    Document document(plain, {});
    DrawSquares(document.BeginPage(595, 842), 1);
    document.Close();
  }
  EXPECT_EQ(testing::CatalogOf(ReadPdfPart(plain)).Find("Outlines"), nullptr);
}

TEST(PdfDocumentTest, APageInManyStreamsReadsAsTheSamePage) {
  TempFolder folder;
  const auto write = [&](const std::string& name, std::size_t chunkBytes) {
    const std::string path = folder.File(name);
    WriterOptions options;
    options.chunkBytes = chunkBytes;
    options.queuedChunks = 1;
    Document document(path, {}, options);
    DrawSquares(document.BeginPage(600, 300), 200);
    document.Close();
    return path;
  };
  const std::string whole = write("entier.pdf", std::size_t{1} << 20);
  const std::string chunked = write("morceaux.pdf", 256);

  std::string contents[2];
  std::size_t streams[2] = {0, 0};
  int k = 0;
  for (const std::string& path : {whole, chunked}) {
    const PdfPart pdf = ReadPdfPart(path);
    ASSERT_EQ(pdf.pages.size(), 1u);
    const PdfValue page = testing::ObjectOf(pdf, pdf.pages[0].object);
    const PdfValue* streamsOfPage = page.Find("Contents");
    ASSERT_NE(streamsOfPage, nullptr);
    streams[k] = streamsOfPage->items.size();
    for (const PdfValue& object : streamsOfPage->items) {
      std::string stream;
      testing::ObjectOf(pdf, static_cast<int>(object.number), &stream);
      contents[k] += stream;
    }
    ++k;
  }
  EXPECT_EQ(streams[0], 1u);
  EXPECT_GT(streams[1], 10u);
  EXPECT_EQ(contents[0], contents[1]);
  EXPECT_NE(contents[0].find(" re\n"), std::string::npos);

  if (!testing::HavePoppler()) GTEST_SKIP() << "poppler's tools are not installed";
  const QImage a = testing::RasterisePage(whole, 1, 30, folder.File("a"));
  ASSERT_FALSE(a.isNull());
  EXPECT_TRUE(a == testing::RasterisePage(chunked, 1, 30, folder.File("b")));
}

TEST(PdfDocumentTest, AFileAlreadyThereIsReplacedOnlyWhenCloseSucceeds) {
  TempFolder folder;
  const std::string path = folder.Write("plan.pdf", "ancien");
  {
    Document abandoned(path, {});
    DrawSquares(abandoned.BeginPage(100, 100), 5);
  }  // never closed
  EXPECT_EQ(sheafwork::testing::TempFolder::Read(path), "ancien");
  EXPECT_EQ(TempFolder::Names(folder.path()), std::vector<std::string>{"plan.pdf"});
  {
    Document document(path, {});
    DrawSquares(document.BeginPage(100, 100), 5);
    document.Close();
  }
  EXPECT_NO_THROW(ReadPdfPart(path));
  EXPECT_EQ(TempFolder::Names(folder.path()), std::vector<std::string>{"plan.pdf"});

  // The target turns into a folder before the file can take its place.
  const std::string blocked = folder.File("bloque.pdf");
  {
    Document document(blocked, {});
    DrawSquares(document.BeginPage(100, 100), 5);
    fs::create_directories(fs::path(blocked) / "occupe");
    try {
      document.Close();
      ADD_FAILURE() << "no FileError";
    } catch (const FileError& e) {
      EXPECT_EQ(e.WhichStage(), FileError::Stage::Write);
      EXPECT_EQ(std::string(e.what()), blocked);
    }
  }
  EXPECT_TRUE(fs::is_directory(blocked));
  EXPECT_EQ(TempFolder::Names(folder.path()).size(), 2u) << "a temporary file was left";

  EXPECT_THAT([&] { Document nowhere(folder.File("absent/plan.pdf"), {}); },
              ::testing::Throws<FileError>(
                  ::testing::Property(&FileError::WhichStage, FileError::Stage::Create)));
  EXPECT_THROW(Document(folder.path().string(), {}), FileError);  // a folder
}

}  // namespace
}  // namespace sheafwork::embedded::pdf
