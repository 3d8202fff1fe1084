// `sheafwork plot DRAWING...`: drawings plotted without a list, every sheet
// into one folder, with readable plot settings and a plot style table for
// the run.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "e2e/program.h"
#include "support/hpgl_reader.h"

namespace sheafwork::e2e {
namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;

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
  const std::set<std::string> written = FilesIn(folder);
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
  EXPECT_EQ(FilesIn(Out("f")),
            (std::set<std::string>{"facades-Façade nord.pdf", "facades-Façade nord.png"}));
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

}  // namespace
}  // namespace sheafwork::e2e
