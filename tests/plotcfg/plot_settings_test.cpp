// A row's plotter configuration applied to the open drawing: its layout,
// named page setup, layers, plot area and scale, and the devices on offer.
#include "plotcfg/plot_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>
#include <vector>

#include "fakes/fake_host.h"
#include "fakes/log_lines.h"
#include "fakes/scripted_prompt.h"
#include "fakes/system_doubles.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "host/host_session.h"
#include "log/log_file.h"
#include "plotcfg/devices.h"
#include "plotcfg/layer_settings.h"
#include "plotcfg/layout_setup.h"
#include "plotcfg/page_setup.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Plan.dwg, a drawing open in the scripted host as the session's current
// document, and a real error log to read back.
class PlotcfgTest : public ::testing::Test {
 protected:
  void SetUp() override {
    plan_.AddLayout("Présentation1");
    ASSERT_TRUE(errorLog_.Open(logPath_, false));
  }

  /// Opens Plan.dwg in model space (1) or on Présentation1 in paper space (0)
  /// and forgets the host calls made so far.
  testing::FakeDocument& OpenPlan(std::int16_t space) {
    plan_.activeSpace = space;
    plan_.activeLayout = space == 0 ? 1 : 0;
    const OpenResult opened = session_.OpenDrawing(plan_.path);
    EXPECT_TRUE(opened.ok) << opened.description;
    host_.ClearCalls();
    return *host_.LastOpened(plan_.path);
  }
  static testing::FakeLayoutData& Active(testing::FakeDocument& doc) {
    return doc.data.layouts.at(doc.data.activeLayout);
  }

  /// The lines of the error log, back in UTF-8.
  std::vector<std::string> LogLines() const { return testing::ReadLogLines(logPath_); }

  static std::string Text(int id) { return LoadResourceText(id); }

  testing::FakeHost host_;
  HostSession session_{host_.App(), host_.Folder().path().string()};
  testing::FakeDrawing& plan_ = host_.AddDrawing("Plan.dwg");  ///< Objet, Présentation1
  testing::TempFolder logDir_;
  const std::string logPath_ = logDir_.File("QXERROR.LOG");
  LogFile errorLog_;
};

TEST_F(PlotcfgTest, SetupLayoutSwitchesOnlyWhatTheValueAsks) {
  plan_.AddLayout("Onglet Objet");
  plan_.AddLayout("*Onglet courant*");
  for (const auto& row : testing::ReadTestTable("plotcfg/layouts.tsv")) {
    SCOPED_TRACE(row.where);
    auto& doc = OpenPlan(static_cast<std::int16_t>(std::stoi(row[1])));
    EXPECT_EQ(SetupLayout(session_, row[0], ErrorOutput::ToLog(errorLog_)), row[2] == "yes");
    std::vector<std::string> calls = row.List(3, "; ");
    for (auto& call : calls) call = "Document(Plan.dwg)." + call;
    EXPECT_EQ(host_.Calls("Document("), calls);
    EXPECT_EQ(Active(doc).name, row[4]);
  }

  // A host failure goes where the caller says, with the host's description.
  host_.FailOn("SetActiveLayout", host::Error(-5, "Présentation verrouillée"));
  testing::ScriptedPrompt prompt;
  EXPECT_FALSE(SetupLayout(session_, "Présentation1", ErrorOutput::ToPrompt(prompt)));
  EXPECT_FALSE(SetupLayout(session_, "Présentation1", ErrorOutput::ToLog(errorLog_)));
  EXPECT_THAT(LogLines(), ElementsAre(Text(114) + "Présentation verrouillée"));
  ASSERT_EQ(prompt.messages.size(), 1u);
  const PromptMessage& box = prompt.messages[0];
  EXPECT_EQ(std::tie(box.text, box.title, box.icon),
            std::tuple("Présentation verrouillée", Text(88), PromptIcon::Critical));
}

