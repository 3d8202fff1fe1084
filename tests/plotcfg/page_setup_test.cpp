#include "plotcfg/page_setup.h"

#include <cerrno>
#include <cstring>
#include <fstream>

#include "fakes/scripted_prompt.h"
#include "plotcfg_fixture.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(GetNPSInfoForEntryTest, SplitsAtTheFirstBarOnly) {
  struct Case {
    const char* plotSetup;
    NpsInfo expected;
  };
  const Case cases[] = {
      {"Par défaut", {"/plans/a.dwg", "Par défaut", false}},
      {"  A3 paysage ", {"/plans/a.dwg", "  A3 paysage ", false}},
      {" /mod/b.dwt | A3 paysage ", {"/mod/b.dwt", "A3 paysage", true}},
      {"/mod/b.dwt|A3|bis", {"/mod/b.dwt", "A3|bis", true}},
      {"|A3", {"", "A3", true}},
  };
  for (const Case& c : cases) {
    const NpsInfo info = GetNPSInfoForEntry(c.plotSetup, "/plans/a.dwg");
    EXPECT_EQ(info.drawing, c.expected.drawing) << c.plotSetup;
    EXPECT_EQ(info.name, c.expected.name) << c.plotSetup;
    EXPECT_EQ(info.isExternal, c.expected.isExternal) << c.plotSetup;
  }
}

class PageSetupTest : public PlotcfgTest {
 protected:
  // Plan.dwg, opened on Présentation1 in paper space (space 0) or on the
  // model tab.
  testing::FakeDocument& OpenPlan(std::int16_t space) {
    plan_.activeSpace = space;
    plan_.activeLayout = space == 0 ? 1 : 0;
    return Open(plan_);
  }
  const testing::FakePlotSettings& Active(testing::FakeDocument& doc) {
    return doc.data.layouts.at(doc.data.activeLayout).settings;
  }
  bool Apply(const std::string& name, bool external, const PlotSetupRecord& record = {},
             Prompt* prompt = nullptr) {
    return SetupNPS(session_, name, external, record, {errorLog_, settings_, prompt});
  }

  testing::FakeDrawing& plan_ = [this]() -> testing::FakeDrawing& {
    auto& d = host_.AddDrawing("Plan.dwg");
    d.AddLayout("Présentation1");
    return d;
  }();
  LogSettings settings_ = DefaultLogSettings(logDir_.path().string());
};

TEST_F(PageSetupTest, CopyTakesTheLastExactMatch) {
  plan_.AddPageSetup("A3").settings.configName = "Premier.pc3";
  plan_.AddPageSetup("a3").settings.configName = "Minuscule.pc3";
  plan_.AddPageSetup("A3").settings.configName = "Dernier.pc3";
  auto& doc = OpenPlan(0);

  EXPECT_FALSE(CopyNPSIntoLayout(session_, "a3 "));
  EXPECT_TRUE(CopyNPSIntoLayout(session_, "A3"));
  EXPECT_EQ(Active(doc).configName, "Dernier.pc3");
  EXPECT_THAT(host_.Calls("CopyFrom"), ElementsAre("Layout(Présentation1).CopyFrom(A3)"));
}

TEST_F(PageSetupTest, ModelSetupIsRefusedOnlyInPaperSpace) {
  struct Case {
    std::int16_t space;
    bool modelType;
    bool ok;
  };
  for (const Case c :
       {Case{0, true, false}, Case{1, true, true}, Case{0, false, true}, Case{1, false, true}}) {
    plan_.pageSetups.clear();
    plan_.AddPageSetup("Mise en page", c.modelType).settings.plotRotation = 3;
    auto& doc = OpenPlan(c.space);
    EXPECT_EQ(CopyNPSIntoLayout(session_, "Mise en page"), c.ok) << c.space << c.modelType;
    EXPECT_EQ(Active(doc).plotRotation, c.ok ? 3 : 0);

    // The external form applies the same rule to the record's flag.
    PlotSetupRecord record;
    record.modelType = c.modelType;
    host_.ClearCalls();
    EXPECT_EQ(Apply("Mise en page", true, record), c.ok) << c.space << c.modelType;
    EXPECT_EQ(host_.Calls("RefreshPlotDeviceInfo").size(), c.ok ? 1u : 0u);
  }
}

TEST_F(PageSetupTest, DefaultNameAndHostErrors) {
  plan_.AddPageSetup("Par défaut");
  plan_.AddPageSetup("A3");
  OpenPlan(0);
  EXPECT_TRUE(CopyNPSIntoLayout(session_, "Par défaut"));
  EXPECT_TRUE(Apply("Par défaut", false));
  EXPECT_TRUE(Apply("Par défaut", true));
  EXPECT_THAT(host_.Calls(), IsEmpty());

  host_.FailOn("CopyFrom");
  EXPECT_FALSE(CopyNPSIntoLayout(session_, "A3"));
  EXPECT_FALSE(Apply("A3", false));
  host_.FailOn("SetPlotRotation");
  PlotSetupRecord record;
  record.canonicalMediaName = "ISO_A4_(210.00_x_297.00_MM)";  // offered: nothing to log
  EXPECT_FALSE(Apply("A3", true, record));
  EXPECT_THAT(host_.Calls("SetActiveLayout"), IsEmpty());
  EXPECT_THAT(LogLines(), IsEmpty());
}

