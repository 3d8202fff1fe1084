// The command line, in-process. `sheafwork list`: a list made, replaced,
// appended and set; its rows added, edited, removed, moved and shown; the
// words the command line does not know; the values a list file cannot hold.
// `sheafwork plot`, `check` and `logs merge` end to end, with the scripted
// host registered as the program's host, and what `plot` prints while a run
// goes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "app/command_line.h"
#include "app/run_progress.h"
#include "fakes/fake_host.h"
#include "fakes/log_lines.h"
#include "fakes/system_doubles.h"
#include "fakes/test_data.h"
#include "host/error.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {
using testing::FakeHost;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::TempFolder;

// Runs the program's command line in-process and keeps what it printed; the
// two settings the command tests share: list commands alone, and runs with
// the scripted host registered as the program's host.

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

/// `sheafwork args...` with `env`.
Outcome RunSheafwork(std::vector<std::string> args, CommandEnvironment& env) {
  args.insert(args.begin(), "sheafwork");
  std::vector<const char*> argv;
  for (const auto& a : args) argv.push_back(a.c_str());
  std::ostringstream out, err;
  const int status = RunCommandLine(static_cast<int>(argv.size()), argv.data(), out, err, env);
  return {status, out.str(), err.str()};
}

/// A command refused: status 2, and `said` in what it printed on stderr.
void ExpectRefused(const Outcome& o, const std::string& said) {
  EXPECT_EQ(o.status, 2) << o.err;
  EXPECT_THAT(o.err, ::testing::HasSubstr(said));
}

/// `sheafwork list ...` commands, logs defaulting to /logs.
class ListCommandTest : public ::testing::Test {
 protected:
  ListCommandTest() { env.defaultLogFolder = "/logs"; }
  Outcome Run(std::vector<std::string> args) { return RunSheafwork(args, env); }
  /// What `list show --json` gives of `list`.
  nlohmann::json Show(const std::string& list) {
    const Outcome o = Run({"list", "show", "--json", list});
    EXPECT_EQ(o.status, 0) << o.err;
    return nlohmann::json::parse(o.out);
  }
  CommandEnvironment env;
  TempFolder folder;
};

/// Runs on the scripted host, registered as "essai", serving Plan.dwg with a
/// layout "Vue A"; the logs go to `home`/sheafwork and the clock stands still.
class HostCommandTest : public ::testing::Test {
 protected:
  HostCommandTest() {
    hosts.Register("essai", [this] { return host.App(); });
    env.defaultLogFolder = (home.path() / "sheafwork").string();
    env.dataFolder = home.path().string();
    env.hosts = &hosts;
    env.clock = [] { return LocalTime{2026, 11, 22, 23, 5, 9}; };
    plan = host.AddDrawing("Plan.dwg").path;
    host.Drawing(plan).AddLayout("Vue A");
    list = home.File("lot.qx3");
  }
  Outcome Run(std::vector<std::string> args) { return RunSheafwork(args, env); }

  FakeHost host;
  TempFolder home;
  HostRegistry hosts;
  CommandEnvironment env;
  std::string plan;
  std::string list;
};

class ListRowsTest : public ListCommandTest {
 protected:
  ListRowsTest() {
    list = folder.File("lot.qx3");
    for (const char* name : {"a.dxf", "b.dxf", "c.dxf"}) drawings.push_back(folder.Write(name, ""));
    EXPECT_EQ(Run({"list", "new", list, drawings[0], drawings[1], drawings[2]}).status, 0);
  }
  nlohmann::json Rows() { return Show(list)["entries"]; }
  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const auto& row : Rows()) {
      names.push_back(std::filesystem::path(row["FileName"].get<std::string>()).filename());
    }
    return names;
  }

  std::string list;
  std::vector<std::string> drawings;
};

TEST_F(ListRowsTest, RemoveAndMoveRenumberTheRows) {
  ASSERT_EQ(Run({"list", "move", list, "3", "--to", "1"}).status, 0);
  EXPECT_EQ(Names(), (std::vector<std::string>{"c.dxf", "a.dxf", "b.dxf"}));
  ASSERT_EQ(Run({"list", "move", list, "1", "--to", "2"}).status, 0);
  EXPECT_EQ(Names(), (std::vector<std::string>{"a.dxf", "c.dxf", "b.dxf"}));
  // Two rows at once, without a question, whatever their order.
  ASSERT_EQ(Run({"list", "remove", list, "3", "1"}).status, 0);
  EXPECT_EQ(Names(), (std::vector<std::string>{"c.dxf"}));

  // A row outside the list changes nothing; nor does emptying the list,
  // which a list file cannot hold.
  const std::string before = TempFolder::Read(list);
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"list", "remove", list, "1", "2"},
        {"list", "move", list, "1", "--to", "0"},
        {"list", "edit", list, "4", "--layout", "X"},
        {"list", "remove", list, "1"}}) {
    SCOPED_TRACE(args[1] + " " + args[3]);
    ExpectRefused(Run(args), "sheafwork: ");
  }
  EXPECT_EQ(TempFolder::Read(list), before);
}

