#include "plotcfg/layer_settings.h"

#include "plotcfg_fixture.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LayerSettingsTest : public PlotcfgTest {
 protected:
  // Applies `layers` to Plan.dwg holding `specs`; returns the calls that
  // change something, in order (layer setters, Update, Regen).
  std::vector<std::string> Apply(std::vector<testing::FakeLayerSpec> specs, const char* layers,
                                 bool ok = true) {
    plan_.layers = std::move(specs);
    Open(plan_);
    BatchEntry entry;
    entry.FileName = plan_.path;
    entry.Layers = layers;
    EXPECT_EQ(ApplyLayerSettings(session_, entry, errorLog_), ok) << layers;
    std::vector<std::string> changes;
    for (const auto& call : host_.Calls()) {
      if (call.find(".Set") != std::string::npos || call.find("Update") != std::string::npos ||
          call.find("Regen") != std::string::npos) {
        changes.push_back(call);
      }
    }
    return changes;
  }
  testing::FakeDrawing& plan_ = host_.AddDrawing("Plan.dwg");
  static constexpr const char* kUpdate = "Application.Update()";
  static constexpr const char* kRegen = "Document(Plan.dwg).Regen(1)";
};

TEST_F(LayerSettingsTest, EmptyTextTouchesNothing) {
  EXPECT_THAT(Apply({{"0", false, true, false}}, ""), IsEmpty());
  EXPECT_THAT(host_.Calls(), IsEmpty());
}

TEST_F(LayerSettingsTest, OnlyListedLayersChangeAndOnlyAThawRegenerates) {
  EXPECT_THAT(
      Apply({{"MURS"}, {"PORTES", false}, {"Cotes"}, {"Été"}}, "COTES 0 ÉTÉ 0 Absent 1"),
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
// since a search would match the flags themselves.
TEST_F(LayerSettingsTest, SubstringSearchAndThePairWalk) {
  EXPECT_THAT(
      Apply({{"EXT"}, {"MUR_EXT"}}, "MUR_EXT 0 EXT 1"),
      ElementsAre("Layer(EXT).SetLayerOn(false)", "Layer(MUR_EXT).SetLayerOn(false)", kUpdate));
  EXPECT_THAT(Apply({{"0"}, {"1", false}, {"10", false}}, "10 1 0 0 1 1"),
              ElementsAre("Layer(0).SetLayerOn(false)", "Layer(1).SetLayerOn(true)",
                          "Layer(1).SetPlottable(true)", "Layer(10).SetLayerOn(true)", kUpdate));
}

// A frozen "0" is thawed but its Plottable is neither read nor set; an
// unfrozen one is made plottable without reading it.
TEST_F(LayerSettingsTest, WalkedLayersKeepPlottableWhenThawed) {
  EXPECT_THAT(Apply({{"0", true, true, false}}, "0 1"),
              ElementsAre("Layer(0).SetFreeze(false)", kUpdate, kRegen));
  EXPECT_THAT(host_.Calls("Plottable"), IsEmpty());
  EXPECT_THAT(Apply({{"0", true, false, true}}, "0 1"),
              ElementsAre("Layer(0).SetPlottable(true)", kUpdate));
  EXPECT_THAT(host_.Calls("Layer(0).Plottable()"), IsEmpty());
}

TEST_F(LayerSettingsTest, UnnamedLayersAreSkipped) {
  EXPECT_THAT(Apply({{""}, {"A"}}, "A 0"), ElementsAre("Layer(A).SetLayerOn(false)", kUpdate));
  EXPECT_THAT(host_.Calls("Layer()"), ElementsAre("Layer().Name()"));
}

TEST_F(LayerSettingsTest, BadFlagsAndHostErrorsAreLogged) {
  struct Case {
    const char* layers;
    std::vector<std::string> changes;
  };
  const Case cases[] = {
      {"A x", {}},
      {"A ", {}},
      {"0 x", {}},
      {"B 0 A T", {"Layer(B).SetLayerOn(false)"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Apply({{"B"}, {"A"}, {"0", true, true}}, c.layers, false), c.changes) << c.layers;
  }
  host_.FailOn("SetFreeze");
  EXPECT_THAT(Apply({{"A", true, true}}, "A 1", false), ElementsAre("Layer(A).SetFreeze(false)"));
  // A digit other than 0 reads as true.
  EXPECT_THAT(Apply({{"B", false}}, "B 7"), ElementsAre("Layer(B).SetLayerOn(true)", kUpdate));

  const std::string line = Text(100) + plan_.path;
  EXPECT_EQ(LogLines(), std::vector<std::string>(5, line));
}

}  // namespace
}  // namespace sheafwork
