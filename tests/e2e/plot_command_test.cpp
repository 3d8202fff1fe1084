// `sheafwork plot` on the example drawings: a list built with `sheafwork
// list`, plotted by the embedded host to PDF files, with its journal and
// error log; to a system printer (a CUPS queue that writes to a file); DWG
// drawings through the converter the build put beside the program; every
// sheet also in one PDF with `--combine`.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <QImageReader>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "e2e/program.h"
#include "fakes/cups_queue.h"
#include "fakes/log_lines.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "support/pdf_reading.h"

namespace sheafwork::e2e {
namespace {

namespace fs = std::filesystem;
namespace reading = embedded::pdf::testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::StartsWith;

class PlotCommand : public ExampleListTest {
 protected:
  void SetLogs() { SetLogs(journal_, errors_); }
  void SetLogs(const std::string& journal, const std::string& errors) {
    List("set " + Quoted(list_) + " --journal on --journal-file " + Quoted(journal) +
         " --journal-mode overwrite --error-log on --error-file " + Quoted(errors) +
         " --error-mode overwrite");
  }

  // The journal lines of plotted rows: those that name a drawing of ours.
  std::vector<std::string> PlottedRows() const {
    std::vector<std::string> rows;
    for (const auto& line : testing::ReadLogLines(journal_)) {
      if (line.find(".dxf, ") != std::string::npos) rows.push_back(line);
    }
    return rows;
  }

