// The built program from the command line: which stream its words go to and
// the status it ends with; `sheafwork plot DRAWING...`, drawings plotted
// without a list, every sheet into one folder, with readable plot settings and
// a plot style table for the run; `sheafwork check` on the example drawings,
// every kind of problem the plot test looks for on its own row and nothing for
// a good row, beside what `sheafwork plot` says of the same rows; the program
// copied without its data, or without its Qt module, naming what is missing
// and, where it can, plotting what does not need it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "e2e/program.h"
#include "fakes/log_lines.h"
#include "platform/install_layout.h"
#include "plotcfg/plot_style_check.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "support/hpgl_reader.h"

namespace sheafwork::e2e {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;

TEST(ExitStatus, HelpAndVersionGoToStdoutWith0AndErrorsToStderrWith2) {
  testing::TempFolder folder;
  const ProgramRun help = Sheafwork("list add --help", folder);
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("--scale-lineweights"), std::string::npos);
  const ProgramRun version = Sheafwork("--version", folder);
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out.rfind("sheafwork ", 0), 0u);

  const std::string bad = folder.Write("bad.qx3", "not a list\r\n");
  const ProgramRun run = Sheafwork("list show " + Quoted(bad), folder);
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err.rfind("sheafwork: " + bad + ": ", 0), 0u) << run.err;
  EXPECT_EQ(Sheafwork("--no-such-option", folder).status, 2);
  // Without arguments the desktop application starts; with no display it
  // cannot, and says so.
  const ProgramRun noDisplay = Sheafwork("", folder, "-u QT_QPA_PLATFORM");
  EXPECT_EQ(noDisplay.status, 2);
  EXPECT_NE(noDisplay.err.find("aucun écran"), std::string::npos) << noDisplay.err;
}

// The box of the strokes of an HP-GL/2 file, in sheet millimetres.
embedded::Box2 StrokeExtents(const embedded::testing::HpglPlot& plot) {
  embedded::Box2 box;
  for (const auto& stroke : plot.strokes) {
    for (const embedded::Vec2& p : stroke.points) box.Extend(p);
  }
  return box;
}

using PlotDrawings = ExampleListTest;

// The example drawings as a newcomer plots them: every drawing's active
// layout into one folder, created for the run; the same drawing twice gets
// a second name rather than overwriting the first sheet.
TEST_F(PlotDrawings, EveryActiveLayoutIntoOneFolderWithDistinctNames) {
  const std::string folder = Out("x/y");
  const ProgramRun run =
      Sheafwork("plot " + Quoted(plans_) + "/*.dxf " + Quoted(Plan("etage.dxf")) +
                    " --output-dir " + Quoted(folder),
                folder_);
  ASSERT_EQ(run.status, 0) << run.err;
  // A list made for the run is not offered for saving.
  EXPECT_EQ(run.err.find("?"), std::string::npos) << run.err;

  std::set<std::string> expected;
  for (const auto& entry : fs::directory_iterator(plans_)) {
    if (entry.path().extension() == ".dxf") expected.insert(entry.path().stem().string());
  }
  const std::vector<std::string> written = testing::TempFolder::Names(folder);
  ASSERT_EQ(written.size(), expected.size() + 1) << run.err;
  for (const std::string& name : written) {
    SCOPED_TRACE(name);
    EXPECT_EQ(fs::path(name).extension(), ".pdf");
    EXPECT_GT(fs::file_size(fs::path(folder) / name), 500u);
  }
  EXPECT_THAT(written, IsSupersetOf({"etage-Détail chambres.pdf", "etage-Détail chambres-2.pdf",
                                     "rez-de-chaussee-Plan A3.pdf"}));
  // Nothing beside the drawings.
  for (const auto& entry : fs::directory_iterator(plans_)) {
    EXPECT_EQ(entry.path().extension(), ".dxf") << entry.path();
  }
}

