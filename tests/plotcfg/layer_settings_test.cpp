#include "plotcfg/layer_settings.h"

#include "plotcfg_fixture.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

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
