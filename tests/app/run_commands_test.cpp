// `sheafwork plot`, `check` and `logs merge` end to end, in-process, with the
// scripted host registered as the program's host, and what `plot` prints
// while a run goes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/run_progress.h"
#include "command_runner.h"
#include "fakes/log_lines.h"
#include "fakes/system_doubles.h"
#include "fakes/test_data.h"
#include "host/error.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

using testing::ExpectRefused;
using testing::Outcome;

class RunCommandsTest : public testing::HostCommandTest {
 protected:
  RunCommandsTest() {
    printers.printers = {{"Bureau", "HP LaserJet", "ipp://x"}};
    env.printers = &printers;
    env.fonts = &fonts;
  }

  /// A list with a row that plots and a row whose layout is missing.
  void MakeList(bool withFailingRow) {
    ASSERT_EQ(Run({"list", "new", list, plan}).status, 0);
    ASSERT_EQ(Run({"list", "add", list, plan, "--layout", "Vue A"}).status, 0);
    if (withFailingRow) {
      ASSERT_EQ(Run({"list", "add", list, plan, "--layout", "Vue Z"}).status, 0);
    }
  }

  testing::ListedPrinters printers;
  testing::AllFonts fonts;
};

// A run whose rows all go through ends with status 0, a cancelled one with 1;
// a check that finds no error with 0.
TEST_F(RunCommandsTest, ACleanRunOrCheckEndsWith0ACancelledRunWith1) {
  MakeList(false);
  Outcome o = Run({"plot", list, "--host", "essai"});
  EXPECT_EQ(o.status, 0) << o.err;
  EXPECT_THAT(o.err, HasSubstr("2 ligne(s) tracée(s), 0 en échec"));
  o = Run({"check", list});
  EXPECT_EQ(o.status, 0) << o.out;
  EXPECT_THAT(o.out, ::testing::Not(HasSubstr("ERREUR")));

  host.CancelAtPoll(host.ProgressPolls() + 2);
  o = Run({"plot", list});
  EXPECT_EQ(o.status, 1);
  EXPECT_THAT(o.err, HasSubstr("traçage annulé"));
}

TEST_F(RunCommandsTest, UnusableInputOrNoUsableHostEndWithStatus2BeforeTheHostStarts) {
  MakeList(false);
  ExpectRefused(Run({"plot", list, "--host", "autre"}),
                "hôte inconnu « autre » (hôtes disponibles : essai)");

#ifndef _WIN32
  // The COM host exists only on Windows: refused by both commands, the host
  // never started.
  for (const char* command : {"plot", "check"}) {
    SCOPED_TRACE(command);
    ExpectRefused(Run({command, list, "--host", "com"}),
                  LoadResourceText(ids::kComHostWindowsOnly));
    EXPECT_THAT(host.Calls(), IsEmpty());
  }
#endif

  const std::string bad = home.Write("bad.qx3", "pas une liste\r\n");
  ExpectRefused(Run({"check", bad}), bad + ": ");
  EXPECT_THAT(host.Calls(), IsEmpty());

  HostRegistry none;
  env.hosts = &none;
  ExpectRefused(Run({"plot", list}), "aucun hôte CAO n'est disponible");

  // A host that does not start is named with message 125.
  HostRegistry broken;
  broken.Register("cassé", []() -> std::shared_ptr<host::Application> {
    throw host::Error(429, "Impossible de créer l'objet");
  });
  env.hosts = &broken;
  ExpectRefused(Run({"plot", list}),
                "sheafwork: Erreur lors du chargement d'Orvane pour Sheafwork\n");

  // What the plot cannot do is refused before the host starts.
  env.hosts = &hosts;
  const std::vector<std::string> refused[] = {
      {"plot", plan, "--area", "etendue"},
      {"plot", list, "--layout", "Vue A"},
      {"plot", list, plan},
      {"plot", plan, plan, "--plot-file", "/tmp/x.pdf"},
      {"plot", list, "--output-dir", home.File("sorties")},
  };
  for (const auto& args : refused) {
    SCOPED_TRACE(args[1] + " " + args[2]);
    ExpectRefused(Run(args), "sheafwork: ");
  }
  std::istringstream in("pas une liste\n");
  env.input = &in;
  ExpectRefused(Run({"plot", "-"}), "(entrée standard): ");
  EXPECT_THAT(host.Calls(), IsEmpty());
}

