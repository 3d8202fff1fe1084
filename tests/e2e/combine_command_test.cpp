// `sheafwork plot --combine`: every sheet of the run also in one PDF, in
// plot order, each page its sheet's size and drawn as the sheet's own file.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "e2e/program.h"
#include "support/pdf_reading.h"

namespace sheafwork::e2e {
namespace {

namespace reading = embedded::pdf::testing;

using CombineCommand = ExampleListTest;

TEST_F(CombineCommand, GathersEverySheetPlottedInPlotOrderOrIsRefusedBeforeAnyPlot) {
  const std::string rdc = Plan("rez-de-chaussee.dxf");
  AddRow(rdc, " --layout 'Plan A3' --plot-file " + Quoted(Out("rdc-a3.pdf")));
  AddRow(Plan("sous-sol.dxf"));  // missing: no page
  AddRow(rdc, " --layout 'Plan A1' --plot-file " + Quoted(Out("rdc-a1.pdf")));
  AddRow(Plan("etage.dxf"),
         " --layout 'Toutes les présentations' --plot-file " + Quoted(Out("etage.pdf")));
  const std::string combined = Out("tout.pdf");

  // Refused, nothing plotted, when the file cannot be made or the host is
  // another.
  const ProgramRun help = Sheafwork("plot --help", folder_);
  EXPECT_NE(help.out.find("--combine"), std::string::npos) << help.out;
  const std::pair<std::string, std::string> refusals[] = {
      {"--combine " + Quoted(Out("absent/tout.pdf")),
       "impossible de créer le fichier PDF : " + Out("absent/tout.pdf")},
      {"--combine " + Quoted(out_), "impossible de créer le fichier PDF"},
      {"--host autre --combine " + Quoted(combined), "hôte embarqué"},
  };
  for (const auto& [args, said] : refusals) {
    SCOPED_TRACE(args);
    const ProgramRun run = RunList("plot", " " + args);
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find(said), std::string::npos) << run.err;
    EXPECT_TRUE(PlotOutput(Out("rdc-a3.pdf")).empty()) << "plotted anyway";
    EXPECT_FALSE(std::filesystem::exists(combined));
  }

  const ProgramRun run = RunList("plot", " --combine " + Quoted(combined));
  EXPECT_EQ(run.status, 1) << run.err;  // the missing drawing's row failed
  EXPECT_NE(run.err.find("PDF combiné : " + combined + " (5 page(s))"), std::string::npos)
      << run.err;

  ExpectPages(combined, {{420, 297}, {841, 594}, {420, 297}, {420, 297}, {210, 297}});
  // Each page is drawn as the sheet's own file, also after a change of size.
  const std::vector<std::pair<int, std::string>> same = {
      {1, Out("rdc-a3.pdf")},
      {2, Out("rdc-a1.pdf")},
      {5, PlotOutput(Out("etage-Détail salle de bains"))},
  };
  for (const auto& [page, single] : same) {
    SCOPED_TRACE("page " + std::to_string(page) + " against " + single);
    reading::ExpectSamePicture(reading::RasterisePage(combined, page, 10, folder_.File("tout")),
                               reading::RasterisePage(single, 1, 10, folder_.File("seule")));
  }

  // The outline: each drawing where its first sheet is, its sheets under it
  // by layout, the drawing's rows apart in the list or not.
  std::string error;
  const std::vector<reading::OutlineEntry> outline =
      reading::ReadOutline(embedded::pdf::ReadPdfPart(combined), error);
  EXPECT_EQ(error, "");
  std::vector<std::string> entries;  // "title @page", sheets indented
  for (const auto& drawing : outline) {
    entries.push_back(drawing.title + " @" + std::to_string(drawing.page));
    for (const auto& sheet : drawing.children) {
      entries.push_back("  " + sheet.title + " @" + std::to_string(sheet.page));
    }
  }
  EXPECT_EQ(entries, (std::vector<std::string>{
                         "rez-de-chaussee.dxf @0", "  Plan A3 @0", "  Plan A1 @1", "etage.dxf @2",
                         "  Plan étage @2", "  Détail chambres @3", "  Détail salle de bains @4"}));
}

}  // namespace
}  // namespace sheafwork::e2e
