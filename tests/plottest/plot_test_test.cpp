#include "plottest/plot_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "fakes/fake_host.h"
#include "fakes/temp_folder.h"
#include "text/strings.h"
#include "text/windows1252.h"

namespace sheafwork {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::Not;

constexpr const char* kTitleStart =
    "*** Balayage de l'essai de traçage de la liste de traçage en différé <";
constexpr const char* kRestoreVariables =
    "-- Restauration des variables système...XREFCTL, FILEDIA, CMDECHO, CMDDIA, SHPNAME";
constexpr const char* kSettingLogFile = "-- Configuration du fichier journal...";
constexpr const char* kScanning = "-- Balayage des dessins en arrière-plan...";
constexpr const char* kHostFailure =
    "ERREUR: problème de récupération/configuration de la variable système Orvane";

class FakePrinters : public PrinterCatalog {
 public:
  std::vector<PrinterInfo> Printers() override { return list; }
  std::vector<PrinterInfo> list;
};

class FakeFonts : public FontFolders {
 public:
  bool HasFontFile(std::string_view fileName) override {
    asked.emplace_back(fileName);
    for (const auto& file : files) {
      if (EqualsIgnoreCase(file, fileName)) return true;
    }
    return false;
  }
  std::vector<std::string> files;
  std::vector<std::string> asked;
};

// The results split at CR LF; a line break of any other kind fails the test.
std::vector<std::string> Lines(const std::string& results) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < results.size()) {
    const std::size_t end = results.find("\r\n", start);
    if (end == std::string::npos) {
      ADD_FAILURE() << "last line without CR LF: " << results.substr(start);
      lines.push_back(results.substr(start));
      break;
    }
    lines.push_back(results.substr(start, end - start));
    start = end + 2;
  }
  for (const auto& line : lines) {
    EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos) << "stray line break in: " << line;
  }
  return lines;
}

std::string XrefWarning(const std::string& logName) {
  return "AVERTISSEMENT: fichier xréf <" + logName +
         "> inaccessible, vérification de la xréf ignorée";
}

std::string NoneDeviceWarning(const std::string& layout) {
  return "AVERTISSEMENT: Option de traceur \"Aucun\" sélectionnée pour la présentation <" + layout +
         ">.  Si cette option n'est pas remplacée, le tracé ne s'effectuera pas";
}

class PlotTestScanTest : public ::testing::Test {
 protected:
  PlotTestScanTest() {
    printers_.list = {{"Bureau-HP", "HP LaserJet", "ipp://bureau"},
                      {"Phantom Ole to KDX Printer", "", ""}};
    fonts_.files = {"arial.ttf"};
  }

  BatchEntry& Row(const std::string& file, const std::string& layout, const std::string& plotSetup,
                  const std::string& device) {
    BatchEntry& entry = session_.List.Append();
    entry.FileName = file;
    entry.Layout = layout;
    entry.PlotSetup = plotSetup;
    entry.PlotDevice = device;
    return entry;
  }

  std::string Run() {
    PlotTestServices services{printers_, fonts_, [] { return LocalTime{2024, 3, 7, 9, 5, 2}; },
                              progress_};
    return RunPlotTest(session_, hs_, services);
  }

  std::string Path(const std::string& name) const { return host_.Folder().File(name); }

  // The variable calls made on the document the host had open at the start.
  std::vector<std::string> StartDocumentVariableCalls() const {
    std::vector<std::string> calls;
    for (const auto& call : host_.Calls("Document(Dessin1.dwg).")) {
      if (call.find("Variable(") != std::string::npos && call.find("(SDI)") == std::string::npos) {
        calls.push_back(call);
      }
    }
    return calls;
  }

  testing::FakeHost host_;
  testing::TempFolder dir_;
  Session session_{dir_.path().string()};
  HostSession hs_{host_.App(), dir_.File("programme")};
  FakePrinters printers_;
  FakeFonts fonts_;
  std::function<void(int, int, const std::string&)> progress_;
};

