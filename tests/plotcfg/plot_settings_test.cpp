// A row's layout, layers, plot area and scale applied to the open drawing.
#include "plotcfg/plot_settings.h"

#include <tuple>

#include "fakes/scripted_prompt.h"
#include "fakes/test_data.h"
#include "plotcfg/layer_settings.h"
#include "plotcfg/layout_setup.h"
#include "plotcfg_fixture.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

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

}  // namespace
}  // namespace sheafwork
