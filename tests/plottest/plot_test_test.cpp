// The plot test: the scan of a list, then what the results can be made of
// (appended to the journal, saved as a file).
#include "plottest/plot_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "fakes/fake_host.h"
#include "fakes/log_lines.h"
#include "fakes/scripted_prompt.h"
#include "fakes/system_doubles.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "plottest/results_actions.h"
#include "text/strings.h"
#include "text/windows1252.h"

namespace sheafwork {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

struct FakeFonts : FontFolders {
  bool HasFontFile(std::string_view fileName) override {
    asked.emplace_back(fileName);
    return EqualsIgnoreCase(fileName, "arial.ttf");
  }
  std::vector<std::string> asked;
};

class PlotTestScanTest : public ::testing::Test {
 protected:
  PlotTestScanTest() {
    printers_.printers = {{"Bureau-HP", "HP LaserJet", "ipp://bureau"},
                          {"Phantom Ole to KDX Printer", "", ""}};
  }

  void Row(const std::string& file, const std::string& layout, const std::string& plotSetup,
           const std::string& device) {
    BatchEntry& entry = session_.List.Append();
    entry.FileName = file;
    entry.Layout = layout;
    entry.PlotSetup = plotSetup;
    entry.PlotDevice = device;
  }

  // The results' lines, read back from a file as the program writes them.
  std::vector<std::string> Run() {
    PlotTestServices services{printers_, fonts_, [] { return LocalTime{2024, 3, 7, 9, 5, 2}; },
                              progress_};
    const std::string results = RunPlotTest(session_, hs_, services);
    return testing::ReadLogLines(dir_.Write("essai.txt", Utf8ToWindows1252(results).bytes));
  }

  std::string Path(const std::string& name) const { return host_.Folder().File(name); }

  // The lines of tests/data/plottest/`name`, {host} and {dir} replaced.
  std::vector<std::string> Expected(const std::string& name) const {
    std::vector<std::string> lines;
    std::istringstream in(testing::ReadTestData("plottest/" + name));
    for (std::string line; std::getline(in, line);) {
      for (const auto& [mark, folder] : {std::pair{"{host}", Path("")}, {"{dir}", dir_.File("")}}) {
        for (auto at = line.find(mark); at != std::string::npos; at = line.find(mark)) {
          line.replace(at, std::string_view(mark).size(), folder);
        }
      }
      lines.push_back(line);
    }
    return lines;
  }