TEST_F(RunCommandsTest, CheckPrintsTheResultsAndSavesOrAppendsThem) {
  MakeList(true);
  const std::string saved = home.File("essai.txt");
  const Outcome o = Run({"check", list, "--save", saved, "--append-journal"});
  EXPECT_EQ(o.status, 1);  // the missing layout is an error
  EXPECT_THAT(o.out, HasSubstr("*** Balayage de l'essai de traçage de la liste de traçage en "
                               "différé <" +
                               list + "> à 11-22-2026, 23:05:09\n"));
  EXPECT_THAT(o.out, HasSubstr("ERREUR: Présentation <Vue Z> introuvable dans le dessin\n"));
  EXPECT_EQ(o.out.find('\r'), std::string::npos);
  EXPECT_THAT(o.err, HasSubstr("ligne 3/3 : " + plan + "\n"));

  // The file and the journal hold the same text with CR LF, and a line end.
  std::vector<std::string> lines = testing::ReadLogLines(saved);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "");
  std::string fromFile;
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) fromFile += lines[i] + "\n";
  EXPECT_EQ(fromFile, o.out);
  EXPECT_EQ(testing::ReadLogLines(env.defaultLogFolder + "/QXJOURNL.LOG"), lines);
  EXPECT_TRUE(host.Plots().empty());
}

// `plot --shard` and `logs merge` in-process, with the scripted host: the
// merged logs are byte for byte those of one run over the whole list when
// the clock is the same for both.
class LogsMergeTest : public testing::HostCommandTest {
 protected:
  /// Five rows, the third of a layout the drawing lacks.
  void MakeList() {
    for (const char* layout : {"Vue A", "Vue A", "Vue Z", "Vue A", "Vue A"}) {
      ASSERT_EQ(Run({"list", "add", list, plan, "--layout", layout}).status, 0);
    }
    ASSERT_EQ(Run({"list", "set", list, "--journal-header", "lot", "--journal-comment", "nuit",
                   "--error-header", "erreurs"})
                  .status,
              0);
  }

  std::string Log(const std::string& name) const {
    return testing::TempFolder::Read(env.defaultLogFolder + "/" + name);
  }
};

TEST_F(LogsMergeTest, ThreeShardsMergedAreOneRunOverTheWholeList) {
  MakeList();
  ASSERT_EQ(Run({"plot", list}).status, 1);
  const std::string journal = Log("QXJOURNL.LOG");
  const std::string errors = Log("QXERROR.LOG");
  ASSERT_THAT(errors, HasSubstr("ERREUR"));
  std::filesystem::remove_all(env.defaultLogFolder);

  // Rows 1 and 4, 2 and 5, then 3, which fails; run in any order.
  const int expected[] = {0, 0, 1};
  for (int shard = 3; shard >= 1; --shard) {
    const auto o = Run({"plot", list, "--shard", std::to_string(shard) + "/3"});
    EXPECT_EQ(o.status, expected[shard - 1]) << o.err;
  }
  // Shard 1 wrote rows 1 and 4 after the header and comment.
  const std::string first = Log("QXJOURNL.shard-1-of-3.LOG");
  EXPECT_EQ(std::count(first.begin(), first.end(), '\n'), 4);
  const auto merged = Run({"logs", "merge", list});
  EXPECT_EQ(merged.status, 1) << merged.err;
  EXPECT_THAT(merged.err, HasSubstr("3 part(s) réunie(s) : 4 ligne(s) tracée(s), 1 en échec"));
  EXPECT_EQ(Log("QXJOURNL.LOG"), journal);
  EXPECT_EQ(Log("QXERROR.LOG"), errors);
}

// What the merge cannot start from: status 2, the list named with the
// reason; a number of shards out of range is refused in French.
TEST_F(LogsMergeTest, NothingToMergeIsSaid) {
  MakeList();
  struct Case {
    std::vector<std::string> settings;
    int reason;
  };
  const Case cases[] = {
      {{"--journal", "on"}, ids::kMergeNoShards},
      {{"--journal", "off", "--error-log", "off"}, ids::kMergeNoLog},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.reason);
    std::vector<std::string> args = {"list", "set", list};
    args.insert(args.end(), c.settings.begin(), c.settings.end());
    ASSERT_EQ(Run(args).status, 0);
    ExpectRefused(Run({"logs", "merge", list}),
                  "sheafwork: " + list + ": " + LoadResourceText(c.reason));
  }
  ExpectRefused(Run({"logs", "merge", list, "--shards", "0"}),
                "--shards : « 0 » n'est pas entre 1 et 32767");
}

// What `sheafwork plot` prints while a run goes, in each of its styles, fed
// the run's and the host's events in the order a run makes them.
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