class PlotSettingsTest : public PlotcfgTest {
 protected:
  // Applies the row's fields to Plan.dwg, opened in model space (1) or on
  // Présentation1 in paper space (0), with a fresh error log; returns the
  // settings written.
  std::vector<std::string> Apply(std::int16_t space, const std::string& area,
                                 const std::string& scale, bool custom, bool ok = true) {
    EXPECT_TRUE(errorLog_.Open(logPath_, false));
    OpenPlan(space);
    BatchEntry entry;
    entry.FileName = plan_.path;
    entry.PlotArea = area;
    entry.PlotScale = scale;
    entry.ScaleCustom = custom;
    entry.ScaleLW = custom || scale.empty();
    EXPECT_EQ(ApplyPlotSettings(session_, entry, errorLog_), ok);
    std::vector<std::string> sets;
    const std::string layout = space == 0 ? "Layout(Présentation1)." : "Layout(Objet).";
    for (const auto& call : host_.Calls(layout + "Set")) sets.push_back(call.substr(layout.size()));
    return sets;
  }
  // The log lines of the message ids of `row`'s field 3 for the drawing; 105
  // stands for the 105/106 pair around the row's code.
  std::vector<std::string> Msgs(const testing::TableRow& row) {
    std::vector<std::string> lines;
    for (const auto& id : row.List(3)) {
      lines.push_back(Text(std::stoi(id)) + (id == "105" ? row[0] + Text(106) : "") + plan_.path);
    }
    return lines;
  }
};

// Without a scale the layout keeps its own, lineweight scaling included.
TEST_F(PlotSettingsTest, PlotAreaCodesAndViews) {
  plan_.views = {"nord", "Nord", "Sud"};
  for (const auto& row : testing::ReadTestTable("plotcfg/plot_areas.tsv")) {
    SCOPED_TRACE(row.where);
    EXPECT_EQ(Apply(static_cast<std::int16_t>(std::stoi(row[1])), row[0], "", false),
              row.List(2, "; "));
    EXPECT_EQ(LogLines(), Msgs(row));
  }
  // Views are compared in order and the walk stops at the first match.
  Apply(1, "Nord", "", false);
  EXPECT_THAT(host_.Calls("View("), ElementsAre("View(nord).Name()", "View(Nord).Name()"));
}

// Text that does not convert is logged and replaced: a custom scale by 1:1
// (110), a standard one by scale to fit (109).
TEST_F(PlotSettingsTest, ScaleTextsAndTheirFallbacks) {
  for (const auto& row : testing::ReadTestTable("plotcfg/plot_scales.tsv")) {
    SCOPED_TRACE(row.where);
    const bool custom = row[1] == "1";
    EXPECT_THAT(
        Apply(0, "", row[0], custom),
        ElementsAre(custom ? "SetUseStandardScale(false)" : "SetUseStandardScale(true)", row[2],
                    custom ? "SetScaleLineweights(true)" : "SetScaleLineweights(false)"));
    EXPECT_EQ(LogLines(), Msgs(row));
  }
  // A host error is logged and stops the rest.
  host_.FailOn("SetPlotType");
  EXPECT_THAT(Apply(0, "#E", "S#16", false, false), ElementsAre("SetPlotType(1)"));
  EXPECT_THAT(LogLines(), ElementsAre(Text(111) + plan_.path));
}

class LayerSettingsTest : public PlotcfgTest {
 protected:
  // Applies `layers` to Plan.dwg holding `drawingLayers`; returns the calls that
  // change something, in order (layer setters, Update, Regen).
  std::vector<std::string> Apply(std::vector<testing::FakeLayerData> drawingLayers,
                                 const char* layers, bool ok = true) {
    plan_.layers = std::move(drawingLayers);
    OpenPlan(1);
    BatchEntry entry;
    entry.FileName = plan_.path;
    entry.Layers = layers;
    EXPECT_EQ(ApplyLayerSettings(session_, entry, errorLog_), ok) << layers;
    std::vector<std::string> changes;
    for (const auto& call : host_.Calls()) {
      for (const char* mark : {".Set", "Update", "Regen"}) {
        if (call.find(mark) != std::string::npos) {
          changes.push_back(call);
          break;
        }
      }
    }
    return changes;
  }
  static constexpr const char* kUpdate = "Application.Update()";
  static constexpr const char* kRegen = "Document(Plan.dwg).Regen(1)";
};