// A list run goes to the folder too, a row's own plot file included.
TEST_F(PlotDrawings, AListRunIntoAFolder) {
  AddRow(Plan("facades.dxf"), " --layout 'Façade nord' --plot-file " + Quoted(Out("nord.pdf")));
  AddRow(Plan("facades.dxf"), " --layout 'Façade nord' --device PNG.pc3");
  const ProgramRun run = RunList("plot", " --quiet --output-dir " + Quoted(Out("f")));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(testing::TempFolder::Names(Out("f")),
            (std::vector<std::string>{"facades-Façade nord.pdf", "facades-Façade nord.png"}));
  // Quiet: the summary only.
  EXPECT_EQ(testing::SplitLines(run.err).size(), 1u) << run.err;
}

TEST_F(PlotDrawings, ReadableAreaAndScaleMeasuredOnTheSheet) {
  const std::string frame = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/dxf/cli/frame.dxf";
  ProgramRun run = Sheafwork("plot " + Quoted(frame) +
                                 " --layout Objet --device HPGL2.pc3 --area extents --scale 1:50 "
                                 "--output-dir " +
                                 Quoted(Out("a")),
                             folder_);
  ASSERT_EQ(run.status, 0) << run.err;
  using embedded::testing::ReadHpgl;
  auto sheet = ReadHpgl(testing::TempFolder::Read(Out("a/frame-Objet.plt")));
  auto box = StrokeExtents(sheet);
  EXPECT_NEAR(box.max.x - box.min.x, 80, 0.1);
  EXPECT_NEAR(box.max.y - box.min.y, 40, 0.1);
  EXPECT_NE(std::count_if(sheet.penColors.begin(), sheet.penColors.end(),
                          [](const auto& pen) { return pen.second == 0xFF0000u; }),
            0);

  // A custom scale, and the run's plot style table on a drawing that names
  // none: every pen black.
  run = Sheafwork("plot " + Quoted(frame) +
                      " --layout Objet --device HPGL2.pc3 --area extents --custom-scale 1:100 "
                      "--plot-style monochrome.ctb --output-dir " +
                      Quoted(Out("b")),
                  folder_);
  ASSERT_EQ(run.status, 0) << run.err;
  sheet = ReadHpgl(testing::TempFolder::Read(Out("b/frame-Objet.plt")));
  box = StrokeExtents(sheet);
  EXPECT_NEAR(box.max.x - box.min.x, 40, 0.1);
  EXPECT_NEAR(box.max.y - box.min.y, 20, 0.1);
  ASSERT_FALSE(sheet.penColors.empty());
  for (const auto& [pen, colour] : sheet.penColors) EXPECT_EQ(colour, 0u) << "pen " << pen;
}

TEST_F(PlotDrawings, UnknownValuesAndTablesAreRefusedWithStatus2) {
  const std::string rdc = Quoted(Plan("rez-de-chaussee.dxf"));
  const std::pair<std::string, std::string> refused[] = {
      {"plot " + rdc + " --area etendue", "extents, display, limits, layout"},
      {"plot " + rdc + " --scale 1:25", "--custom-scale 1:25"},
      {"plot " + rdc + " --plot-style introuvable.ctb", "introuvable.ctb"},
      {"plto " + rdc, "« sheafwork plot »"},
  };
  for (const auto& [args, said] : refused) {
    SCOPED_TRACE(args);
    const ProgramRun run = Sheafwork(args + " --output-dir " + Quoted(Out("z")), folder_);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr(said));
  }
  EXPECT_FALSE(fs::exists(Out("z/rez-de-chaussee-Plan A3.pdf")));
}

// A failed row's reason comes once, after the row's line.
TEST_F(PlotDrawings, AFailedRowsReasonComesOnceAfterItsLine) {
  const ProgramRun run = Sheafwork(
      "plot " + Quoted(Plan("facades.dxf")) + " --layout 'Façade nord' --device Absent.pc3",
      folder_);
  EXPECT_EQ(run.status, 1);
  const std::vector<std::string> lines = testing::SplitLines(run.err);
  const auto failed = std::find(lines.begin(), lines.end(), "ligne 1/1 : échec");
  ASSERT_NE(failed, lines.end()) << run.err;
  ASSERT_NE(failed + 1, lines.end());
  EXPECT_THAT(*(failed + 1), HasSubstr("Absent.pc3"));
  EXPECT_THAT(lines, Contains(HasSubstr("Absent.pc3")).Times(1)) << run.err;
}

