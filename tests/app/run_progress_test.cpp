// What `sheafwork plot` prints while a run goes, in each of its styles, fed
// the run's and the host's events in the order a run makes them.

#include "app/run_progress.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "fakes/test_data.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

class RunProgressTest : public ::testing::Test {
 protected:
  // Row 1 plots two sheets in 10 s; row 2 fails after 5 s, the host giving
  // the same reason twice and a notice, the run logging why and that it
  // failed; then a failure outside any row.
  std::string Play(ProgressStyle style, int width) {
    std::ostringstream err;
    RunProgress progress(
        err, style, [this] { return now; }, width);
    BatchEntry a, b;
    a.FileName = "/plans/a.dxf";
    b.FileName = "/plans/b.dxf";
    now = 100;
    progress.RowStarted(1, 3, a);
    now = 104;
    progress.SheetPlotted(1);
    now = 110;
    progress.SheetPlotted(1);
    progress.RowFinished(1, RowStatus::Plotted);
    progress.RowStarted(2, 3, b);
    progress.Notice("b.dxf : périphérique remplacé");
    progress.PlotFailed("b.dxf : introuvable");
    progress.ErrorLogged("ERREUR: Impossible d'ouvrir le dessin: /plans/b.dxf");
    progress.PlotFailed("b.dxf : introuvable");
    progress.ErrorLogged(LoadResourceText(ids::kPlotFailed) + "/plans/b.dxf");
    now = 115;
    progress.RowFinished(2, RowStatus::Failed);
    progress.PlotFailed("PDF combiné non écrit");
    progress.Finish();
    return err.str();
  }
  double now = 0;
};

// One line redrawn in place, with the time left once a row has ended, cut
// to the terminal's width; what is printed above it clears it first, and a
// reason comes once. In the expected files "⟲" stands for the redraw
// (carriage return, clear to the end of the line).
TEST_F(RunProgressTest, TerminalRedrawsOneLineWithTimeLeft) {
  for (const auto& [width, file] :
       {std::pair{200, "progress-terminal.txt"}, {30, "progress-terminal-30.txt"}}) {
    SCOPED_TRACE(file);
    std::string expected = testing::ReadTestData(std::string("app/") + file);
    for (auto at = expected.find("⟲"); at != std::string::npos; at = expected.find("⟲", at)) {
      expected.replace(at, std::string_view("⟲").size(), "\r\033[K");
    }
    EXPECT_EQ(Play(ProgressStyle::Terminal, width), expected);
  }
}

}  // namespace
}  // namespace sheafwork
