#include "plotcfg/plot_settings.h"

#include "plotcfg_fixture.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PlotSettingsTest : public PlotcfgTest {
 protected:
  // Applies `entry` to Plan.dwg, opened in model space (1) or on
  // Présentation1 in paper space (0); returns the settings written.
  std::vector<std::string> Apply(BatchEntry entry, std::int16_t space, bool ok = true) {
    plan_.activeSpace = space;
    plan_.activeLayout = space == 0 ? 1 : 0;
    Open(plan_);
    entry.FileName = plan_.path;
    EXPECT_EQ(ApplyPlotSettings(session_, entry, errorLog_), ok);
    std::vector<std::string> sets;
    const std::string layout = space == 0 ? "Layout(Présentation1)." : "Layout(Objet).";
    for (const auto& call : host_.Calls(layout + "Set")) sets.push_back(call.substr(layout.size()));
    return sets;
  }
  // The log line of message `id`, or 105/106 around `view`, for the drawing.
  std::string Msg(int id) { return Text(id) + plan_.path; }
  std::string ViewMsg(const std::string& view) { return Text(105) + view + Text(106) + plan_.path; }

  testing::FakeDrawing& plan_ = [this]() -> testing::FakeDrawing& {
    auto& d = host_.AddDrawing("Plan.dwg");
    d.AddLayout("Présentation1");
    d.views = {"nord", "Nord", "Sud"};
    return d;
  }();
};

TEST_F(PlotSettingsTest, PlotAreaCodesAndViews) {
  struct Case {
    std::string area;
    std::int16_t space;
    std::vector<std::string> sets;
    std::vector<int> messages;  // 101, or 105 for the view-not-found pair
  };
  const Case cases[] = {
      {"#O", 1, {"SetPlotType(0)"}, {101}},
      {"#O", 0, {"SetPlotType(5)"}, {}},
      {"#D", 0, {"SetPlotType(0)"}, {}},
      {"#L", 1, {"SetPlotType(2)"}, {}},
      {"#E", 0, {"SetPlotType(1)"}, {}},
      {"Nord", 0, {"SetPlotType(3)", "SetViewToPlot(Nord)"}, {}},
      {"#e", 1, {"SetPlotType(0)"}, {105}},
      {"NORD", 0, {"SetPlotType(5)"}, {105}},
  };
  for (const Case& c : cases) {
    ASSERT_TRUE(errorLog_.Open(logPath_, false));
    BatchEntry entry;
    entry.PlotArea = c.area;
    entry.ScaleLW = true;  // without a scale, lineweights stay as they are
    EXPECT_EQ(Apply(entry, c.space), c.sets) << c.area;
    std::vector<std::string> expected;
    for (int id : c.messages) expected.push_back(id == 105 ? ViewMsg(c.area) : Msg(id));
    EXPECT_EQ(LogLines(), expected) << c.area;
  }
  // Views are compared in order and the walk stops at the first match.
  BatchEntry entry;
  entry.PlotArea = "Nord";
  Apply(entry, 1);
  EXPECT_THAT(host_.Calls("View("), ElementsAre("View(nord).Name()", "View(Nord).Name()"));
}

TEST_F(PlotSettingsTest, ScaleTextsAndTheirFallbacks) {
  struct Case {
    std::string scale;
    bool custom;
    std::string set;  // the scale call made
    std::vector<int> messages;
  };
  const Case cases[] = {
      {"1#48", true, "SetCustomScale(1, 48)", {}},
      {" 2,5 # 100 ", true, "SetCustomScale(2.5, 100)", {}},
      {"0.5#1", true, "SetCustomScale(0.5, 1)", {}},
      {"1.5#abc", true, "SetCustomScale(1, 1)", {110}},
      {"1#", true, "SetCustomScale(1, 1)", {110}},
      {"S#16", true, "SetCustomScale(1, 1)", {110}},
      {"0#0", true, "SetCustomScale(1, 1)", {110}},
      {"148", true, "SetCustomScale(1, 1)", {109, 110}},
      {"S#16", false, "SetStandardScale(16)", {}},
      {" S # 7 ", false, "SetStandardScale(7)", {}},
      {"0#0", false, "SetStandardScale(0)", {}},
      {"0#12", false, "SetStandardScale(0)", {}},
      {"1#48", false, "SetStandardScale(0)", {109}},
      {"s#16", false, "SetStandardScale(0)", {109}},
      {"S#abc", false, "SetStandardScale(0)", {109}},
      {"S#2.5", false, "SetStandardScale(0)", {109}},
      {"S#70000", false, "SetStandardScale(0)", {109}},
      {"S16", false, "SetStandardScale(0)", {109}},
  };
  for (const Case& c : cases) {
    ASSERT_TRUE(errorLog_.Open(logPath_, false));
    BatchEntry entry;
    entry.PlotScale = c.scale;
    entry.ScaleCustom = c.custom;
    entry.ScaleLW = c.custom;
    const std::string mode = c.custom ? "SetUseStandardScale(false)" : "SetUseStandardScale(true)";
    const std::string lineweights =
        c.custom ? "SetScaleLineweights(true)" : "SetScaleLineweights(false)";
    EXPECT_THAT(Apply(entry, 0), ElementsAre(mode, c.set, lineweights)) << c.scale;
    std::vector<std::string> expected;
    for (int id : c.messages) expected.push_back(Msg(id));
    EXPECT_EQ(LogLines(), expected) << c.scale << (c.custom ? " custom" : " standard");
  }
  // Without a plot area the space is never asked.
  EXPECT_THAT(host_.Calls("ActiveSpace"), IsEmpty());
}

TEST_F(PlotSettingsTest, HostErrorIsLoggedAndStopsTheRest) {
  BatchEntry entry;
  entry.PlotArea = "#E";
  entry.PlotScale = "S#16";
  host_.FailOn("SetPlotType");
  EXPECT_THAT(Apply(entry, 0, false), ElementsAre("SetPlotType(1)"));
  EXPECT_THAT(LogLines(), ElementsAre(Msg(111)));
}

}  // namespace
}  // namespace sheafwork
