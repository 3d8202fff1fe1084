#include "plotcfg/plot_settings.h"

#include <tuple>

#include "plotcfg_fixture.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

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
  // The log lines of messages `ids` for the drawing; 105 stands for the
  // 105/106 pair around the view `view`.
  std::vector<std::string> Msgs(std::vector<int> ids, const std::string& view = {}) {
    std::vector<std::string> lines;
    for (int id : ids) lines.push_back(Text(id) + (id == 105 ? view + Text(106) : "") + plan_.path);
    return lines;
  }
};

// Without a scale the layout keeps its own, lineweight scaling included.
TEST_F(PlotSettingsTest, PlotAreaCodesAndViews) {
  plan_.views = {"nord", "Nord", "Sud"};
  using Case = std::tuple<std::string, std::int16_t, std::vector<std::string>, std::vector<int>>;
  const Case cases[] = {
      {"#O", 1, {"SetPlotType(0)"}, {101}},
      {"#O", 0, {"SetPlotType(5)"}, {}},
      {"#D", 0, {"SetPlotType(0)"}, {}},
      {"#L", 1, {"SetPlotType(2)"}, {}},
      {"#E", 0, {"SetPlotType(1)"}, {}},
      {"Nord", 0, {"SetPlotType(3)", "SetViewToPlot(Nord)"}, {}},
      {"#e", 1, {"SetPlotType(0)"}, {105}},
      {"NORD", 0, {"SetPlotType(5)"}, {105}},
      // A window, its corners put in order; one without an area is a view.
      {"#W420,297.5,-10,0", 1, {"SetWindowToPlot((-10, 0), (420, 297.5))", "SetPlotType(4)"}, {}},
      {"#W0,0,0,5", 0, {"SetPlotType(5)"}, {105}},
  };
  for (const auto& [area, space, sets, messages] : cases) {
    EXPECT_EQ(Apply(space, area, "", false), sets) << area;
    EXPECT_EQ(LogLines(), Msgs(messages, area)) << area;
  }
  // Views are compared in order and the walk stops at the first match.
  Apply(1, "Nord", "", false);
  EXPECT_THAT(host_.Calls("View("), ElementsAre("View(nord).Name()", "View(Nord).Name()"));
}

// Text that does not convert is logged and replaced: a custom scale by 1:1
// (110), a standard one by scale to fit (109).
TEST_F(PlotSettingsTest, ScaleTextsAndTheirFallbacks) {
  using Case = std::tuple<std::string, bool, std::string, std::vector<int>>;
  const Case cases[] = {
      {" 2,5 # 100 ", true, "SetCustomScale(2.5, 100)", {}},
      {"1.5#abc", true, "SetCustomScale(1, 1)", {110}},
      {"0#0", true, "SetCustomScale(1, 1)", {110}},
      {"148", true, "SetCustomScale(1, 1)", {109, 110}},
      {" S # 7 ", false, "SetStandardScale(7)", {}},
      {"0#12", false, "SetStandardScale(0)", {}},
      {"1#48", false, "SetStandardScale(0)", {109}},
      {"s#16", false, "SetStandardScale(0)", {109}},
      {"S#70000", false, "SetStandardScale(0)", {109}},
  };
  for (const auto& [scale, custom, set, messages] : cases) {
    EXPECT_THAT(
        Apply(0, "", scale, custom),
        ElementsAre(custom ? "SetUseStandardScale(false)" : "SetUseStandardScale(true)", set,
                    custom ? "SetScaleLineweights(true)" : "SetScaleLineweights(false)"))
        << scale;
    EXPECT_EQ(LogLines(), Msgs(messages)) << scale << (custom ? " custom" : " standard");
  }
  // A host error is logged and stops the rest.
  host_.FailOn("SetPlotType");
  EXPECT_THAT(Apply(0, "#E", "S#16", false, false), ElementsAre("SetPlotType(1)"));
  EXPECT_THAT(LogLines(), ElementsAreArray(Msgs({111})));
}

}  // namespace
}  // namespace sheafwork