TEST_F(PlotTestScanTest, EveryCheckOfAListGivesItsLinesInRowOrder) {
  // Support files, plotter configurations on and off the search path.
  std::filesystem::create_directories(dir_.path() / "support");
  std::filesystem::create_directories(dir_.path() / "traceurs");
  std::filesystem::create_directories(dir_.path() / "ailleurs");
  dir_.Write("support/romans.shx", "");
  dir_.Write("traceurs/DWF6.pc3", "");
  const std::string otherPc3 = dir_.Write("ailleurs/Traceur.pc3", "");
  const std::string missingPc3 = dir_.File("ailleurs/Absent.pc3");
  host_.supportPath = " /nulle/part ; " + dir_.File("support") + " ;";
  host_.printerConfigPath = dir_.File("traceurs");

  auto& plan = host_.AddDrawing("Plan.dwg");
  plan.AddLayout("Présentation1");
  plan.AddPageSetup("A3");
  plan.textStyles = {{"Standard", "txt"},       {"Titre", "TXT"},       {"Cotes", "ARIAL.TTF"},
                     {"Notes", " absente.ttf"}, {"Plan", "romans.shx"}, {"Vieux", "perdue.shx"},
                     {"Vieux2", "perdue.shx"}};
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

  const std::vector<std::string> expected = {
      std::string(kTitleStart) + "/listes/Lot été.qx3> à 03-07-2024, 09:05:02",
      "-- Configuration des systèmes variables...les valeurs étaient XREFCTL <0>, FILEDIA <1>, "
      "CMDECHO <0>, CMDDIA <1>, SHPNAME <>",
      kSettingLogFile,
      kScanning,
      "   Vérification " + Path("Plan.dwg"),
      "ERREUR:  XREF manquante: Xréf \"Réseaux\" introuvable",
      "ERREUR:  XREF manquante: XRÉF Cave: INTROUVABLE",
      "ERREUR: POLICE/FORME manquante: absente.ttf",
      "ERREUR: POLICE/FORME manquante: perdue.shx",
      "ERREUR: POLICE/FORME manquante: perdue.shx",
      "   Vérification " + Path("Coupe.dwg"),
      XrefWarning(Path("Coupe.xlg")),
      "ERREUR: Présentation <Présentation9> introuvable dans le dessin",
      "ERREUR: Paramètres du tracé <A1> introuvables dans le dessin",
      "   Vérification " + Path("Facade.dwg"),
      XrefWarning(Path("Facade.xlg")),
      "ERREUR: Impossible d'accéder au fichier de configuration du tracé: " + missingPc3,
      "   Vérification " + Path("Absent.dwg"),
      "ERREUR: impossible d'ouvrir le dessin",
      "ERREUR: l'imprimante système n'est pas accessible: bureau-hp",
      "   Vérification " + Path("Abime.dwg"),
      "ERREUR: lors de l'ouverture du dessin, #-2147418113",
      "ERREUR: Impossible d'accéder au fichier de configuration du tracé: Manquant.pc3",
      "   Vérification " + Path("Toit.dwg"),
      NoneDeviceWarning("Présentation1"),
      "   Vérification " + Path("Sol.dwg"),
      "ERREUR:  XREF manquante: Xréf « Cave » : Introuvable",
      NoneDeviceWarning("Rez"),
      NoneDeviceWarning("Combles"),
      "   Vérification " + Path("Escalier.dwg"),
      XrefWarning(Path("Escalier.xlg")),
      "-- Restauration du fichier journal...</opt/orvane/logs>",
      kRestoreVariables,
  };
  EXPECT_THAT(Lines(Run()), ElementsAreArray(expected));

  // TrueType fonts are asked for by their trimmed name; the rest went along
  // the support path.
  EXPECT_THAT(fonts_.asked, ElementsAre("ARIAL.TTF", "absente.ttf"));
  EXPECT_EQ(progress.size(), 8u);
  EXPECT_EQ(progress.front(), std::make_tuple(1, 8, Path("Plan.dwg")));
  EXPECT_EQ(progress.back(), std::make_tuple(8, 8, Path("Escalier.dwg")));
  // Every drawing that opened was closed again.
  EXPECT_THAT(host_.OpenDocuments(), ElementsAre("*Dessin1.dwg"));
  EXPECT_TRUE(host_.LastOpened(Path("Sol.dwg"))->closed);
}

TEST_F(PlotTestScanTest, AnEmptyListStillSetsAndRestoresTheHost) {
  EXPECT_EQ(Run(), std::string(kTitleStart) + "sans nom> à 03-07-2024, 09:05:02\r\n" +
                       "-- Configuration des systèmes variables...les valeurs étaient XREFCTL <0>, "
                       "FILEDIA <1>, CMDECHO <0>, CMDDIA <1>, SHPNAME <>\r\n" +
                       kSettingLogFile + "\r\n" + kScanning + "\r\n" +
                       "ERREUR: Aucun dessin trouvé en arrière-plan\r\n" +
                       "-- Restauration du fichier journal...</opt/orvane/logs>\r\n" +
                       kRestoreVariables + "\r\n");
}