// The results' problem lines (errors and warnings), by the drawing row
// ("   Vérification <drawing>") they come under, in row order.
std::vector<std::vector<std::string>> ProblemsByRow(const std::string& results) {
  const std::string checking = LoadResourceText(ids::kTestChecking);
  const std::string restoring = LoadResourceText(ids::kTestRestoringLogFile);
  std::vector<std::vector<std::string>> rows;
  bool inRows = false;
  for (const auto& line : testing::SplitLines(results)) {
    if (line.rfind(checking, 0) == 0) {
      rows.emplace_back();
      inRows = true;
      continue;
    }
    if (line.rfind(restoring, 0) == 0) inRows = false;
    if (!inRows) continue;
    if (line.rfind("ERREUR", 0) == 0 || line.rfind("AVERTISSEMENT", 0) == 0) {
      rows.back().push_back(line);
    }
  }
  return rows;
}

using CheckCommand = ExampleListTest;

TEST_F(CheckCommand, ReportsEachMissingPieceOnItsRowAndNothingForAGoodRow) {
  const std::string rdc = Plan("rez-de-chaussee.dxf");
  const std::string facades = Plan("facades.dxf");

  // The first row keeps every default: nothing to report.
  List("new " + Quoted(list_) + " " + Quoted(rdc));
  AddRow(rdc, " --layout 'Plan A3' --setup 'A3 paysage' --device PDF.pc3");
  AddRow(rdc, " --layout 'Coupe BB' --device PDF.pc3");
  AddRow(rdc, " --layout 'Plan A3' --setup 'A0 portrait' --device PDF.pc3");
  AddRow(facades, " --layout 'Façade nord' --device PDF.pc3");
  AddRow(facades, " --layout 'Toutes les présentations'");
  AddRow(Plan("etage.dxf"), " --layout 'Plan étage' --device 'Traceur-absent.pc3'");
  AddRow(Plan("sous-sol.dxf"), " --device PDF.pc3");

  const ProgramRun run = RunList("check");
  EXPECT_EQ(run.status, 1) << run.err;

  const std::string font = LoadResourceText(ids::kTestMissingFont) + "archi-perso.shx";
  const std::string xref = LoadResourceText(ids::kTestMissingXref);
  const std::vector<std::vector<std::string>> expected = {
      {},
      {},
      {LoadResourceText(ids::kTestMissingLayoutStart) + "Coupe BB" +
       LoadResourceText(ids::kTestMissingLayoutEnd)},
      {LoadResourceText(ids::kTestMissingPageSetupStart) + "A0 portrait" +
       LoadResourceText(ids::kTestMissingPageSetupEnd)},
      {"<xref>", font},
      {"<xref>", font,
       LoadResourceText(ids::kNoneDeviceStart) + "Esquisse" +
           LoadResourceText(ids::kNoneDeviceEnd)},
      {LoadResourceText(ids::kMissingPlotterConfig) + "Traceur-absent.pc3"},
      {LoadResourceText(ids::kTestCannotOpen)},
  };

  // The unresolved reference is named by the host's external-reference log
  // line; only the reference that is really missing may appear.
  std::vector<std::vector<std::string>> found = ProblemsByRow(run.out);
  for (auto& row : found) {
    for (auto& line : row) {
      if (line.rfind(xref, 0) != 0) continue;
      EXPECT_THAT(line, AllOf(HasSubstr("fond-de-plan"),
                              HasSubstr(LoadResourceText(ids::kXrefNotFoundMark))));
      line = "<xref>";
    }
  }
  EXPECT_EQ(found, expected) << run.out;
}

