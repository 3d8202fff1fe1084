// `sheafwork plot DRAWING...`: drawings plotted without a list, every sheet
// into one folder, with readable plot settings and a plot style table for
// the run.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "e2e/program.h"

namespace sheafwork::e2e {
namespace {

namespace fs = std::filesystem;

std::set<std::string> FilesIn(const std::string& folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

// The extent of everything drawn in an HP-GL/2 file, in millimetres (40
// plotter units each), and the pen colours it sets.
struct HpglDrawing {
  double width = 0;
  double height = 0;
  std::set<std::string> colours;
};

// The numbers of an HP-GL/2 command's parameters ("1,2.5,-3").
std::vector<double> Numbers(std::string_view params) {
  std::vector<double> numbers;
  std::string item;
  for (const char c : std::string(params) + ",") {
    if (c != ',') {
      item += c;
    } else if (!item.empty()) {
      numbers.push_back(std::stod(item));
      item.clear();
    }
  }
  return numbers;
}

HpglDrawing ReadHpgl(const std::string& file) {
  const std::string text = testing::TempFolder::Read(file);
  HpglDrawing drawing;
  double minX = 1e12, minY = 1e12, maxX = -1e12, maxY = -1e12;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find(';', start), text.size());
    std::string_view command = std::string_view(text).substr(start, end - start);
    start = end + 1;
    while (!command.empty() && std::isspace(static_cast<unsigned char>(command.front()))) {
      command.remove_prefix(1);
    }
    if (command.size() < 2) continue;
    const std::string_view mnemonic = command.substr(0, 2);
    const std::string_view params = command.substr(2);
    if (mnemonic == "PU" || mnemonic == "PD") {
      const std::vector<double> numbers = Numbers(params);
      for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) {
        minX = std::min(minX, numbers[i]);
        maxX = std::max(maxX, numbers[i]);
        minY = std::min(minY, numbers[i + 1]);
        maxY = std::max(maxY, numbers[i + 1]);
      }
    } else if (mnemonic == "PC") {
      // PCpen,r,g,b: the colour as "r,g,b".
      const std::size_t comma = params.find(',');
      if (comma != std::string_view::npos)
        drawing.colours.insert(std::string(params.substr(comma + 1)));
    }
  }
  drawing.width = (maxX - minX) / 40;
  drawing.height = (maxY - minY) / 40;
  return drawing;
}

class PlotDrawings : public ExampleListTest {};

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
  EXPECT_TRUE(written.count("etage-Détail chambres.pdf")) << run.err;
  EXPECT_TRUE(written.count("etage-Détail chambres-2.pdf")) << run.err;
  EXPECT_TRUE(written.count("rez-de-chaussee-Plan A3.pdf")) << run.err;
  // Nothing beside the drawings.
  for (const auto& entry : fs::directory_iterator(plans_)) {
    EXPECT_EQ(entry.path().extension(), ".dxf") << entry.path();
  }
}

// A list run goes to the folder too, a row's own plot file included.
TEST_F(PlotDrawings, AListRunIntoAFolder) {
  AddRow(Plan("facades.dxf"), " --layout 'Façade nord' --plot-file " + Quoted(Out("nord.pdf")));
  AddRow(Plan("facades.dxf"), " --layout 'Façade nord' --device PNG.pc3");
  const ProgramRun run =
      Sheafwork("plot " + Quoted(list_) + " --quiet --output-dir " + Quoted(Out("f")), folder_);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(FilesIn(Out("f")),
            (std::set<std::string>{"facades-Façade nord.pdf", "facades-Façade nord.png"}));
  // Quiet: the summary only.
  EXPECT_EQ(Lines(run.err).size(), 1u) << run.err;
}

TEST_F(PlotDrawings, ReadableAreaAndScaleMeasuredOnTheSheet) {
  const std::string frame = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/dxf/cli/frame.dxf";
  ProgramRun run = Sheafwork("plot " + Quoted(frame) +
                                 " --layout Objet --device HPGL2.pc3 --area extents --scale 1:50 "
                                 "--output-dir " +
                                 Quoted(Out("a")),
                             folder_);
  ASSERT_EQ(run.status, 0) << run.err;
  HpglDrawing sheet = ReadHpgl(Out("a/frame-Objet.plt"));
  EXPECT_NEAR(sheet.width, 80, 0.1);
  EXPECT_NEAR(sheet.height, 40, 0.1);
  EXPECT_TRUE(sheet.colours.count("255,0,0"))
      << testing::TempFolder::Read(Out("a/frame-Objet.plt"));

  // A custom scale, and the run's plot style table on a drawing that names
  // none: every pen black.
  run = Sheafwork("plot " + Quoted(frame) +
                      " --layout Objet --device HPGL2.pc3 --area extents --custom-scale 1:100 "
                      "--plot-style monochrome.ctb --output-dir " +
                      Quoted(Out("b")),
                  folder_);
  ASSERT_EQ(run.status, 0) << run.err;
  sheet = ReadHpgl(Out("b/frame-Objet.plt"));
  EXPECT_NEAR(sheet.width, 40, 0.1);
  EXPECT_NEAR(sheet.height, 20, 0.1);
  EXPECT_EQ(sheet.colours, (std::set<std::string>{"0,0,0"}));
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
    EXPECT_NE(run.err.find(said), std::string::npos) << run.err;
  }
  EXPECT_FALSE(fs::exists(Out("z/rez-de-chaussee-Plan A3.pdf")));
}

// A failed row's reason comes once, after the row's line.
TEST_F(PlotDrawings, AFailedRowsReasonComesOnceAfterItsLine) {
  const ProgramRun run = Sheafwork(
      "plot " + Quoted(Plan("facades.dxf")) + " --layout 'Façade nord' --device Absent.pc3",
      folder_);
  EXPECT_EQ(run.status, 1);
  const std::vector<std::string> lines = Lines(run.err);
  const auto failed = std::find(lines.begin(), lines.end(), "ligne 1/1 : échec");
  ASSERT_NE(failed, lines.end()) << run.err;
  ASSERT_NE(failed + 1, lines.end());
  EXPECT_NE((failed + 1)->find("Absent.pc3"), std::string::npos) << run.err;
  EXPECT_EQ(
      std::count_if(lines.begin(), lines.end(),
                    [](const std::string& l) { return l.find("Absent.pc3") != std::string::npos; }),
      1)
      << run.err;
}

}  // namespace
}  // namespace sheafwork::e2e