TEST_F(PlotTestScanTest, VariablesAreSetForTheScanAndPutBackWithTheirOwnTypes) {
  host_.variables["XREFCTL"] = std::int16_t{2};
  host_.variables["FILEDIA"] = std::int32_t{1};
  host_.variables["CMDECHO"] = 0.5;
  host_.variables["SHPNAME"] = std::string("hachure");
  host_.AddDrawing("Plan.dwg").layouts[0].settings.configName = "Bureau-HP";
  Row(Path("Plan.dwg"), "*Onglet courant*", "Par défaut", "Par défaut");

  auto start = std::dynamic_pointer_cast<testing::FakeDocument>(host_.App()->ActiveDocument());
  ASSERT_NE(start, nullptr);
  const auto values = [&] {
    std::vector<host::SysVarValue> list;
    for (const char* name : {"XREFCTL", "FILEDIA", "CMDECHO", "CMDDIA", "SHPNAME"}) {
      list.push_back(start->variables.at(name));
    }
    return list;
  };
  std::vector<host::SysVarValue> duringScan;
  progress_ = [&](int, int, const std::string&) { duringScan = values(); };
  const auto lines = Lines(Run());

  EXPECT_EQ(lines.at(1),
            "-- Configuration des systèmes variables...les valeurs étaient XREFCTL <2>, "
            "FILEDIA <1>, CMDECHO <0.5>, CMDDIA <1>, SHPNAME <hachure>");
  EXPECT_THAT(duringScan,
              ElementsAre(host::SysVarValue(std::int16_t{1}), host::SysVarValue(std::int16_t{0}),
                          host::SysVarValue(std::int16_t{1}), host::SysVarValue(std::int16_t{0}),
                          host::SysVarValue(std::string())));
  const std::string doc = "Document(Dessin1.dwg).";
  EXPECT_THAT(StartDocumentVariableCalls(),
              ElementsAre(doc + "GetVariable(XREFCTL)", doc + "GetVariable(FILEDIA)",
                          doc + "GetVariable(CMDECHO)", doc + "GetVariable(CMDDIA)",
                          doc + "GetVariable(SHPNAME)", doc + "SetVariable(XREFCTL, 1)",
                          doc + "SetVariable(FILEDIA, 0)", doc + "SetVariable(CMDECHO, 1)",
                          doc + "SetVariable(CMDDIA, 0)", doc + "SetVariable(SHPNAME, )",
                          doc + "SetVariable(XREFCTL, 2)", doc + "SetVariable(FILEDIA, 1)",
                          doc + "SetVariable(CMDECHO, 0.5)", doc + "SetVariable(CMDDIA, 1)",
                          doc + "SetVariable(SHPNAME, hachure)"));
  EXPECT_THAT(values(),
              ElementsAre(host::SysVarValue(std::int16_t{2}), host::SysVarValue(std::int32_t{1}),
                          host::SysVarValue(0.5), host::SysVarValue(std::int16_t{1}),
                          host::SysVarValue(std::string("hachure"))));
}

TEST_F(PlotTestScanTest, TheHostLogGoesToTheProgramFolderAndRestartsForEachDrawing) {
  host_.logFilePath = "/opt/orvane/journaux";
  host_.logFileOn = true;
  host_.AddDrawing("Plan.dwg");
  host_.AddDrawing("Coupe.dwg");
  Row(Path("Plan.dwg"), "*Onglet courant*", "Par défaut", "Bureau-HP");
  Row(Path("Coupe.dwg"), "*Onglet courant*", "Par défaut", "Bureau-HP");
  std::vector<std::string> folderDuringScan;
  progress_ = [&](int, int, const std::string&) { folderDuringScan.push_back(host_.logFilePath); };

  const auto lines = Lines(Run());

  EXPECT_THAT(folderDuringScan, ElementsAre(hs_.ProgramFolder, hs_.ProgramFolder));
  EXPECT_THAT(host_.Calls("Preferences."),
              ElementsAre("Preferences.LogFilePath()", "Preferences.LogFileOn()",
                          "Preferences.SetLogFilePath(" + hs_.ProgramFolder + ")",
                          "Preferences.SetLogFileOn(false)", "Preferences.SetLogFileOn(true)",
                          "Preferences.SetLogFileOn(false)", "Preferences.SetLogFileOn(true)",
                          "Preferences.SetLogFilePath(/opt/orvane/journaux)",
                          "Preferences.SetLogFileOn(true)"));
  EXPECT_EQ(host_.logFilePath, "/opt/orvane/journaux");
  EXPECT_TRUE(host_.logFileOn);
  EXPECT_EQ(lines.at(lines.size() - 2),
            "-- Restauration du fichier journal...</opt/orvane/journaux>");
}

