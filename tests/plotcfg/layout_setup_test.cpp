#include "plotcfg/layout_setup.h"

#include <tuple>

#include "fakes/scripted_prompt.h"
#include "plotcfg_fixture.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;

// Special values win over layouts named like them; the space is switched only
// when the drawing is not already in the one asked for; names match exactly.
TEST_F(PlotcfgTest, SetupLayoutSwitchesOnlyWhatTheValueAsks) {
  plan_.AddLayout("Onglet Objet");
  plan_.AddLayout("*Onglet courant*");
  const std::string space = "Document(Plan.dwg).ActiveSpace()";
  const std::string toModel = "Document(Plan.dwg).SetActiveSpace(1)";
  const std::string toPaper = "Document(Plan.dwg).SetActiveSpace(0)";
  const std::string walk = "Document(Plan.dwg).Layouts()";
  const std::string pick = "Document(Plan.dwg).SetActiveLayout(Présentation1)";
  const char* last = "Onglet Dernière présentation active";
  // value, space when opened, result, document calls, active layout after
  using Case = std::tuple<const char*, std::int16_t, bool, std::vector<std::string>, const char*>;
  const Case cases[] = {
      {"Toutes les présentations", 0, true, {}, "Présentation1"},
      {"*Onglet courant*", 0, true, {}, "Présentation1"},
      {"Onglet Objet", 1, true, {space}, "Objet"},
      {"Onglet Objet", 0, true, {space, toModel}, "Objet"},
      {last, 0, true, {space}, "Présentation1"},
      {last, 1, true, {space, toPaper}, "Présentation1"},
      {"onglet objet", 1, false, {walk}, "Objet"},
      {"Toutes les présentations ", 0, false, {walk}, "Présentation1"},
      {"présentation1", 1, false, {walk}, "Objet"},
      {"Présentation1", 1, true, {walk, pick}, "Présentation1"},
  };
  for (const auto& [layout, space, ok, calls, activeAfter] : cases) {
    auto& doc = OpenPlan(space);
    EXPECT_EQ(SetupLayout(session_, layout, ErrorOutput::ToLog(errorLog_)), ok) << layout;
    EXPECT_EQ(host_.Calls("Document("), calls) << layout;
    EXPECT_EQ(Active(doc).name, activeAfter) << layout;
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

}  // namespace
}  // namespace sheafwork
