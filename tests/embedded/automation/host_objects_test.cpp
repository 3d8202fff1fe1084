#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "embedded/automation/embedded_fixture.h"
#include "fakes/test_data.h"
#include "host/sysvar.h"

namespace sheafwork::embedded {
namespace {

using host::SysVarValue;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::vector<std::string> LayoutNames(host::Document& doc) {
  std::vector<std::string> names;
  auto layouts = doc.GetLayouts();
  for (std::int32_t i = 0; i < layouts->Count(); ++i) names.push_back(layouts->Item(i)->Name());
  return names;
}

TEST_F(EmbeddedHostTest, StartsWithOneUntitledDocumentActiveAndTheDefaultVariables) {
  auto host = Host();
  auto doc = host->ActiveDocument();
  EXPECT_EQ(std::tuple(host->Path(), host->GetDocuments()->Count(), doc->FullName(),
                       doc->ReadOnly(), doc->ActiveSpace(), host->GetOrvaState()->IsQuiescent()),
            std::tuple(data.path().string(), 1, "Dessin1.dwg", false, 1, true));
  EXPECT_THAT(LayoutNames(*doc), ElementsAre("Objet", "Présentation1"));

  // System variables start with the host's defaults and keep their types.
  for (const auto& row : testing::ReadTestTable("dxf/automation/variables.tsv")) {
    SCOPED_TRACE(row.where);
    const SysVarValue value = row[2] == "i16"    ? SysVarValue(std::int16_t(std::stoi(row[3])))
                              : row[2] == "real" ? SysVarValue(std::stod(row[3]))
                                                 : SysVarValue(row[3]);
    if (row[0] == "reads") {
      EXPECT_EQ(doc->GetVariable(row[1]), value);
    } else {
      EXPECT_EQ(ErrorOf([&] { doc->SetVariable(row[1], value); }).number(), std::stoi(row[4]));
    }
  }
  EXPECT_EQ(doc->GetVariable("LOGFILENAME"),
            SysVarValue((user.path() / "Dessin1_sheafwork.log").string()));
  doc->SetVariable("expert", std::int32_t{2});
  EXPECT_EQ(doc->GetVariable("EXPERT"), SysVarValue(std::int16_t{2}));
  doc->SetVariable("SHPNAME", std::string("ltypeshp"));
  EXPECT_EQ(doc->GetVariable("SHPNAME"), SysVarValue(std::string("ltypeshp")));
  EXPECT_EQ(ErrorOf([&] { doc->GetVariable("INCONNUE"); }).number(), 1004);
}

TEST_F(EmbeddedHostTest, LayoutsListTheModelAsObjetThenPaperLayoutsInTabOrder) {
  auto doc = Open(AddDrawing("Plan.dxf"));
  EXPECT_THAT(LayoutNames(*doc), ElementsAre("Objet", "Présentation1", "Coupe"));
  auto model = doc->GetLayouts()->Item(0);
  EXPECT_TRUE(model->ModelType());
  EXPECT_EQ(ErrorOf([&] { doc->GetLayouts()->Item(3); }).number(), 9);

  // The active space and the active layout follow each other.
  doc->SetActiveLayout(LayoutNamed(*doc, "Coupe"));
  EXPECT_EQ(std::tuple(doc->ActiveSpace(), doc->ActiveLayout()->Name(),
                       host::SysVarAsInteger(doc->GetVariable("TILEMODE"))),
            std::tuple(0, "Coupe", 0));
  doc->SetActiveSpace(1);
  EXPECT_EQ(doc->ActiveLayout()->Name(), "Objet");
  doc->SetActiveSpace(0);  // back to the layout last shown in paper space
  EXPECT_EQ(doc->ActiveLayout()->Name(), "Coupe");
  doc->SetVariable("TILEMODE", std::int16_t{1});
  EXPECT_EQ(doc->ActiveSpace(), 1);

  // A layout of another document is refused.
  auto other = Open(AddDrawing("Autre.dxf"));
  const host::Error foreign = ErrorOf([&] { doc->SetActiveLayout(other->GetLayouts()->Item(1)); });
  EXPECT_THAT(foreign.description(), HasSubstr("n'appartient pas"));
  EXPECT_EQ(doc->ActiveSpace(), 1);
}

TEST_F(EmbeddedHostTest, OpenedDocumentsAreNotActiveUntilActivated) {
  const std::string plan = AddDrawing("Plan.dxf");
  auto doc = Open(plan);
  EXPECT_EQ(Host()->ActiveDocument()->FullName(), "Dessin1.dwg");
  EXPECT_TRUE(doc->ReadOnly());
  doc->Activate();
  EXPECT_EQ(std::tuple(Host()->ActiveDocument()->FullName(), Host()->GetDocuments()->Count()),
            std::tuple(plan, 2));

  // Closing the active document makes another one active; its objects then
  // refuse every call.
  auto layers = doc->GetLayers();
  doc->Close(false);
  EXPECT_EQ(std::tuple(Host()->ActiveDocument()->FullName(), Host()->GetDocuments()->Count()),
            std::tuple("Dessin1.dwg", 1));
  EXPECT_EQ(ErrorOf([&] { layers->Count(); }).number(), 91);
  EXPECT_THAT(ErrorOf([&] { doc->FullName(); }).description(), HasSubstr("est fermé"));
}

// A drawing that is not there or cannot be read, or a DWG drawing without a
// converter or with one that fails, is a host error naming the reason.
TEST_F(EmbeddedHostTest, OpenFailuresAreHostErrorsWithTheirOwnNumbers) {
  const std::string missing = files.File("Absent.dxf");
  const host::Error notFound = ErrorOf([&] { Open(missing); });
  EXPECT_EQ(notFound.number(), host::kFileNotFound);
  EXPECT_EQ(notFound.description(), "Fichier introuvable : " + missing);

  const std::string bad = files.Write("Casse.dxf", "inconnu");
  const host::Error unreadable = ErrorOf([&] { Open(bad); });
  EXPECT_NE(unreadable.number(), host::kFileNotFound);
  EXPECT_EQ(unreadable.description(), bad + ", ligne 1 : SECTION attendu");
  // The caller only logs that the open failed: the host names the reason.
  EXPECT_EQ(display->failures, std::vector<std::string>{unreadable.description()});

  const std::string dwg = files.Write("Plan.dwg", "Plan.dwg");
  const host::Error noConverter = ErrorOf([&] { Open(dwg); });
  EXPECT_EQ(noConverter.description(),
            "aucun convertisseur DWG n'est installé (lancez scripts/setup.sh, ou nommez-en un dans "
            "SHEAFWORK_DWG_CONVERTER) : " +
                dwg);

  // The converter named by the preferences, changed while the host runs.
  auto preferences = std::dynamic_pointer_cast<EmbeddedPreferences>(Host()->GetPreferences());
  ASSERT_TRUE(preferences);
  EXPECT_EQ(preferences->DwgConverter(), "");
  const std::string converters = testing::TestData("dwg/converters/");
  preferences->SetDwgConverter(converters + "unreadable-output.sh");
  EXPECT_THAT(ErrorOf([&] { Open(dwg); }).description(), HasSubstr("SECTION attendu"));
  preferences->SetDwgConverter(converters + "silent-failure.sh");
  EXPECT_THAT(ErrorOf([&] { Open(dwg); }).description(), HasSubstr("code 3"));
  preferences->SetDwgConverter(files.File("nulle-part"));
  EXPECT_THAT(ErrorOf([&] { Open(dwg); }).description(), HasSubstr("la conversion DWG a échoué"));

  const std::string text = files.Write("Notes.txt", "");
  EXPECT_THAT(ErrorOf([&] { Open(text); }).description(), HasSubstr(text));

  // Only host errors leave the host.
  options.reader = [](const std::string&) -> Drawing { throw std::runtime_error("disque"); };
  app.reset();
  const std::string any = AddDrawing("Plan.dxf");
  EXPECT_THAT(ErrorOf([&] { Open(any); }).description(), HasSubstr("disque"));
  EXPECT_EQ(Host()->GetDocuments()->Count(), 1);
}

// Host-wide variables are shared, a document's own are not; its layers,
// text styles and views are its own copy of the file's; SaveAs writes it
// under the new name.
TEST_F(EmbeddedHostTest, ADocumentHasItsOwnVariablesObjectsAndName) {
  auto untitled = Host()->ActiveDocument();
  const std::string plan = AddDrawing("Plan.dxf");
  auto doc = Open(plan);
  untitled->SetVariable("XREFCTL", std::int16_t{1});
  untitled->SetVariable("REGENMODE", std::int16_t{0});
  EXPECT_EQ(doc->GetVariable("XREFCTL"), SysVarValue(std::int16_t{1}));
  EXPECT_EQ(doc->GetVariable("REGENMODE"), SysVarValue(std::int16_t{1}));
  EXPECT_EQ(doc->GetVariable("DWGNAME"), SysVarValue(std::string("Plan.dxf")));
  EXPECT_EQ(doc->GetVariable("DWGPREFIX"), SysVarValue(files.path().string() + "/"));
  Host()->GetPreferences()->SetLogFilePath("/var/log/traces");
  EXPECT_EQ(doc->GetVariable("LOGFILENAME"),
            SysVarValue(std::string("/var/log/traces/Plan_sheafwork.log")));

  auto layers = doc->GetLayers();
  ASSERT_EQ(layers->Count(), 3);
  auto cotes = layers->Item(2);
  EXPECT_EQ(std::tuple(cotes->Name(), cotes->Plottable()), std::tuple("COTES", false));
  cotes->SetPlottable(true);
  cotes->SetFreeze(true);
  layers->Item(1)->SetLayerOn(false);
  auto again = doc->GetLayers();
  EXPECT_EQ(
      std::tuple(again->Item(2)->Plottable(), again->Item(2)->Freeze(), again->Item(1)->LayerOn()),
      std::tuple(true, true, false));
  // Another document of the same file starts from the file.
  EXPECT_FALSE(Open(plan)->GetLayers()->Item(2)->Plottable());

  auto styles = doc->GetTextStyles();
  ASSERT_EQ(styles->Count(), 2);  // the shape-file record is left out
  EXPECT_EQ(std::tuple(styles->Item(1)->Name(), styles->Item(1)->FontFile()),
            std::tuple("Titre", "romans.shx"));
  auto views = doc->GetViews();
  ASSERT_EQ(views->Count(), 2);
  EXPECT_EQ(views->Item(1)->Name(), "Détail");

  const std::string copy = files.File("Copie.dxf");
  doc->SaveAs(copy);
  EXPECT_EQ(testing::TempFolder::Read(copy), "Plan.dxf");
  EXPECT_EQ(doc->FullName(), copy);
  const std::string scratch = files.File("QXTEMP.DWG");
  untitled->SaveAs(scratch);
  EXPECT_THAT(testing::TempFolder::Read(scratch), HasSubstr("EOF"));
  EXPECT_EQ(ErrorOf([&] { doc->SaveAs(files.File("absent/x.dxf")); }).number(), 75);
}

// The device "Aucun" is an empty or "none" device, papers come from the
// device, and a page setup's settings are copied over a layout's.
TEST_F(EmbeddedHostTest, ALayoutsDeviceAndPaperAndTheSettingsCopiedFromASetup) {
  auto doc = Open(AddDrawing("Plan.dxf"));
  // The model's device is "none_device", the section's empty.
  auto plan = LayoutNamed(*doc, "Présentation1");
  EXPECT_EQ(std::tuple(LayoutNamed(*doc, "Objet")->ConfigName(),
                       LayoutNamed(*doc, "Coupe")->ConfigName(), plan->ConfigName()),
            std::tuple("Aucun", "Aucun", "PDF.pc3"));
  plan->SetConfigName("Aucun");
  EXPECT_EQ(plan->ConfigName(), "Aucun");
  // The paper stays, as the only one offered.
  EXPECT_THAT(plan->GetCanonicalMediaNames(), ElementsAre("ISO A3 (420.00 x 297.00 mm)"));

  EXPECT_EQ(ErrorOf([&] { plan->SetConfigName("Absent.pc3"); }).number(), 1006);
  EXPECT_EQ(plan->ConfigName(), "Aucun");
  plan->SetConfigName("Bureau-HP");
  EXPECT_EQ(plan->ConfigName(), "Bureau-HP");

  // Papers come from the device, and the layout's own paper stays valid.
  auto section = LayoutNamed(*doc, "Coupe");
  section->SetConfigName("PDF.pc3");
  // Its own sheet is not one of the device's, yet stays listed and current.
  const auto media = section->GetCanonicalMediaNames();
  EXPECT_EQ(std::tuple(media.size(), media.back(), section->CanonicalMediaName()),
            std::tuple(21u, "Feuille maison", "Feuille maison"));
  section->SetCanonicalMediaName("Feuille maison");
  EXPECT_EQ(ErrorOf([&] { section->SetCanonicalMediaName("ISO B2"); }).number(), 5);

  // Choosing one of the device's sheets takes its size.
  section->SetCanonicalMediaName("ISO A1 (594.00 x 841.00 mm)");
  EXPECT_EQ(section->CanonicalMediaName(), "ISO A1 (594.00 x 841.00 mm)");
  doc->SetActiveLayout(section);
  ASSERT_TRUE(doc->GetPlot()->PlotToDevice(std::nullopt));
  ASSERT_EQ(plots.size(), 1u);
  const PlotSettings& plotted = plots[0].settings;
  EXPECT_EQ(std::tuple(plotted.mediaName, plotted.paperWidth, plotted.paperHeight),
            std::tuple("ISO A1 (594.00 x 841.00 mm)", 594, 841));

  // CopyFrom takes every setting but the target's name and space.
  auto setups = doc->GetPlotConfigurations();
  ASSERT_EQ(setups->Count(), 2);
  auto a1 = setups->Item(0);
  EXPECT_EQ(std::tuple(a1->Name(), a1->ModelType(), setups->Item(1)->ModelType()),
            std::tuple("A1 PDF", false, true));

  section->CopyFrom(*a1);
  double numerator = 0, denominator = 0;
  section->GetCustomScale(numerator, denominator);
  EXPECT_EQ(std::tuple(section->Name(), section->ModelType(), section->ConfigName(),
                       section->CanonicalMediaName(), section->UseStandardScale(), denominator,
                       section->PlotType()),
            std::tuple("Coupe", false, "PDF.pc3", "ISO A1 (841.00 x 594.00 mm)", false, 50,
                       kPlotExtents));

  // Into the model layout: it stays the model layout.
  auto model = LayoutNamed(*doc, "Objet");
  model->CopyFrom(*section);
  EXPECT_EQ(std::tuple(model->ModelType(), model->Name(), model->ConfigName()),
            std::tuple(true, "Objet", "PDF.pc3"));
  // The setup itself is unchanged.
  EXPECT_EQ(a1->PlotType(), kPlotExtents);
}

TEST_F(EmbeddedHostTest, PlotSettingsRefuseValuesOutOfTheirRange) {
  auto layout = Host()->ActiveDocument()->ActiveLayout();
  layout->SetStandardScale(32);
  EXPECT_EQ(layout->StandardScale(), 32);
  layout->SetCustomScale(1, 200);
  const std::vector<std::pair<const char*, std::function<void()>>> refused = {
      {"scale 33", [&] { layout->SetStandardScale(33); }},
      {"scale -1", [&] { layout->SetStandardScale(-1); }},
      {"denominator 0", [&] { layout->SetCustomScale(1, 0); }},
      {"numerator 0", [&] { layout->SetCustomScale(0, 1); }},
      {"plot type 6", [&] { layout->SetPlotType(6); }},
      {"rotation 4", [&] { layout->SetPlotRotation(4); }},
      {"units 3", [&] { layout->SetPaperUnits(3); }},
      {"unknown view", [&] { layout->SetViewToPlot("Nulle"); }},
  };
  for (const auto& [what, call] : refused) EXPECT_EQ(ErrorOf(call).number(), 5) << what;
  EXPECT_EQ(layout->StandardScale(), 32);
  double numerator = 0, denominator = 0;
  layout->GetCustomScale(numerator, denominator);
  EXPECT_EQ(denominator, 200);
}

TEST_F(EmbeddedHostTest, AfterQuitEveryMemberFails) {
  auto host = Host();
  auto doc = host->ActiveDocument();
  auto preferences = host->GetPreferences();
  host->Quit();
  EXPECT_EQ(ErrorOf([&] { host->ActiveDocument(); }).number(), 91);
  EXPECT_EQ(ErrorOf([&] { host->Width(); }).number(), 91);
  EXPECT_EQ(ErrorOf([&] { doc->GetVariable("SDI"); }).number(), 91);
  EXPECT_EQ(ErrorOf([&] { preferences->LogFileOn(); }).number(), 91);
  EXPECT_EQ(ErrorOf([&] { host->Quit(); }).number(), 91);
}

// The plot test asks the host about fonts it finds no file of: ours draws
// the standard shape fonts with its stroke font, and finds shape fonts
// along its support path in any letter case, ".shx" added.
TEST_F(EmbeddedHostTest, AFontIsAvailableWhenFoundOnTheSupportPathOrStandard) {
  const std::string fonts = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/fonts";
  auto doc = Open(AddDrawing("Polices.dxf", ReadDxfFile(fonts + "/shape_fonts.dxf")));
  std::dynamic_pointer_cast<EmbeddedPreferences>(Host()->GetPreferences())->SetSupportPath(fonts);
  auto styles = doc->GetTextStyles();
  std::map<std::string, bool> available;
  for (std::int32_t i = 0; i < styles->Count(); ++i) {
    available[styles->Item(i)->Name()] = styles->Item(i)->FontAvailable();
  }
  const std::map<std::string, bool> expected = {{"Standard", true}, {"TRAIT", true},
                                                {"UNI", true},      {"ROMANS", true},
                                                {"PERDU", false},   {"ARIAL", false}};
  EXPECT_EQ(available, expected);
}

}  // namespace
}  // namespace sheafwork::embedded