  testing::FakeHost host_;
  testing::TempFolder dir_;
  Session session_{dir_.path().string()};
  HostSession hs_{host_.App(), dir_.File("programme")};
  testing::ListedPrinters printers_;
  FakeFonts fonts_;
  std::function<void(int, int, const std::string&)> progress_;
};

TEST_F(PlotTestScanTest, EveryCheckOfAListGivesItsLinesInRowOrder) {
  // Support files, plotter configurations on and off the search path.
  dir_.Write("support/romans.shx", "");
  dir_.Write("traceurs/DWF6.pc3", "");
  const std::string otherPc3 = dir_.Write("ailleurs/Traceur.pc3", "");
  const std::string missingPc3 = dir_.File("ailleurs/Absent.pc3");
  host_.supportPath = " /nulle/part ; " + dir_.File("support") + " ;";
  host_.printerConfigPath = dir_.File("traceurs");

  auto& plan = host_.AddDrawing("Plan.dwg");
  plan.AddLayout("Présentation1");
  plan.AddPageSetup("A3");
  // A font the host draws without the file (its stand-in for a standard
  // shape font) is not missing; a missing one is named once per style.
  plan.textStyles = {
      {"Standard", "txt"},       {"Titre", "TXT"},          {"Cotes", "ARIAL.TTF"},
      {"Notes", " absente.ttf"}, {"Plan", "romans.shx"},    {"Vieux", "perdue.shx"},
      {"Vieux2", "PERDUE.shx"},  {"Notes2", "absente.ttf"}, {"Aide", "simplex.shx", true}};
  // Windows-1252, with CR LF and lone CR line ends.
  host_.Folder().Write("Plan.xlg", Utf8ToWindows1252("Xréf chargée: Murs\r\n"
                                                     "  Xréf \"Réseaux\" introuvable  \r\n"
                                                     "Fin\rXRÉF Cave: INTROUVABLE\r")
                                       .bytes);

  auto& coupe = host_.AddDrawing("Coupe.dwg");
  coupe.AddLayout("Présentation1");
  coupe.AddPageSetup("A3");
  coupe.AddPageSetup("a1");

  host_.AddDrawing("Facade.dwg");
  host_.AddDrawing("Abime.dwg").openError = host::Error(-2147418113, "Fichier endommagé");

  auto& toit = host_.AddDrawing("Toit.dwg");
  toit.layouts[0].settings.configName = "Bureau-HP";
  toit.AddLayout("Présentation1");  // device "Aucun"
  toit.AddLayout("Présentation2").settings.configName = "Bureau-HP";
  host_.Folder().Write("Toit.xlg", "Xréf « Toit » chargée\nRésolu: Murs\n");

  auto& sol = host_.AddDrawing("Sol.dwg");  // the model tab keeps "Aucun"
  sol.AddLayout("Rez");
  sol.AddLayout("Étage").settings.configName = "Bureau-HP";
  sol.AddLayout("Combles");
  host_.Folder().Write("Sol.xlg", "\xEF\xBB\xBFXréf « Cave » : Introuvable\n");

  host_.AddDrawing("Escalier.dwg");

  session_.ListName = "/listes/Lot été.qx3";
  Row(Path("Plan.dwg"), "Présentation1", "A3", "Bureau-HP");
  Row(Path("Coupe.dwg"), "Présentation9", "A1", "DWF6.pc3");
  Row(Path("Facade.dwg"), "*Onglet courant*", dir_.File("Gabarit.dwt") + " | A0", missingPc3);
  // Printer names are compared exactly.
  Row(Path("Absent.dwg"), "Présentation1", "A3", "bureau-hp");
  Row(Path("Abime.dwg"), "Présentation1", "A3", "Manquant.pc3");
  Row(Path("Toit.dwg"), "Présentation1", "Par défaut", "Par défaut");
  Row(Path("Sol.dwg"), "Toutes les présentations", "", "par DÉFAUT");
  Row(Path("Escalier.dwg"), "Onglet Objet", "Par défaut", otherPc3);

  std::vector<std::tuple<int, int, std::string>> progress;
  progress_ = [&](int row, int count, const std::string& drawing) {
    progress.emplace_back(row, count, drawing);
  };

  EXPECT_EQ(Run(), Expected("every_check.txt"));

  // TrueType fonts are asked for by their trimmed name; the rest went along
  // the support path.
  EXPECT_THAT(fonts_.asked, ElementsAre("ARIAL.TTF", "absente.ttf", "absente.ttf"));
  EXPECT_EQ(progress.size(), 8u);
  EXPECT_EQ(progress.front(), std::make_tuple(1, 8, Path("Plan.dwg")));
  EXPECT_EQ(progress.back(), std::make_tuple(8, 8, Path("Escalier.dwg")));
  // Every drawing that opened was closed again.
  EXPECT_THAT(host_.OpenDocuments(), ElementsAre("*Dessin1.dwg"));
  EXPECT_TRUE(host_.LastOpened(Path("Sol.dwg"))->closed);
}

// On the default device, a layout whose own device this machine lacks plots
// on the host's stand-in: a warning of its own after the "Aucun" ones.
TEST_F(PlotTestScanTest, ALayoutsDeviceMissingHereIsWarnedAfterTheNoneDevices) {
  dir_.Write("traceurs/PDF.pc3", "");
  host_.printerConfigPath = dir_.File("traceurs");
  auto& drawing = host_.AddDrawing("Ailleurs.dwg");
  drawing.layouts[0].settings.configName = "Modèle.pc3";  // the model tab is not plotted
  drawing.AddLayout("Autre PDF").settings.configName = "DWG To PDF.pc3";
  drawing.AddLayout("Vierge");  // "Aucun"
  drawing.AddLayout("Imprimante").settings.configName = "Microsoft Print to PDF";
  drawing.AddLayout("Ici").settings.configName = "PDF.pc3";
  drawing.AddLayout("Bureau").settings.configName = "Bureau-HP";
  Row(Path("Ailleurs.dwg"), "Toutes les présentations", "", "");
  Row(Path("Ailleurs.dwg"), "Imprimante", "", "Par défaut");
  Row(Path("Ailleurs.dwg"), "Autre PDF", "", "PDF.pc3");  // the row's device plots

  const std::vector<std::string> lines = Run();
  EXPECT_EQ(std::vector(lines.begin() + 4, lines.end() - 2), Expected("device_missing_here.txt"));
}

// A failing host call adds lines 149 and 150 and ends only its own step: a
// variable that could not be read is neither changed nor put back, a drawing's
// checks stop but its device is still checked, the next rows are scanned, and
// the log-file option is put back after the folder failed. With the
// pseudo-printer only and no plotter file, a row on the default device says so
// whether its drawing opened or not.
TEST_F(PlotTestScanTest, AHostFailureIsReportedAndTheScanGoesOn) {
  printers_.printers = {{"Phantom Ole to KDX Printer", "", ""}};
  host_.FailOn("Document(Dessin1.dwg).GetVariable(FILEDIA)",
               host::Error(7, "Variable verrouillée"));
  host_.FailOn("Document(Plan.dwg).TextStyles");
  host_.FailOn("SetLogFilePath", host::Error(8, "Préférence refusée"), 1);
  host_.logFileOn = true;
  host_.AddDrawing("Plan.dwg");
  host_.AddDrawing("Coupe.dwg");
  Row(Path("Plan.dwg"), "Manque", "Manque", "Phantom Ole to KDX Printer");
  Row(Path("Coupe.dwg"), "Manque", "Par défaut", "Par défaut");
  Row(Path("Absent.dwg"), "Présentation1", "Par défaut", "");

  EXPECT_EQ(Run(), Expected("host_failure.txt"));
  // The variables of the document the host had open at the start.
  const auto calls = host_.Calls("Document(Dessin1.dwg).");
  EXPECT_THAT(calls, Not(Contains(HasSubstr("SetVariable(FILEDIA"))));
  EXPECT_THAT(calls, Contains("Document(Dessin1.dwg).SetVariable(CMDDIA, 1)"));
  // The host log restarts for each row.
  const std::string off = "Preferences.SetLogFileOn(false)", on = "Preferences.SetLogFileOn(true)";
  EXPECT_THAT(host_.Calls("SetLogFileOn"), ElementsAre(off, on, off, on, off, on, on));
  EXPECT_THAT(host_.OpenDocuments(), ElementsAre("*Dessin1.dwg"));
}

constexpr const char* kErrorTitle = "Erreur de traçage en différé Orvane";
constexpr const char* kAppTitle = "Utilitaire de traçage en différé Orvane";
constexpr const char* kJournalOff =
    "Erreur: Le fichier de journalisation n'est pas activé ou n'est pas accessible";
constexpr const char* kNoResults = "Erreur: pas de résultats pour l'essai de traçage";

// Results as the scan writes them, with characters outside ASCII.
const std::string kResults = "*** Balayage <sans nom>\r\n   Vérification /d/Façade.dwg\r\n";
const std::string kResultsBytes =
    "*** Balayage <sans nom>\r\n   V\xE9rification /d/Fa\xE7"
    "ade.dwg\r\n";

class ResultsActionsTest : public ::testing::Test {
 protected:
  // The one box shown since the last call: critical, with OK only.
  void ExpectOneCriticalBox(const std::string& text, const std::string& title) {
    ASSERT_EQ(prompt_.messages.size(), 1u);
    const PromptMessage box = prompt_.messages[0];
    EXPECT_EQ(std::tie(box.text, box.title), std::tie(text, title));
    EXPECT_TRUE(box.icon == PromptIcon::Critical && box.buttons == PromptButtons::Ok);
    prompt_.messages.clear();
  }