  std::string journal_ = folder_.File("journal.log");
  std::string errors_ = folder_.File("erreurs.log");
};

TEST_F(PlotCommand, PlotsEveryLayoutOfAGoodListToItsSheet) {
  const std::string rdc = Plan("rez-de-chaussee.dxf");
  // A new list's row keeps every default: the layout active when the
  // drawing was saved ("Plan A3"), its own device, its own output file.
  List("new " + Quoted(list_) + " " + Quoted(rdc));
  AddRow(rdc, " --layout 'Plan A3' --device PDF.pc3 --plot-file " + Quoted(Out("rdc-a3.pdf")));
  // A named page setup of the drawing turns the A1 layout into an A3 sheet.
  AddRow(rdc,
         " --layout 'Plan A1' --setup 'A3 paysage' --plot-file " + Quoted(Out("rdc-a1-en-a3.pdf")));
  AddRow(rdc, " --layout 'Plan A1' --plot-file " + Quoted(Out("rdc-a1.pdf")));
  AddRow(Plan("etage.dxf"),
         " --layout 'Toutes les présentations' --plot-file " + Quoted(Out("etage.pdf")));
  // A page setup taken from another drawing.
  AddRow(Plan("facades.dxf"), " --layout 'Façade sud' --setup " + Quoted(rdc + "|A1 paysage") +
                                  " --plot-file " + Quoted(Out("sud-a1.pdf")));
  // Image, drawing and plotter devices write beside the drawing too.
  for (const char* device : {"PNG.pc3", "SVG.pc3", "HPGL2.pc3"}) {
    AddRow(rdc, std::string(" --layout 'Plan A3' --device ") + device);
  }
  SetLogs();

  const ProgramRun run = RunList("plot");
  EXPECT_EQ(run.status, 0) << run.err;

  // Without a plot file the device writes beside the drawing.
  std::vector<std::string> beside;
  for (const auto& entry : fs::directory_iterator(plans_)) {
    if (entry.path().extension() == ".pdf") beside.push_back(entry.path().string());
  }
  ASSERT_EQ(beside.size(), 1u);
  EXPECT_THAT(beside[0], HasSubstr("rez-de-chaussee"));
  ExpectPages(beside[0], {{420, 297}});

  // Each file named on its row; for all layouts, one file per paper layout
  // named after the drawing and the layout.
  const std::vector<std::pair<std::string, SheetSize>> plotted = {
      {"rdc-a3.pdf", {420, 297}},
      {"rdc-a1-en-a3.pdf", {420, 297}},
      {"rdc-a1.pdf", {841, 594}},
      {"sud-a1.pdf", {841, 594}},
      {"etage-Plan étage", {420, 297}},
      {"etage-Détail chambres", {420, 297}},
      {"etage-Détail salle de bains", {210, 297}},
  };
  for (const auto& [stem, sheet] : plotted) {
    SCOPED_TRACE(stem);
    ExpectPages(PlotOutput(Out(stem)), {sheet});
  }

  // One journal line per plotted row: drawing, folder, layout, page setup,
  // device, time; the row's own fields, an empty one left empty.
  const std::vector<std::string> rows = PlottedRows();
  ASSERT_EQ(rows.size(), 9u) << testing::TempFolder::Read(journal_);
  EXPECT_EQ(rows[0].rfind("rez-de-chaussee.dxf, " + plans_, 0), 0u) << rows[0];
  EXPECT_THAT(rows[0], HasSubstr("/, , , , "));
  EXPECT_THAT(rows[1], HasSubstr(", Plan A3, , PDF.pc3, "));
  EXPECT_THAT(rows[2], HasSubstr(", Plan A1, A3 paysage, "));
  EXPECT_EQ(rows[4].rfind("etage.dxf, ", 0), 0u) << rows[4];
  EXPECT_THAT(rows[4], HasSubstr(", " + LoadResourceText(ids::kLayoutAll) + ", "));

  // The A3 sheet, 420 x 297 mm, in each of those.
  const std::string stem = plans_ + "/rez-de-chaussee-Plan A3.";
  QImageReader png(QString::fromStdString(stem + "png"));
  EXPECT_EQ(png.format(), "png");
  EXPECT_EQ(png.size(), QSize(3307, 2339));  // 200 dots per inch

  const std::string svg = testing::TempFolder::Read(stem + "svg");
  EXPECT_THAT(svg, HasSubstr("width=\"420mm\" height=\"297mm\"")) << svg.substr(0, 200);
  EXPECT_THAT(svg, HasSubstr("<title>rez-de-chaussee.dxf - Plan A3</title>"));

  const std::string plt = testing::TempFolder::Read(stem + "plt");
  EXPECT_EQ(plt.rfind("IN;", 0), 0u) << plt.substr(0, 100);
  EXPECT_THAT(plt, HasSubstr("PS16800,11880;"));
  EXPECT_THAT(plt, HasSubstr("PD"));
  EXPECT_EQ(plt.substr(plt.size() - 3), "PG;");

  for (const auto& line : testing::ReadLogLines(errors_)) {
    EXPECT_EQ(line.find("ERREUR"), std::string::npos) << line;
  }
}

TEST_F(PlotCommand, AFailingRowIsLoggedAndTheRunGoesOn) {
  const std::string rdc = Plan("rez-de-chaussee.dxf");
  const std::string missing = Plan("sous-sol.dxf");
  List("new " + Quoted(list_) + " " + Quoted(missing));
  AddRow(rdc, " --layout 'Coupe BB' --plot-file " + Quoted(Out("coupe.pdf")));
  AddRow(Plan("ancien-r12.dxf"),
         " --layout 'Toutes les présentations' --device PDF.pc3 --plot-file " +
             Quoted(Out("ancien.pdf")));
  SetLogs();

  const ProgramRun run = RunList("plot");
  EXPECT_EQ(run.status, 1) << run.err;

  EXPECT_THAT(testing::ReadLogLines(errors_),
              IsSupersetOf({LoadResourceText(ids::kLayoutSetupFailed) + rdc,
                            LoadResourceText(ids::kPlotFailed) + rdc,
                            LoadResourceText(ids::kCannotOpenDrawing) + missing,
                            LoadResourceText(ids::kPlotFailed) + missing}));
  EXPECT_TRUE(PlotOutput(Out("coupe.pdf")).empty());

  // The release-12 drawing after the failures is still plotted: its one
  // paper space, made into a layout by the reader.
  const std::vector<std::string> rows = PlottedRows();
  ASSERT_EQ(rows.size(), 1u) << testing::TempFolder::Read(journal_);
  EXPECT_EQ(rows[0].rfind("ancien-r12.dxf, ", 0), 0u) << rows[0];
  const std::vector<std::string> pdfs = testing::TempFolder::Names(out_);
  ASSERT_THAT(pdfs, ElementsAre(StartsWith("ancien-")));
  EXPECT_EQ(testing::PdfPageSizes(Out(*pdfs.begin())).size(), 1u);
}

// Qt cannot start with a platform plugin that does not exist: a PDF plot
// must not need it, TrueType text and text in a shape font (here missing,
// drawn by the stroke font that stands in) both drawn and searchable.
TEST_F(PlotCommand, APdfPlotDoesNotStartQt) {
  AddRow(Plan("facades.dxf"),
         " --layout 'Façade nord' --device PDF.pc3 --plot-file " + Quoted(Out("nord.pdf")));
  AddRow(Plan("etage.dxf"),
         " --layout 'Plan étage' --device PDF.pc3 --plot-file " + Quoted(Out("etage.pdf")));
  AddRow(Plan("planche-essais.dxf"),
         " --layout 'Planche A3' --device PDF.pc3 --plot-file " + Quoted(Out("planche.pdf")));

  const ProgramRun run = RunList("plot", "", "QT_QPA_PLATFORM=introuvable");
  ASSERT_EQ(run.status, 0) << run.err;
  ExpectPages(PlotOutput(Out("nord.pdf")), {{420, 297}});
  for (const auto& [pdf, text] :
       {std::pair{"etage.pdf", "Salle de bains"}, {"planche.pdf", "Style ROMANS (romans.shx)"}}) {
    int status = -1;
    const std::string found =
        sheafwork::testing::RunCommand("pdftotext " + Quoted(Out(pdf)) + " -", status);
    EXPECT_EQ(status, 0);
    EXPECT_THAT(found, HasSubstr(text));
  }
}

// A log that cannot be written (a full device, a folder, a read-only folder)
// is named once on stderr with the system's reason, the run ends with status
// 1, and the summary names only the logs that hold the run.
TEST_F(PlotCommand, ALogThatCannotBeWrittenIsReportedAndNotNamedInTheSummary) {
  const std::string rdc = Plan("rez-de-chaussee.dxf");
  List("new " + Quoted(list_) + " " + Quoted(rdc));
  const std::string folderLog = folder_.File("un-dossier");
  fs::create_directories(folderLog);
  const std::string readOnly = folder_.File("lecture-seule");
  fs::create_directories(readOnly);
  fs::permissions(readOnly, fs::perms::owner_read | fs::perms::owner_exec);
  struct Case {
    std::string journal, errors;
    std::string problem;  ///< the one line expected on stderr
    bool journalNamed, errorsNamed;
  };
  const Case cases[] = {
      {"/dev/full", errors_,
       "/dev/full: " + LoadResourceText(ids::kJournalIncomplete) + std::strerror(ENOSPC), false,
       true},
      {journal_, folderLog,
       folderLog + ": " + LoadResourceText(ids::kErrorLogNotWritten) + std::strerror(EISDIR), true,
       false},
      {readOnly + "/journal.log", errors_,
       readOnly + "/journal.log: " + LoadResourceText(ids::kJournalNotWritten) +
           std::strerror(EACCES),
       false, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.problem);
    if (geteuid() == 0 && c.journal.rfind(readOnly, 0) == 0) continue;  // root writes anywhere
    SetLogs(c.journal, c.errors);
    const ProgramRun run = RunList("plot");
    EXPECT_EQ(run.status, 1) << run.err;
    const std::vector<std::string> lines = testing::SplitLines(run.err);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "sheafwork: " + c.problem), 1) << run.err;
    const std::string summary = lines.back();
    EXPECT_THAT(summary, HasSubstr("1 ligne(s) tracée(s), 0 en échec"));
    EXPECT_EQ(summary.find("journal : " + c.journal) != std::string::npos, c.journalNamed)
        << summary;
    EXPECT_EQ(summary.find("erreurs : " + c.errors) != std::string::npos, c.errorsNamed) << summary;
  }
  fs::permissions(readOnly, fs::perms::owner_all);
}