// Names are found letter case ignored; only a thaw regenerates, after Update.
TEST_F(LayerSettingsTest, OnlyListedLayersChangeAndOnlyAThawRegenerates) {
  EXPECT_THAT(Apply({{"0", false, true, false}}, ""), IsEmpty());
  EXPECT_THAT(host_.Calls(), IsEmpty());
  EXPECT_THAT(
      Apply({{"MURS"}, {"PORTES", false}, {"Cotes"}, {"Été"}, {""}}, "COTES 0 ÉTÉ 0 Absent 1"),
      ElementsAre("Layer(Cotes).SetLayerOn(false)", "Layer(Été).SetLayerOn(false)", kUpdate));
  EXPECT_THAT(Apply({{"A", false, true, false}, {"B", true, false, false}, {"C", true, true, true}},
                    "A 1 B 1 C 1"),
              ElementsAre("Layer(A).SetLayerOn(true)", "Layer(A).SetFreeze(false)",
                          "Layer(A).SetPlottable(true)", "Layer(B).SetPlottable(true)",
                          "Layer(C).SetFreeze(false)", kUpdate, kRegen));
  EXPECT_THAT(LogLines(), IsEmpty());
}

// A layer's name searched in the text matches inside a longer name: EXT takes
// MUR_EXT's flag. Layers "0" and "1" are found by walking the pairs instead,
// since a search would match the flags themselves; a frozen one is thawed but
// its Plottable is neither read nor set, an unfrozen one is made plottable
// without reading it.
TEST_F(LayerSettingsTest, SubstringSearchAndThePairWalk) {
  EXPECT_THAT(
      Apply({{"EXT"}, {"MUR_EXT"}}, "MUR_EXT 0 EXT 1"),
      ElementsAre("Layer(EXT).SetLayerOn(false)", "Layer(MUR_EXT).SetLayerOn(false)", kUpdate));
  EXPECT_THAT(Apply({{"0"}, {"1", false}, {"10", false}}, "10 1 0 0 1 1"),
              ElementsAre("Layer(0).SetLayerOn(false)", "Layer(1).SetLayerOn(true)",
                          "Layer(1).SetPlottable(true)", "Layer(10).SetLayerOn(true)", kUpdate));
  EXPECT_THAT(Apply({{"0", true, true, false}}, "0 1"),
              ElementsAre("Layer(0).SetFreeze(false)", kUpdate, kRegen));
  EXPECT_THAT(host_.Calls("Plottable"), IsEmpty());
  EXPECT_THAT(Apply({{"0", true, false, true}}, "0 1"),
              ElementsAre("Layer(0).SetPlottable(true)", kUpdate));
  EXPECT_THAT(host_.Calls("Layer(0).Plottable()"), IsEmpty());
}

// Named page setups copied into the layout of the open drawing.
class PageSetupTest : public PlotcfgTest {
 protected:
  bool Apply(const std::string& name, bool external, const PlotSetupRecord& record = {},
             Prompt* prompt = nullptr) {
    return SetupNPS(session_, name, external, record, {errorLog_, settings_, prompt});
  }
  LogSettings settings_ = DefaultLogSettings(logDir_.path().string());
  const std::string paperLine_ = Text(313) + " on " + plan_.path + "|Présentation1";
};