// The settings a page setup carries, as one comparable value.
auto Carried(const testing::FakePlotSettings& s) {
  return std::tuple(s.configName, s.canonicalMediaName, s.paperUnits, s.plotRotation, s.plotType,
                    s.viewToPlot, s.windowLowerLeft.y, s.windowUpperRight.x, s.centerPlot,
                    s.plotOrigin.y, s.useStandardScale, s.standardScale, s.customDenominator,
                    s.scaleLineweights, s.plotWithLineweights, s.plotWithPlotStyles, s.styleSheet,
                    s.plotHidden);
}

// A page setup of another drawing, read into the record, reaches the layout
// setting by setting: the device first, then the paper it offers, and the
// layout is assigned back last so that the host takes the settings over.
TEST_F(PageSetupTest, ExternalRecordIsCopiedSettingBySetting) {
  for (const bool standard : {false, true}) {
    auto& model = host_.AddDrawing(standard ? "Modèle2.dwt" : "Modèle.dwt");
    testing::FakePlotSettings& s = model.AddPageSetup("Traceur").settings;
    s = {.configName = "Traceur.pc3",
         .canonicalMediaName = "ISO_A3_(297.00_x_420.00_MM)",
         .paperUnits = 0,
         .plotRotation = 1,
         .plotType = 3,
         .viewToPlot = "Nord",
         .windowLowerLeft = {1, 2},
         .windowUpperRight = {30, 40},
         .centerPlot = true,
         .plotOrigin = {5, 6},
         .useStandardScale = standard,
         .standardScale = static_cast<std::int16_t>(standard ? 7 : 16),
         .customDenominator = standard ? 1.0 : 50.0,
         .scaleLineweights = true,
         .plotWithLineweights = false,
         .plotWithPlotStyles = true,
         .styleSheet = "mono.ctb",
         .plotHidden = true};
    Open(model);
    const PlotSetupRecord record =
        ReadPlotSetup(*host_.LastOpened(model.path)->GetPlotConfigurations()->Item(0));
    auto& doc = OpenPlan(0);

    ASSERT_TRUE(Apply("Traceur", true, record));
    EXPECT_EQ(Carried(Active(doc)), Carried(s));
    const auto calls = host_.Calls();
    ASSERT_GE(calls.size(), 5u);
    EXPECT_THAT(std::vector(calls.begin() + 1, calls.begin() + 5),
                ElementsAre("Document(Plan.dwg).ActiveLayout()",
                            "Layout(Présentation1).RefreshPlotDeviceInfo()",
                            "Layout(Présentation1).SetConfigName(Traceur.pc3)",
                            "Layout(Présentation1).GetCanonicalMediaNames()"));
    EXPECT_EQ(calls.back(), "Document(Plan.dwg).SetActiveLayout(Présentation1)");
  }
  EXPECT_THAT(LogLines(), IsEmpty());
}

TEST_F(PageSetupTest, PaperNotOfferedKeepsTheLayoutsAndIsLogged) {
  plan_.layouts[1].settings.mediaNames = {"ANSI_A"};
  plan_.layouts[1].settings.canonicalMediaName = "ANSI_A";
  PlotSetupRecord record;
  record.canonicalMediaName = "ISO_A3";
  const std::string line = Text(313) + " on " + plan_.path + "|Présentation1";

  struct Case {
    bool on;
    bool named;
    bool logged;
  };
  for (const Case c :
       {Case{true, true, true}, Case{false, true, false}, Case{true, false, false}}) {
    settings_.ErrorLogOn = c.on;
    if (!c.named) settings_.ErrorLogFileName.clear();
    ASSERT_TRUE(errorLog_.Open(logPath_, false));
    auto& doc = OpenPlan(0);
    EXPECT_TRUE(Apply("A3", true, record));
    EXPECT_EQ(Active(doc).canonicalMediaName, "ANSI_A");
    EXPECT_THAT(host_.Calls("SetCanonicalMediaName"), IsEmpty());
    EXPECT_EQ(LogLines(), c.logged ? std::vector<std::string>{line} : std::vector<std::string>{});
  }
}

TEST_F(PageSetupTest, PaperLineFallsBackToTheFileThenToABox) {
  plan_.layouts[1].settings.mediaNames = {"ANSI_A"};
  PlotSetupRecord record;
  record.canonicalMediaName = "ISO_A3";
  std::ofstream(logPath_, std::ios::binary) << "avant\r\n";
  ASSERT_TRUE(errorLog_.Open("/dev/full", true));  // opens, but every write fails
  testing::ScriptedPrompt prompt;
  OpenPlan(0);

  EXPECT_TRUE(Apply("A3", true, record, &prompt));
  EXPECT_THAT(LogLines(), ElementsAre("avant", Text(313) + " on " + plan_.path + "|Présentation1"));
  EXPECT_FALSE(errorLog_.IsOpen());

  settings_.ErrorLogFileName = logDir_.File("absent/QXERROR.LOG");
  ASSERT_TRUE(errorLog_.Open("/dev/full", true));
  EXPECT_TRUE(Apply("A3", true, record, &prompt));
  ASSERT_EQ(prompt.messages.size(), 1u);
  EXPECT_EQ(prompt.messages[0].text, Text(197) + std::strerror(ENOENT));
  EXPECT_EQ(prompt.messages[0].title, Text(88));
  EXPECT_EQ(prompt.messages[0].icon, PromptIcon::Critical);
}

}  // namespace
}  // namespace sheafwork
