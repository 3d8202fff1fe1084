// What `sheafwork plot` prints while a run goes, in each of its styles, fed
// the run's and the host's events in the order a run makes them.

#include "app/run_progress.h"

#include <gtest/gtest.h>

#include <sstream>

#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

class RunProgressTest : public ::testing::Test {
 protected:
  // Row 1 plots two sheets in 10 s; row 2 fails after 5 s, the host giving
  // the same reason twice and a notice, the run logging why and that it
  // failed; then a failure outside any row.
  std::string Play(ProgressStyle style, int width = 200) {
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

// One line redrawn in place; what is printed above it clears it first.
TEST_F(RunProgressTest, TerminalRedrawsOneLineWithTimeLeft) {
  const std::string shown = Play(ProgressStyle::Terminal);
  const std::string redraw = "\r\033[K";
  // After row 1 (10 s for 1 row of 3): 2 sheets, 00:10 elapsed, 00:20 left.
  EXPECT_NE(shown.find(redraw +
                       "ligne 1/3 · 2 feuille(s) · 00:10 écoulé · reste environ "
                       "00:20" +
                       redraw),
            std::string::npos)
      << shown;
  EXPECT_NE(shown.find(redraw +
                       "ligne 2/3 · 2 feuille(s) · 00:10 écoulé · reste "
                       "environ 00:20 · b.dxf" +
                       redraw + "sheafwork: b.dxf : périphérique remplacé\n"),
            std::string::npos)
      << shown;
  EXPECT_NE(shown.find(redraw +
                       "ligne 2/3 : échec : /plans/b.dxf\nsheafwork: b.dxf : "
                       "introuvable\nsheafwork: ERREUR: Impossible d'ouvrir le dessin: "
                       "/plans/b.dxf\n" +
                       redraw +
                       "ligne 2/3 · 2 feuille(s) · 00:15 écoulé · reste "
                       "environ 00:08\r"),
            std::string::npos)
      << shown;
  EXPECT_TRUE(shown.ends_with(redraw + "sheafwork: PDF combiné non écrit\n")) << shown;
  // The reason comes once.
  EXPECT_EQ(shown.find("introuvable"), shown.rfind("introuvable"));

  // Cut to the terminal's width, never wrapped.
  for (const auto& line : {Play(ProgressStyle::Terminal, 30)}) {
    std::size_t start = 0;
    while ((start = line.find(redraw + "ligne", start)) != std::string::npos) {
      start += redraw.size();
      const std::size_t end = line.find_first_of("\r\n", start);
      if (line[end] == '\n') continue;  // a failed row's line, not the progress
      std::size_t characters = 0;
      for (std::size_t i = start; i < end; ++i) characters += (line[i] & 0xC0) != 0x80;
      EXPECT_LE(characters, 29u) << line.substr(start, end - start);
    }
  }
}

}  // namespace
}  // namespace sheafwork
