#include "plotcfg/layout_setup.h"

#include "fakes/scripted_prompt.h"
#include "plotcfg_fixture.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(LayoutValuesTest, SpecialValuesAreComparedExactly) {
  EXPECT_TRUE(IsLastActiveLayout("Onglet Dernière présentation active"));
  EXPECT_EQ(ModelTabName(), "Objet");
  for (const char* other : {"onglet objet", "Toutes les présentations ", "Objet", ""}) {
    EXPECT_FALSE(IsSpecialLayout(other)) << other;
  }
}

struct LayoutCase {
  const char* layout;
  std::int16_t space;  // the drawing's space when opened
  bool ok;
  std::vector<std::string> calls;
  const char* activeAfter;
};

class SetupLayoutTest : public PlotcfgTest, public ::testing::WithParamInterface<LayoutCase> {};

TEST_P(SetupLayoutTest, SwitchesOnlyWhatTheValueAsks) {
  const LayoutCase& c = GetParam();
  auto& plan = host_.AddDrawing("Plan.dwg");
  plan.AddLayout("Présentation1");
  // Layouts named like special values are reachable only through their meaning.
  plan.AddLayout("Onglet Objet");
  plan.AddLayout("*Onglet courant*");
  plan.activeSpace = c.space;
  plan.activeLayout = c.space == 1 ? 0 : 1;
  plan.lastPaperLayout = 1;
  auto& doc = Open(plan);

  EXPECT_EQ(SetupLayout(session_, c.layout, ErrorOutput::ToLog(errorLog_)), c.ok);
  EXPECT_EQ(host_.Calls(), c.calls);
  EXPECT_EQ(doc.data.layouts.at(doc.data.activeLayout).name, c.activeAfter);
  EXPECT_THAT(LogLines(), IsEmpty());
}

const std::string kSpace = "Document(Plan.dwg).ActiveSpace()";
std::vector<std::string> Walk(int upTo) {
  const char* names[] = {"Objet", "Présentation1", "Onglet Objet", "*Onglet courant*"};
  std::vector<std::string> calls = {"Document(Plan.dwg).Layouts()", "Layouts.Count()"};
  for (int i = 0; i <= upTo; ++i) {
    calls.push_back("Layouts.Item(" + std::to_string(i) + ")");
    calls.push_back(std::string("Layout(") + names[i] + ").Name()");
  }
  return calls;
}
std::vector<std::string> Plus(std::vector<std::string> calls, const std::string& last) {
  calls.push_back(last);
  return calls;
}

INSTANTIATE_TEST_SUITE_P(
    Values, SetupLayoutTest,
    ::testing::Values(
        LayoutCase{"Toutes les présentations", 0, true, {}, "Présentation1"},
        LayoutCase{"*Onglet courant*", 0, true, {}, "Présentation1"},
        LayoutCase{"Onglet Objet", 1, true, {kSpace}, "Objet"},
        LayoutCase{
            "Onglet Objet", 0, true, {kSpace, "Document(Plan.dwg).SetActiveSpace(1)"}, "Objet"},
        LayoutCase{"Onglet Dernière présentation active", 0, true, {kSpace}, "Présentation1"},
        LayoutCase{"Onglet Dernière présentation active",
                   1,
                   true,
                   {kSpace, "Document(Plan.dwg).SetActiveSpace(0)"},
                   "Présentation1"},
        LayoutCase{"Onglet courant", 1, false, Walk(3), "Objet"},
        LayoutCase{"présentation1", 1, false, Walk(3), "Objet"},
        LayoutCase{"Présentation1", 1, true,
                   Plus(Walk(1), "Document(Plan.dwg).SetActiveLayout(Présentation1)"),
                   "Présentation1"}));

TEST_F(PlotcfgTest, SetupLayoutReportsAHostErrorWhereItIsTold) {
  auto& plan = host_.AddDrawing("Plan.dwg");
  plan.AddLayout("Présentation1");
  Open(plan);
  host_.FailOn("SetActiveLayout", host::Error(-5, "Présentation verrouillée"));
  testing::ScriptedPrompt prompt;

  EXPECT_FALSE(SetupLayout(session_, "Présentation1", ErrorOutput::Nowhere()));
  EXPECT_FALSE(SetupLayout(session_, "Présentation1", ErrorOutput::ToPrompt(prompt)));
  EXPECT_FALSE(SetupLayout(session_, "Présentation1", ErrorOutput::ToLog(errorLog_)));

  EXPECT_THAT(LogLines(), ElementsAre(Text(114) + "Présentation verrouillée"));
  ASSERT_EQ(prompt.messages.size(), 1u);
  EXPECT_EQ(prompt.messages[0].text, "Présentation verrouillée");
  EXPECT_EQ(prompt.messages[0].title, Text(88));
  EXPECT_EQ(prompt.messages[0].icon, PromptIcon::Critical);
}

}  // namespace
}  // namespace sheafwork