// What the plot will leave out is a warning of the check and named on
// stderr by the plot, which goes on.
TEST_F(CheckCommand, KindsOfEntityThePlotLeavesOutAreNamedByBoth) {
  // Written by ezdxf: tests/data/dxf/entities/make_entities.py.
  const std::string model = " --layout " + Quoted(LoadResourceText(ids::kLayoutModelTab));
  AddRow(Fixture("dxf/entities/undrawn.dxf"), model + " --plot-file " + Quoted(Out("u.pdf")));
  AddRow(Fixture("dxf/entities/meshes.dxf"), model + " --plot-file " + Quoted(Out("m.pdf")));

  ProgramRun run = RunList("check");
  EXPECT_EQ(run.status, 0) << run.out;  // a warning, not an error
  const std::vector<std::vector<std::string>> expected = {
      {LoadResourceText(ids::kTestUndrawnEntities) + "MLINE (2), TOLERANCE (1)"}, {}};
  EXPECT_EQ(ProblemsByRow(run.out), expected) << run.out;

  run = RunList("plot");
  EXPECT_EQ(run.status, 0) << run.err;
  std::vector<std::string> named;
  for (const auto& line : testing::SplitLines(run.err)) {
    if (line.find("MLINE") != std::string::npos) named.push_back(line);
  }
  ASSERT_EQ(named.size(), 1u) << run.err;
  EXPECT_THAT(named[0], HasSubstr("MLINE (2), TOLERANCE (1)"));
  EXPECT_THAT(named[0], HasSubstr("undrawn.dxf"));
}

// A layout whose plot style table is cut short fails its row in a plot,
// named on stderr with the table and the fault; one whose table is missing
// plots without it, the table named on stderr and in the error log; the
// other rows plot. The check warns about the missing table on each row whose
// layouts plot with it, the all-layouts row included; a table that is
// there, or no table, is not.
TEST_F(CheckCommand, PlotStyleTablesMissingOrUnreadable) {
  // Written by ezdxf: tests/data/dxf/plot-styles/make_drawings.py.
  const std::string drawing = Fixture("dxf/plot-styles/tables.dxf");
  const std::string tables = folder_.File("xdg/sheafwork/plotstyles");
  fs::create_directories(tables);
  fs::copy_file(Fixture("plotstyle/broken/truncated.ctb"), tables + "/truncated.ctb");
  AddRow(drawing, " --layout Monochrome --plot-file " + Quoted(Out("mono.pdf")));
  AddRow(drawing, " --layout Absente --plot-file " + Quoted(Out("absente.pdf")));
  AddRow(drawing, " --layout Tronquee --plot-file " + Quoted(Out("tronquee.pdf")));
  const std::string errorLog = folder_.File("erreurs.log");
  SetErrorLog(errorLog);

  ProgramRun run = RunList("plot");
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_THAT(run.err,
              HasSubstr("Table de styles de tracé « absente.ctb » introuvable sur cette machine"));
  EXPECT_THAT(run.err, HasSubstr("truncated.ctb : données compressées tronquées"));
  const std::string absent = MissingPlotStyleWarning("absente.ctb", "Absente", drawing);
  const std::vector<std::string> errors = testing::ReadLogLines(errorLog);
  EXPECT_EQ(std::count(errors.begin(), errors.end(), LoadResourceText(ids::kPlotFailed) + drawing),
            1)
      << testing::TempFolder::Read(errorLog);
  EXPECT_EQ(std::count(errors.begin(), errors.end(), absent), 1)
      << testing::TempFolder::Read(errorLog);
  EXPECT_FALSE(PlotOutput(Out("mono.pdf")).empty());
  EXPECT_FALSE(PlotOutput(Out("absente.pdf")).empty());
  EXPECT_TRUE(PlotOutput(Out("tronquee.pdf")).empty());

  AddRow(drawing, " --layout 'Toutes les présentations'");
  run = RunList("check");
  EXPECT_EQ(run.status, 0) << run.out;  // a warning, not an error
  const std::vector<std::vector<std::string>> expected = {{}, {absent}, {}, {absent}};
  EXPECT_EQ(ProblemsByRow(run.out), expected) << run.out;
}

// The program copied without its data: the commands that plot, and the
// desktop application, refuse to start and name the folders they looked in.
using WithoutData = ExampleListTest;

TEST_F(WithoutData, PlotCheckAndTheDesktopSayWhereTheyLooked) {
  const fs::path bin = folder_.path() / "seul" / "bin";
  fs::create_directories(bin);
  fs::copy_file(SHEAFWORK_EXE, bin / "sheafwork");
  const std::string exe = (bin / "sheafwork").string();
  const std::string searched =
      bin.string() + ", " + (bin / kInstalledDataFromProgram).lexically_normal().string();
  const std::string pdf = Out("rdc.pdf");
  AddRow(Plan("rez-de-chaussee.dxf"), " --layout 'Plan A3' --plot-file " + Quoted(pdf));
  const std::string message =
      "sheafwork: " + LoadResourceText(ids::kDataFolderMissing) + searched + "\n";
  const std::string runs[] = {"plot " + Quoted(list_), "check " + Quoted(list_), ""};
  for (const std::string& args : runs) {
    SCOPED_TRACE(args);
    const ProgramRun run = Sheafwork(args, folder_, "", exe);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, message);
  }
  EXPECT_TRUE(PlotOutput(pdf).empty());
  // The list commands need no data.
  EXPECT_EQ(RunList("list show", "", "", exe).status, 0);
}

