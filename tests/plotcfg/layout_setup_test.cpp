#include "plotcfg/layout_setup.h"

#include <tuple>

#include "fakes/scripted_prompt.h"
#include "fakes/test_data.h"
#include "plotcfg_fixture.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;

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

}  // namespace
}  // namespace sheafwork