// Among equal names the last one counts; "Par défaut" does nothing; a host
// error gives false before the layout is assigned.
TEST_F(PageSetupTest, CopyTakesTheLastExactMatch) {
  plan_.AddPageSetup("A3").settings.configName = "Premier.pc3";
  plan_.AddPageSetup("a3").settings.configName = "Minuscule.pc3";
  plan_.AddPageSetup("A3").settings.configName = "Dernier.pc3";
  auto& doc = OpenPlan(0);
  EXPECT_TRUE(CopyNPSIntoLayout(session_, "Par défaut"));
  EXPECT_TRUE(Apply("Par défaut", true));
  EXPECT_THAT(host_.Calls(), IsEmpty());

  EXPECT_FALSE(CopyNPSIntoLayout(session_, "a3 "));
  EXPECT_TRUE(CopyNPSIntoLayout(session_, "A3"));
  EXPECT_EQ(Active(doc).settings.configName, "Dernier.pc3");
  EXPECT_THAT(host_.Calls("CopyFrom"), ElementsAre("Layout(Présentation1).CopyFrom(A3)"));

  host_.FailOn("CopyFrom");
  EXPECT_FALSE(Apply("A3", false));
  host_.FailOn("RefreshPlotDeviceInfo");
  EXPECT_FALSE(Apply("A3", true));
  EXPECT_THAT(host_.Calls("SetActiveLayout"), IsEmpty());
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
    ASSERT_TRUE(session_.OpenDrawing(model.path).ok);
    const PlotSetupRecord record = ReadPlotSetup(*session_.Doc().GetPlotConfigurations()->Item(0));
    auto& doc = OpenPlan(0);

    ASSERT_TRUE(Apply("Traceur", true, record));
    EXPECT_EQ(Carried(Active(doc).settings), Carried(s));
    const auto calls = host_.Calls("Présentation1)");
    ASSERT_GE(calls.size(), 4u);
    EXPECT_THAT(std::vector(calls.begin(), calls.begin() + 3),
                ElementsAre("Layout(Présentation1).RefreshPlotDeviceInfo()",
                            "Layout(Présentation1).SetConfigName(Traceur.pc3)",
                            "Layout(Présentation1).GetCanonicalMediaNames()"));
    EXPECT_EQ(calls.back(), "Document(Plan.dwg).SetActiveLayout(Présentation1)");
  }
  EXPECT_THAT(LogLines(), IsEmpty());
}

// A paper the device does not offer leaves the layout's own and writes line
// 313, only when the error log is on and named; when the run's log cannot be
// written, the line goes to the log file opened afresh, else to a box.
TEST_F(PageSetupTest, PaperNotOfferedIsLoggedWithFallbacks) {
  plan_.layouts[1].settings.mediaNames = {"ANSI_A"};
  plan_.layouts[1].settings.canonicalMediaName = "ANSI_A";
  PlotSetupRecord record;
  record.canonicalMediaName = "ISO_A3";
  for (const auto& [on, named] : {std::pair{true, true}, {false, true}, {true, false}}) {
    settings_.ErrorLogOn = on;
    if (!named) settings_.ErrorLogFileName.clear();
    ASSERT_TRUE(errorLog_.Open(logPath_, false));
    auto& doc = OpenPlan(0);
    EXPECT_TRUE(Apply("A3", true, record));
    EXPECT_EQ(Active(doc).settings.canonicalMediaName, "ANSI_A");
    EXPECT_THAT(host_.Calls("SetCanonicalMediaName"), IsEmpty());
    EXPECT_EQ(LogLines(), on && named ? std::vector{paperLine_} : std::vector<std::string>{});
  }

  settings_ = DefaultLogSettings(logDir_.path().string());
  std::ofstream(logPath_, std::ios::binary) << "avant\r\n";
  ASSERT_TRUE(errorLog_.Open("/dev/full", true));  // opens, but every write fails
  testing::ScriptedPrompt prompt;
  OpenPlan(0);
  EXPECT_TRUE(Apply("A3", true, record, &prompt));
  EXPECT_THAT(LogLines(), ElementsAre("avant", paperLine_));

  settings_.ErrorLogFileName = logDir_.File("absent/QXERROR.LOG");
  ASSERT_TRUE(errorLog_.Open("/dev/full", true));
  EXPECT_TRUE(Apply("A3", true, record, &prompt));
  ASSERT_EQ(prompt.messages.size(), 1u);
  EXPECT_EQ(std::tie(prompt.messages[0].text, prompt.messages[0].title),
            std::tuple(Text(197) + std::strerror(ENOENT), Text(88)));
}

