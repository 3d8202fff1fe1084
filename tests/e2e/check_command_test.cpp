// `sheafwork check` on the example drawings: every kind of problem the plot
// test looks for, each on its own row, and nothing reported for a good row;
// beside it, what `sheafwork plot` says of the same rows.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "e2e/program.h"
#include "fakes/log_lines.h"
#include "plotcfg/plot_style_check.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::e2e {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

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
  std::filesystem::create_directories(tables);
  std::filesystem::copy_file(Fixture("plotstyle/broken/truncated.ctb"), tables + "/truncated.ctb");
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

}  // namespace
}  // namespace sheafwork::e2e