TEST_F(PlotCommand, ARowWhoseDeviceIsAQueuePrintsItsSheetThere) {
  SHEAFWORK_REQUIRE_CUPS();
  const std::string printed = folder_.File("imprime.pdf");
  testing::CupsQueue queue("sheafwork-e2e", printed);
  ASSERT_TRUE(queue.Error().empty()) << queue.Error();
  AddRow(Plan("rez-de-chaussee.dxf"), " --layout 'Plan A3' --device " + Quoted(queue.Name()));

  const ProgramRun run = RunList("plot");
  ASSERT_EQ(run.status, 0) << run.err;
  ASSERT_TRUE(queue.WaitUntilPrinted(std::chrono::seconds(60))) << queue.Error();

  // One copy of one A3 sheet; a printer may turn the page for the paper.
  const auto pages = testing::PdfPageSizes(printed);
  ASSERT_EQ(pages.size(), 1u);
  const auto [width, height] = pages.front();
  EXPECT_NEAR(std::max(width, height), Points(420), 1.5);
  EXPECT_NEAR(std::min(width, height), Points(297), 1.5);
  // Nothing was written beside the drawing: the sheet went to the printer.
  EXPECT_TRUE(PlotOutput(Plan("rez-de-chaussee-Plan A3")).empty());
}

