// `sheafwork plot` on the example drawings: a list built with `sheafwork
// list`, plotted by the embedded host to PDF files, with its journal and
// error log.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <QImageReader>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "e2e/program.h"
#include "fakes/cups_queue.h"
#include "fakes/log_lines.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::e2e {
namespace {

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
  for (const auto& entry : std::filesystem::directory_iterator(plans_)) {
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
  const std::set<std::string> pdfs = FilesIn(out_);
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
  std::filesystem::create_directories(folderLog);
  const std::string readOnly = folder_.File("lecture-seule");
  std::filesystem::create_directories(readOnly);
  std::filesystem::permissions(
      readOnly, std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
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
  std::filesystem::permissions(readOnly, std::filesystem::perms::owner_all);
}

}  // namespace
}  // namespace sheafwork::e2e
