// A book of sheets takes sheets painted into it and sheets written to a
// one-page file first and added from there; a file that cannot be added is
// named and the book goes on.

#include "embedded/render/pdf_book.h"

#include <gtest/gtest.h>

#include "embedded/model/referenced_files.h"
#include "embedded/render/render_test_support.h"
#include "fakes/temp_folder.h"
#include "support/pdf_reading.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::TempFolder;
namespace pdft = pdf::testing;

Drawing Read(const std::string& name) {
  Drawing d = testing::ReadTestDrawing("dxf/pdf-parts/" + name);
  ResolveImageFiles(d, "");
  return d;
}

// The model of `drawing`, filed as `name`, on a `width` × `height` sheet.
PlotJob ModelJob(const Drawing& drawing, const std::string& name, double width, double height) {
  PlotJob job = testing::MakeJob(drawing, testing::ModelOf(drawing),
                                 testing::OneToOneSettings(width, height));
  job.drawingName = name;
  job.layoutName = "Objet";
  return job;
}

TEST(PdfBookTest, ASheetFileThatCannotBeAddedIsNamedAndTheBookGoesOn) {
  TempFolder folder;
  const Drawing plan = Read("plan.dxf");
  const Drawing coupe = Read("coupe.dxf");
  const std::string part = folder.File("feuille.pdf");
  {
    PdfBook sheet(part);
    sheet.AddPage(ModelJob(plan, "plan.dxf", 150, 100));
    sheet.Close();
  }
  const std::string whole = TempFolder::Read(part);
  const std::vector<std::pair<std::string, std::string>> bad = {
      {folder.File("absent.pdf"), "impossible de lire le fichier PDF : "},
      {folder.Write("tronque.pdf", whole.substr(0, whole.size() / 2)),
       "le fichier PDF est tronqué ou n'a pas été écrit par Sheafwork : "},
  };
  const std::string path = folder.File("livre.pdf");
  {
    PdfBook book(path);
    book.AddPage(ModelJob(coupe, "coupe.dxf", 100, 60));
    for (const auto& [file, message] : bad) {
      try {
        book.AddSheetFrom(file, "plan.dxf", "plan.dxf", "Objet");
        ADD_FAILURE() << "added " << file;
      } catch (const PlotError& e) {
        EXPECT_EQ(std::string(e.what()).find(message + file), 0u) << e.what();
      }
    }
    EXPECT_EQ(book.Pages(), 1);
    book.AddSheetFrom(part, plan.path, "plan.dxf", "Objet");
    EXPECT_EQ(book.Pages(), 2);
    book.Close();
  }
  std::string error;
  EXPECT_EQ(pdft::Flat(pdft::ReadOutline(pdf::ReadPdfPart(path), error)),
            (std::vector<std::string>{"0 coupe.dxf 0", "1 Objet 0", "0 plan.dxf 1", "1 Objet 1"}));
  EXPECT_EQ(error, "");
}

}  // namespace
}  // namespace sheafwork::embedded
