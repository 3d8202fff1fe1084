// A book of sheets takes sheets painted into it and sheets written to a
// one-page file first and added from there; a file that cannot be added is
// named and the book goes on.

#include "embedded/render/pdf_book.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "embedded/dxf/reader.h"
#include "embedded/model/referenced_files.h"
#include "embedded/render/render_test_support.h"
#include "fakes/temp_folder.h"
#include "support/pdf_reading.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::TempFolder;
namespace pdft = pdf::testing;

const std::string kDrawings = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/dxf/pdf-parts/";

struct Row {
  std::string drawing;
  std::string layout;  ///< empty: the model
  double width = 0;
  double height = 0;
};

const std::vector<Row> kRows = {
    {"plan.dxf", "", 150, 100},
    {"coupe.dxf", "", 100, 60},
};

class PdfBookTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const Row& row : kRows) {
      if (drawings_.contains(row.drawing)) continue;
      Drawing& drawing = drawings_[row.drawing] = ReadDxfFile(kDrawings + row.drawing);
      ResolveImageFiles(drawing, "");
    }
    for (const Row& row : kRows) {
      const Drawing& drawing = drawings_.at(row.drawing);
      const Layout* layout = nullptr;
      for (const Layout& l : drawing.layouts) {
        if (row.layout.empty() ? l.IsModel() : l.name == row.layout) layout = &l;
      }
      ASSERT_NE(layout, nullptr) << row.layout;
      PlotJob job =
          testing::MakeJob(drawing, *layout, testing::OneToOneSettings(row.width, row.height));
      job.drawingName = row.drawing;
      job.layoutName = row.layout.empty() ? "Objet" : row.layout;
      jobs_.push_back(job);
    }
  }

  // Sheet `i` as a one-page file of its own.
  std::string Part(std::size_t i) {
    const std::string path = folder_.File("feuille" + std::to_string(i) + ".pdf");
    PdfBook part(path);
    part.AddPage(jobs_[i]);
    part.Close();
    return path;
  }

  void AddFrom(PdfBook& book, std::size_t i) {
    const PlotJob& job = jobs_[i];
    book.AddSheetFrom(Part(i), job.drawing->path, job.drawingName, job.layoutName);
  }

  std::string Book(const std::string& name, const std::function<void(PdfBook&)>& fill) {
    const std::string path = folder_.File(name);
    PdfBook book(path);
    fill(book);
    book.Close();
    return path;
  }

  TempFolder folder_;
  std::map<std::string, Drawing> drawings_;
  std::vector<PlotJob> jobs_;
};

// The outline as lines "depth title page", in order.
std::vector<std::string> Flat(const std::vector<pdft::OutlineEntry>& entries, int depth = 0) {
  std::vector<std::string> lines;
  for (const pdft::OutlineEntry& entry : entries) {
    lines.push_back(std::to_string(depth) + " " + entry.title + " " + std::to_string(entry.page));
    for (std::string& line : Flat(entry.children, depth + 1)) lines.push_back(std::move(line));
  }
  return lines;
}

TEST_F(PdfBookTest, ASheetFileThatCannotBeAddedIsNamedAndTheBookGoesOn) {
  const std::string whole = TempFolder::Read(Part(0));
  const std::vector<std::pair<std::string, std::string>> bad = {
      {folder_.File("absent.pdf"), "impossible de lire le fichier PDF : "},
      {folder_.Write("tronque.pdf", whole.substr(0, whole.size() / 2)),
       "le fichier PDF est tronqué ou n'a pas été écrit par Sheafwork : "},
  };
  const std::string path = Book("livre.pdf", [&](PdfBook& book) {
    book.AddPage(jobs_[1]);
    for (const auto& [part, message] : bad) {
      try {
        book.AddSheetFrom(part, "plan.dxf", "plan.dxf", "Objet");
        ADD_FAILURE() << "added " << part;
      } catch (const PlotError& e) {
        EXPECT_EQ(std::string(e.what()).find(message + part), 0u) << e.what();
      }
    }
    EXPECT_EQ(book.Pages(), 1);
    AddFrom(book, 0);
    EXPECT_EQ(book.Pages(), 2);
  });
  const pdft::ReadPdf pdf = pdft::ReadStructure(path);
  ASSERT_EQ(pdf.error, "");
  std::string error;
  EXPECT_EQ(Flat(pdft::ReadOutline(pdf, error)),
            (std::vector<std::string>{"0 coupe.dxf 0", "1 Objet 0", "0 plan.dxf 1", "1 Objet 1"}));
}

}  // namespace
}  // namespace sheafwork::embedded