// A page setup from elsewhere may write the device's paper otherwise: it is
// the device's paper, set by the device's own name, and no paper changed.
TEST_F(PageSetupTest, APaperWrittenOtherwiseIsTheDevicesOwn) {
  plan_.layouts[1].settings.mediaNames = {
      "ISO A3 (420.00 x 297.00 mm)", "ISO A2 (594.00 x 420.00 mm)", "ISO A2 (420.00 x 594.00 mm)"};
  plan_.layouts[1].settings.canonicalMediaName = "ISO A3 (420.00 x 297.00 mm)";
  const std::pair<const char*, const char*> cases[] = {
      {"ISO A2", "ISO A2 (594.00 x 420.00 mm)"},
      {"ISO_A2_(420.00_x_594.00_MM)", "ISO A2 (420.00 x 594.00 mm)"},
      {"iso a2 (594 x 420 mm)", "ISO A2 (594.00 x 420.00 mm)"},
  };
  for (const auto& [stored, offered] : cases) {
    SCOPED_TRACE(stored);
    PlotSetupRecord record;
    record.canonicalMediaName = stored;
    auto& doc = OpenPlan(0);
    EXPECT_TRUE(Apply("A2", true, record));
    EXPECT_EQ(Active(doc).settings.canonicalMediaName, offered);
    EXPECT_THAT(LogLines(), IsEmpty());
  }
}

// A file is looked for in every piece of a search path. Without a printer but
// the pseudo-printer (named exactly), any file but a hidden one in a
// configuration folder is a device.
TEST(DeviceFilesTest, SearchPathPiecesAndTheDeviceCount) {
  const testing::TempFolder folder;
  for (const char* dir : {"vide", "un", "notes", "cache/sous-dossier"}) {
    std::filesystem::create_directories(folder.path() / dir);
  }
  for (const char* file : {"un/Traceur.pc3", "notes/lisez-moi.txt", "cache/.verrou"}) {
    folder.Write(file, "");
  }
  const std::string empty = folder.File("vide"), one = folder.File("un");
  const std::string notes = folder.File("notes"), hidden = folder.File("cache");
  const std::pair<std::string, bool> paths[] = {
      {empty + ";", false},
      {empty + ";" + one + ";", true},   // found before a trailing ";"
      {empty + "; " + one + " ", true},  // in the final piece, trimmed
      {one + "/", true},
      {" ", false},
  };
  for (const auto& [path, found] : paths) {
    EXPECT_EQ(FindFileWithExtendedPaths("Traceur.pc3", path), found) << path;
  }
  EXPECT_FALSE(FindFileWithExtendedPaths("Autre.pc3", one));
  EXPECT_FALSE(FindFileWithExtendedPaths(" ", one));

  const PrinterInfo kdx{"Phantom Ole to KDX Printer", "", ""};
  // printers, configuration path, no device, path read
  using Case = std::tuple<std::vector<PrinterInfo>, std::string, bool, bool>;
  const Case cases[] = {
      {{}, "", true, true},
      {{kdx}, empty + ";" + folder.File("absent") + ";", true, true},
      {{kdx}, empty + "; " + notes, false, true},
      {{kdx}, hidden, true, true},
      {{{"phantom ole to kdx printer", "", ""}}, empty, false, false},
  };
  for (const auto& [list, configPath, none, readsPath] : cases) {
    testing::FakeHost host;
    host.printerConfigPath = configPath;
    testing::ListedPrinters printers;
    printers.printers = list;
    EXPECT_EQ(NoDevicesAvailable(*host.App()->GetPreferences(), printers), none) << configPath;
    EXPECT_EQ(host.Calls("PrinterConfigPath").size(), readsPath ? 1u : 0u) << configPath;
  }
}

}  // namespace
}  // namespace sheafwork