// DWG drawings with no variable set, one conversion per drawing: R14 to 2018
// with every paper layout, two sheets each (the R14 drawing converts with two,
// where the CAD program's own export has one), and a truncated drawing that
// the converter cannot read, on its own layout so that the counting pass does
// not open it: no sheet. Names in tests/data/dwg/samples, without extension.
constexpr const char* kDrawings[] = {"example_r14",  "example_2000", "example_2004",
                                     "truncated",    "example_2007", "example_2010",
                                     "example_2013", "example_2018"};

TEST_F(PlotCommand, PlotsEveryLayoutOfDwgDrawingsOfEachRelease) {
  if (std::system("command -v node >/dev/null 2>&1") != 0) {
    GTEST_SKIP() << "Node.js (node) is not installed: DWG not tested";
  }
  for (const std::string name : kDrawings) {
    const std::string layout = name == "truncated" ? "Layout1" : "Toutes les présentations";
    AddRow(Fixture("dwg/samples/" + name + ".dwg"),
           " --layout '" + layout + "' --device PDF.pc3 --plot-file " + Quoted(Out(name + ".pdf")));
  }
  SetErrorLog(folder_.File("erreurs.log"));

  // The run's own temporary folder, to see that it leaves nothing there.
  const std::string temporary = folder_.File("tmp");
  fs::create_directories(temporary);
  const ProgramRun run = RunList("plot", "", "TMPDIR=" + Quoted(temporary));
  EXPECT_EQ(run.status, 1) << run.err;  // the truncated drawing's row
  // The converter's reason names the drawing on stderr.
  EXPECT_NE(run.err.find("LibreDWG ne sait pas lire ce dessin"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("truncated.dwg"), std::string::npos) << run.err;

  for (const std::string name : kDrawings) {
    SCOPED_TRACE(name);
    int sheets = 0;
    for (const std::string& file : testing::TempFolder::Names(out_)) {
      if (file.rfind(name, 0) != 0) continue;
      ++sheets;
      EXPECT_EQ(testing::PdfPageSizes(Out(file)).size(), 1u) << file;
    }
    EXPECT_EQ(sheets, name == "truncated" ? 0 : 2);
  }
  // Nothing of the conversions is left in the temporary folder.
  EXPECT_TRUE(fs::is_empty(temporary));
}

// `--combine`: every sheet of the run also in one PDF, in plot order, each
// page its sheet's size and drawn as the sheet's own file.
TEST_F(PlotCommand, GathersEverySheetPlottedInPlotOrderOrIsRefusedBeforeAnyPlot) {
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
    EXPECT_FALSE(fs::exists(combined));
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