TEST_F(PlotTestScanTest, AHostFailureEndsOnlyThatDrawingsChecks) {
  auto& plan = host_.AddDrawing("Plan.dwg");
  plan.textStyles = {{"Notes", "absente.ttf"}};
  host_.AddDrawing("Coupe.dwg");
  host_.FailOn("Document(Plan.dwg).TextStyles", host::Error(-2147467259, "Échec simulé"));
  Row(Path("Plan.dwg"), "Manque", "Manque", "Imprimante fantôme");
  Row(Path("Coupe.dwg"), "Manque", "Par défaut", "Bureau-HP");

  const auto lines = Lines(Run());

  const std::vector<std::string> rows(lines.begin() + 4, lines.end() - 2);
  EXPECT_THAT(rows,
              ElementsAre("   Vérification " + Path("Plan.dwg"), XrefWarning(Path("Plan.xlg")),
                          kHostFailure, "ERREUR: #-2147467259, Échec simulé",
                          "ERREUR: l'imprimante système n'est pas accessible: "
                          "Imprimante fantôme",
                          "   Vérification " + Path("Coupe.dwg"), XrefWarning(Path("Coupe.xlg")),
                          "ERREUR: Présentation <Manque> introuvable dans le dessin"));
  EXPECT_TRUE(host_.LastOpened(Path("Plan.dwg"))->closed);
  EXPECT_THAT(host_.OpenDocuments(), ElementsAre("*Dessin1.dwg"));
}

TEST_F(PlotTestScanTest, FailuresWhileSettingUpOrRestoringAreReportedAndTheScanGoesOn) {
  host_.FailOn("Document(Dessin1.dwg).GetVariable(FILEDIA)",
               host::Error(7, "Variable verrouillée"));
  // The folder is set for the scan, but cannot be put back.
  host_.FailOn("SetLogFilePath", host::Error(8, "Préférence refusée"), 1);
  host_.logFileOn = true;

  const auto lines = Lines(Run());

  EXPECT_THAT(
      lines,
      ElementsAre(::testing::StartsWith(kTitleStart), kHostFailure,
                  "ERREUR: #7, Variable verrouillée",
                  "-- Configuration des systèmes variables...les valeurs étaient "
                  "XREFCTL <0>, FILEDIA <>, CMDECHO <0>, CMDDIA <1>, SHPNAME <>",
                  kSettingLogFile, kScanning, "ERREUR: Aucun dessin trouvé en arrière-plan",
                  kHostFailure, "ERREUR: #8, Préférence refusée",
                  "-- Restauration du fichier journal...</opt/orvane/logs>", kRestoreVariables));
  // A variable that could not be read is neither changed nor put back; the
  // others are, and so is the log-file option after the failed folder.
  const auto calls = StartDocumentVariableCalls();
  EXPECT_THAT(calls, Not(Contains(::testing::HasSubstr("SetVariable(FILEDIA"))));
  EXPECT_THAT(calls, Contains("Document(Dessin1.dwg).SetVariable(CMDDIA, 1)"));
  EXPECT_EQ(host_.Calls("Preferences.SetLogFileOn").back(), "Preferences.SetLogFileOn(true)");
}

TEST_F(PlotTestScanTest, WithoutAnyDeviceTheDefaultDeviceIsReportedForEveryRow) {
  printers_.list = {{"Phantom Ole to KDX Printer", "", ""}};
  std::filesystem::create_directories(dir_.path() / "vide");
  host_.printerConfigPath = dir_.File("vide");
  host_.AddDrawing("Plan.dwg").layouts[0].settings.configName = "DWF6.pc3";
  Row(Path("Plan.dwg"), "*Onglet courant*", "Par défaut", "Par défaut");
  Row(Path("Absent.dwg"), "Présentation1", "Par défaut", "");
  Row(Path("Plan.dwg"), "*Onglet courant*", "Par défaut", "Phantom Ole to KDX Printer");

  const auto lines = Lines(Run());

  const std::string noDevice =
      "ERREUR: Entrée définie pour utiliser la configuration de tracé par défaut, mais aucun "
      "traceur (système ou non) n'est accessible";
  const std::vector<std::string> rows(lines.begin() + 4, lines.end() - 2);
  EXPECT_THAT(
      rows,
      ElementsAre("   Vérification " + Path("Plan.dwg"), XrefWarning(Path("Plan.xlg")), noDevice,
                  "   Vérification " + Path("Absent.dwg"), "ERREUR: impossible d'ouvrir le dessin",
                  noDevice, "   Vérification " + Path("Plan.dwg"), XrefWarning(Path("Plan.xlg")),
                  "ERREUR: l'imprimante système n'est pas accessible: Phantom Ole "
                  "to KDX Printer"));
}

}  // namespace
}  // namespace sheafwork