// The libraries the dynamic loader maps with the ELF file `path`, as
// readelf(1) lists them.
std::vector<std::string> NeededLibraries(const std::string& path) {
  int status = -1;
  const std::string dynamic = testing::RunCommand("readelf -d " + Quoted(path), status);
  EXPECT_EQ(status, 0) << dynamic;
  std::vector<std::string> needed;
  for (const std::string& line : testing::SplitLines(dynamic)) {
    const std::size_t name = line.find("(NEEDED)");
    if (name == std::string::npos) continue;
    const std::size_t open = line.find('[', name);
    needed.push_back(line.substr(open + 1, line.find(']', open) - open - 1));
  }
  return needed;
}

// Every library the program needs is loaded at each start, a plot or not:
// Qt lives in the module, libcups, fontconfig and HarfBuzz are opened when
// first used.
TEST(QtModuleTest, TheProgramLinksNoQtItsModuleDoes) {
  const std::vector<std::string> program = NeededLibraries(SHEAFWORK_EXE);
  const std::vector<std::string> module =
      NeededLibraries((fs::path(SHEAFWORK_EXE).parent_path() / "sheafwork-qt.so").string());
  ASSERT_FALSE(program.empty());
  EXPECT_THAT(module,
              IsSupersetOf({"libQt6Widgets.so.6", "libQt6PrintSupport.so.6", "libQt6Svg.so.6"}));
  EXPECT_THAT(program, Each(Not(AnyOf(StartsWith("libQt6"), StartsWith("libcups"),
                                      StartsWith("libfontconfig"), StartsWith("libharfbuzz")))));
}

// A copy of the built program with its data files, without the module:
// PDF rows plot while painted rows of the same list fail, named; the
// desktop does not start and says which file is missing.
using WithoutModule = ExampleListTest;

TEST_F(WithoutModule, PdfRowsPlotWhilePaintedRowsAndTheDesktopNameTheModule) {
  const fs::path built = fs::path(SHEAFWORK_EXE).parent_path();
  const fs::path copy = folder_.path() / "programme";
  fs::create_directories(copy);
  for (const auto& entry : fs::directory_iterator(built)) {
    if (entry.is_directory() && entry.path().filename() != "CMakeFiles") {
      fs::copy(entry.path(), copy / entry.path().filename(), fs::copy_options::recursive);
    }
  }
  fs::copy_file(SHEAFWORK_EXE, copy / "sheafwork");
  const std::string exe = (copy / "sheafwork").string();
  const std::string module = (copy / "sheafwork-qt.so").string();
  const std::string notLoaded =
      module + " n'a pas pu être chargé (" + module + ": cannot open shared object file";

  const std::string rdc = Plan("rez-de-chaussee.dxf");
  AddRow(rdc, " --layout 'Plan A3' --device PNG.pc3 --plot-file " + Quoted(Out("rdc.png")));
  AddRow(rdc, " --layout 'Plan A3' --device PDF.pc3 --plot-file " + Quoted(Out("rdc.pdf")));
  ProgramRun run = RunList("plot", "", "", exe);
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_FALSE(PlotOutput(Out("rdc.pdf")).empty()) << run.err;
  EXPECT_TRUE(PlotOutput(Out("rdc.png")).empty());
  // The embedded host reports why the row failed.
  EXPECT_THAT(run.err,
              HasSubstr("la sortie PNG est indisponible : le module de dessin " + notLoaded));

  run = Sheafwork("", folder_, "", exe);
  EXPECT_NE(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("sheafwork: l'application de bureau ne peut pas démarrer : le "
                                 "module " +
                                 notLoaded));
}

}  // namespace
}  // namespace sheafwork::e2e