  testing::TempFolder dir_;
  testing::ScriptedPrompt prompt_;
  LogSettings settings_ = DefaultLogSettings(dir_.path().string());
};

// 296 when the journal is off, unnamed or cannot be written, checked before
// 198 for empty results; nothing is written.
TEST_F(ResultsActionsTest, JournalRefusals) {
  const std::string journal = settings_.JournalLogFileName;
  const std::string absent = dir_.File("absent/QXJOURNL.LOG");
  using Case = std::tuple<bool, std::string, std::string, const char*>;
  for (const auto& [on, name, results, message] :
       {Case{false, journal, "", kJournalOff}, Case{true, "", kResults, kJournalOff},
        Case{true, absent, kResults, kJournalOff}, Case{true, journal, "", kNoResults}}) {
    settings_.JournalLogOn = on;
    settings_.JournalLogFileName = name;
    EXPECT_FALSE(AppendResultsToJournal(settings_, results, prompt_)) << name;
    ExpectOneCriticalBox(message, kErrorTitle);
  }
  EXPECT_TRUE(std::filesystem::is_empty(dir_.path()));
}

// Empty results are refused before a name is asked; a cancelled dialog writes
// nothing.
TEST_F(ResultsActionsTest, SaveAsRefusesEmptyResultsAndHonoursACancel) {
  EXPECT_FALSE(SaveResultsAs("", prompt_));
  ExpectOneCriticalBox(kNoResults, kAppTitle);
  EXPECT_TRUE(prompt_.dialogs.empty());

  prompt_.ThenChoose(std::nullopt);
  EXPECT_FALSE(SaveResultsAs(kResults, prompt_));
  ASSERT_EQ(prompt_.dialogs.size(), 1u);
  const auto& dialog = prompt_.dialogs[0];
  EXPECT_TRUE(dialog.save && dialog.request.confirmOverwrite);
  EXPECT_EQ(dialog.request.title, "Enregistrer les résultats de l'essai de traçage");
  EXPECT_EQ(dialog.request.filter, "Fichiers texte (*.txt)|*.txt");
  EXPECT_TRUE(prompt_.messages.empty());
  EXPECT_TRUE(std::filesystem::is_empty(dir_.path()));
}

// The chosen file is replaced by the results in Windows-1252; a failure shows
// message 197 with the system's reason, a full disk included.
TEST_F(ResultsActionsTest, SaveAsWritesTheChosenFileOrShowsWhyNot) {
  const std::string path = dir_.Write("essai.txt", std::string(200, 'x'));  // longer
  prompt_.ThenChoose(path).ThenChoose(dir_.File("absent/essai.txt"));
  EXPECT_TRUE(SaveResultsAs(kResults, prompt_));
  EXPECT_EQ(testing::TempFolder::Read(path), kResultsBytes + "\r\n");
  EXPECT_TRUE(prompt_.messages.empty());

  EXPECT_FALSE(SaveResultsAs(kResults, prompt_));
  ExpectOneCriticalBox(
      std::string("Erreur lors de l'enregistrement des résultats de l'essai de traçage, erreur de "
                  "description: ") +
          std::strerror(ENOENT),
      kErrorTitle);
  std::string error;
  EXPECT_FALSE(WriteResultsFile("/dev/full", kResults, error));
  EXPECT_EQ(error, std::strerror(ENOSPC));
}

}  // namespace
}  // namespace sheafwork