TEST_F(ListRowsTest, EditChangesOnlyTheFieldsGivenWithReadableValues) {
  const nlohmann::json before = Rows();
  ASSERT_EQ(Run({"list", "edit", list, "2", "--layout", "Plan A1", "--area", "extents", "--scale",
                 "1:50", "--scale-lineweights"})
                .status,
            0);
  ASSERT_EQ(Run({"list", "edit", list, "2", "--device", "PDF.pc3"}).status, 0);
  nlohmann::json edited = before[1];
  edited.update({{"Layout", "Plan A1"},
                 {"PlotDevice", "PDF.pc3"},
                 {"PlotArea", "#E"},
                 {"PlotScale", "S#25"},
                 {"ScaleCustom", false},
                 {"ScaleLW", true}});
  EXPECT_EQ(Rows(), nlohmann::json({before[0], edited, before[2]}));

  ASSERT_EQ(Run({"list", "edit", list, "2", "--custom-scale", "1:25", "--no-scale-lineweights",
                 "--area", "window:0,0,420,297"})
                .status,
            0);
  edited.update({{"PlotScale", "1#25"},
                 {"ScaleCustom", true},
                 {"ScaleLW", false},
                 {"PlotArea", "#W0,0,420,297"}});
  EXPECT_EQ(Rows()[1], edited);

  // `list show` gives the readable names beside the codes.
  const Outcome shown = Run({"list", "show", list});
  EXPECT_NE(shown.out.find("#W0,0,420,297 (window:0,0,420,297)"), std::string::npos) << shown.out;
  EXPECT_NE(shown.out.find("1#25 (1:25, Personnalisé)"), std::string::npos) << shown.out;
}

// An unknown value is refused with the accepted ones, and nothing is
// written: never stored to be ignored when the list is plotted.
TEST_F(ListRowsTest, UnknownValuesAreRefusedWithWhatIsAccepted) {
  const std::string before = TempFolder::Read(list);
  for (const auto& row : testing::ReadTestTable("app/unknown_values.tsv")) {
    SCOPED_TRACE(row.where);
    std::vector<std::string> args = {"list", "edit", list, "1"};
    for (const std::string& option : row.List(0)) args.push_back(option);
    ExpectRefused(Run(args), row[1]);
    // `list add` takes the same options and adds no row.
    args[1] = "add";
    args[3] = drawings[0];
    EXPECT_EQ(Run(args).status, 2);
  }
  EXPECT_EQ(TempFolder::Read(list), before);
}

// The desktop starts for no argument or one name of a list, never for a
// command, a mistyped one or two names.
TEST_F(ListRowsTest, OnlyNoArgumentOrOneListNameStartsTheDesktop) {
  const std::string existing = folder.Write("liste", "");
  const std::pair<std::vector<std::string>, bool> cases[] = {
      {{}, true},          {{"/srv/listes/lot.qx3"}, true}, {{existing}, true},
      {{"plto"}, false},   {{"plot", "lot.qx3"}, false},    {{"check"}, false},
      {{"--help"}, false}, {{"a.qx3", "b.qx3"}, false},
  };
  for (const auto& [args, desktop] : cases) {
    std::vector<const char*> argv = {"sheafwork"};
    for (const std::string& arg : args) argv.push_back(arg.c_str());
    EXPECT_EQ(WantsDesktop(static_cast<int>(argv.size()), argv.data()), desktop)
        << (args.empty() ? "(none)" : args[0]);
  }
}

using CommandLineTest = ListCommandTest;

TEST_F(CommandLineTest, BadInputGivesTheMessageAndStatus2AndWritesNothing) {
  const std::string bad = folder.Write("bad.qx3", "Liste\r\n");
  const Outcome o = Run({"list", "show", bad});
  EXPECT_EQ(o.status, 2);
  EXPECT_EQ(o.err, "sheafwork: " + bad + ": " + LoadResourceText(ids::kListFileNotValid) + "\n");
  EXPECT_EQ(Run({"list", "add", bad, "/p/a.dwg"}).status, 2);
  EXPECT_EQ(TempFolder::Read(bad), "Liste\r\n");

  const std::string empty = folder.File("empty.qx3");
  ExpectRefused(Run({"list", "new", empty}), LoadResourceText(ids::kEmptyList));
  EXPECT_FALSE(std::filesystem::exists(empty));
  EXPECT_EQ(Run({"list", "frobnicate"}).status, 2);
}

