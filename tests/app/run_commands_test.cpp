// `sheafwork plot` and `sheafwork check` end to end, in-process, with the
// scripted host registered as the program's host.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "command_runner.h"
#include "fakes/log_lines.h"
#include "fakes/system_doubles.h"
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

}  // namespace
}  // namespace sheafwork