TEST_F(CommandLineTest, NewRefusesToReplaceAListUnlessForcedAndAppendKeepsSettings) {
  const std::string list = folder.File("a.qx3");
  const std::string other = folder.File("b.qx3");
  ASSERT_EQ(Run({"list", "new", list, "rel/1.dwg"}).status, 0);
  EXPECT_EQ(Run({"list", "new", list, "/p/2.dwg"}).status, 2);
  EXPECT_EQ(Show(list)["entries"][0]["FileName"], std::filesystem::absolute("rel/1.dwg").string());
  ASSERT_EQ(Run({"list", "new", list, "/p/1.dwg", "--force"}).status, 0);

  ASSERT_EQ(Run({"list", "add", other, "/q/1.dwg", "/q/2.dwg", "--layout", "Objet"}).status, 0);
  ASSERT_EQ(Run({"list", "set", other, "--journal-header", "autre"}).status, 0);
  ASSERT_EQ(Run({"list", "append", list, other}).status, 0);
  const auto doc = Show(list);
  ASSERT_EQ(doc["entries"].size(), 3u);
  EXPECT_EQ(doc["entries"][2]["FileName"], "/q/2.dwg");
  EXPECT_EQ(doc["entries"][2]["Layout"], "Objet");
  EXPECT_EQ(doc["log"]["JournalHeader"], "");
}

TEST_F(CommandLineTest, SetChecksTheNamesOfLogsThatAreOn) {
  const std::string list = folder.File("s.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/p/1.dwg"}).status, 0);
  ExpectRefused(Run({"list", "set", list, "--journal-file", "/logs/bad|name.log"}),
                LoadResourceText(ids::kJournalNameNotValid));
  ExpectRefused(Run({"list", "set", list, "--error-file", "/x/"}),
                LoadResourceText(ids::kErrorLogNameNotValid));
  EXPECT_EQ(Show(list)["log"]["JournalLogFileName"], "/logs/QXJOURNL.LOG");

  ASSERT_EQ(Run({"list", "set", list, "--journal", "off", "--journal-file", "bad|name"}).status, 0);
  EXPECT_EQ(Show(list)["log"]["JournalLogFileName"], "bad|name");
  EXPECT_EQ(Run({"list", "set", list, "--journal", "maybe"}).status, 2);
}

// Values a list file cannot hold (line breaks, double quotes, characters
// outside Windows-1252 in paths and names) are refused by `list add`,
// `list new` and `list set` with status 2 and the list left as it was; texts
// that are only shown keep "?" with a warning.
using ListValuesTest = ListCommandTest;

TEST_F(ListValuesTest, RefusedValuesLeaveTheListAsItWas) {
  const std::string list = folder.File("v.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/p/1.dwg"}).status, 0);
  const std::string before = TempFolder::Read(list);

  for (const auto& row : testing::ReadTestTable("app/refused_values.tsv")) {
    SCOPED_TRACE(row.where);
    std::vector<std::string> args = {"list", row[0], list};
    for (const std::string& arg : row.List(1)) args.push_back(arg);
    ExpectRefused(Run(args), LoadResourceText(std::stoi(row[2])) + " : " +
                                 LoadResourceText(std::stoi(row[3])));
    EXPECT_EQ(TempFolder::Read(list), before);
  }
  // A new list with such a path is not created at all.
  const std::string fresh = folder.File("n.qx3");
  EXPECT_EQ(Run({"list", "new", fresh, "/p/a\rb.dwg"}).status, 2);
  EXPECT_FALSE(std::filesystem::exists(fresh));
}

TEST_F(ListValuesTest, ShownTextsKeepQuestionMarksWithAWarning) {
  const std::string list = folder.File("h.qx3");
  ASSERT_EQ(Run({"list", "new", list, "/p/caf\xC3\xA9 \xE2\x82\xAC.dwg"}).status, 0);
  Outcome o = Run({"list", "set", list, "--journal-header", "Plan \xE5\x8C\x97"});
  ASSERT_EQ(o.status, 0) << o.err;
  EXPECT_THAT(o.err, HasSubstr(LoadResourceText(ids::kFieldJournalHeader) + " : " +
                               LoadResourceText(ids::kValueKeptWithMarks)));

  const auto doc = Show(list);
  EXPECT_EQ(doc["log"]["JournalHeader"], "Plan ?");
  // Characters of the code page are kept as they are, without a word.
  EXPECT_EQ(doc["entries"][0]["FileName"], "/p/caf\xC3\xA9 \xE2\x82\xAC.dwg");
  o = Run({"list", "set", list, "--error-header", "\xC3\x89tage \xE2\x80\x93 2"});
  EXPECT_EQ(o.status, 0);
  EXPECT_EQ(o.err, "");
}

TEST_F(ListValuesTest, ListsThatAreNotFilesOrTooLongAreRefusedByName) {
  // A list that names more drawings than a list holds says the limit.
  const std::string big = testing::TestData("app/too-many-rows.qx3");
  ExpectRefused(Run({"list", "show", big}),
                big + ": " + LoadResourceText(ids::kListTooManyEntries));
  // A device is no list.
  const Outcome device = Run({"list", "show", "/dev/zero"});
  ExpectRefused(device, "/dev/zero: ");
  EXPECT_THAT(device.err, HasSubstr(LoadResourceText(ids::kNotRegularFile)));
}

// `sheafwork plot` and `check` on the scripted host.
class RunCommandsTest : public HostCommandTest {
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
class LogsMergeTest : public HostCommandTest {
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
