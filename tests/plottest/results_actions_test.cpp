#include "plottest/results_actions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <tuple>

#include "fakes/scripted_prompt.h"
#include "fakes/temp_folder.h"

namespace sheafwork {
namespace {

constexpr const char* kErrorTitle = "Erreur de traçage en différé Orvane";
constexpr const char* kAppTitle = "Utilitaire de traçage en différé Orvane";
constexpr const char* kJournalOff =
    "Erreur: Le fichier de journalisation n'est pas activé ou n'est pas accessible";
constexpr const char* kNoResults = "Erreur: pas de résultats pour l'essai de traçage";

// Results as the scan writes them, with characters outside ASCII.
const std::string kResults = "*** Balayage <sans nom>\r\n   Vérification /d/Façade.dwg\r\n";
const std::string kResultsBytes =
    "*** Balayage <sans nom>\r\n   V\xE9rification /d/Fa\xE7"
    "ade.dwg\r\n";

class ResultsActionsTest : public ::testing::Test {
 protected:
  // The one box shown since the last call: critical, with OK only.
  void ExpectOneCriticalBox(const std::string& text, const std::string& title) {
    ASSERT_EQ(prompt_.messages.size(), 1u);
    const PromptMessage box = prompt_.messages[0];
    EXPECT_EQ(std::tie(box.text, box.title), std::tie(text, title));
    EXPECT_TRUE(box.icon == PromptIcon::Critical && box.buttons == PromptButtons::Ok);
    prompt_.messages.clear();
  }

  testing::TempFolder dir_;
  testing::ScriptedPrompt prompt_;
  LogSettings settings_ = DefaultLogSettings(dir_.path().string());
};

// 296 when the journal is off, unnamed or cannot be written, checked before
// 198 for empty results; nothing is written.
TEST_F(ResultsActionsTest, JournalRefusals) {
  const std::string journal = settings_.JournalLogFileName;
  const std::string absent = dir_.File("absent/QXJOURNL.LOG");
  using Case = std::tuple<bool, std::string, std::string, const char*>;
  for (const auto& [on, name, results, message] :
       {Case{false, journal, "", kJournalOff}, Case{true, "", kResults, kJournalOff},
        Case{true, absent, kResults, kJournalOff}, Case{true, journal, "", kNoResults}}) {
    settings_.JournalLogOn = on;
    settings_.JournalLogFileName = name;
    EXPECT_FALSE(AppendResultsToJournal(settings_, results, prompt_)) << name;
    ExpectOneCriticalBox(message, kErrorTitle);
  }
  EXPECT_TRUE(std::filesystem::is_empty(dir_.path()));
}

// Empty results are refused before a name is asked; a cancelled dialog writes
// nothing.
TEST_F(ResultsActionsTest, SaveAsRefusesEmptyResultsAndHonoursACancel) {
  EXPECT_FALSE(SaveResultsAs("", prompt_));
  ExpectOneCriticalBox(kNoResults, kAppTitle);
  EXPECT_TRUE(prompt_.dialogs.empty());

  prompt_.ThenChoose(std::nullopt);
  EXPECT_FALSE(SaveResultsAs(kResults, prompt_));
  ASSERT_EQ(prompt_.dialogs.size(), 1u);
  const auto& dialog = prompt_.dialogs[0];
  EXPECT_TRUE(dialog.save && dialog.request.confirmOverwrite);
  EXPECT_EQ(dialog.request.title, "Enregistrer les résultats de l'essai de traçage");
  EXPECT_EQ(dialog.request.filter, "Fichiers texte (*.txt)|*.txt");
  EXPECT_TRUE(prompt_.messages.empty());
  EXPECT_TRUE(std::filesystem::is_empty(dir_.path()));
}

// The chosen file is replaced by the results in Windows-1252; a failure shows
// message 197 with the system's reason, a full disk included.
TEST_F(ResultsActionsTest, SaveAsWritesTheChosenFileOrShowsWhyNot) {
  const std::string path = dir_.Write("essai.txt", std::string(200, 'x'));  // longer
  prompt_.ThenChoose(path).ThenChoose(dir_.File("absent/essai.txt"));
  EXPECT_TRUE(SaveResultsAs(kResults, prompt_));
  EXPECT_EQ(testing::TempFolder::Read(path), kResultsBytes + "\r\n");
  EXPECT_TRUE(prompt_.messages.empty());

  EXPECT_FALSE(SaveResultsAs(kResults, prompt_));
  ExpectOneCriticalBox(
      std::string("Erreur lors de l'enregistrement des résultats de l'essai de traçage, erreur de "
                  "description: ") +
          std::strerror(ENOENT),
      kErrorTitle);
  std::string error;
  EXPECT_FALSE(WriteResultsFile("/dev/full", kResults, error));
  EXPECT_EQ(error, std::strerror(ENOSPC));
}

}  // namespace
}  // namespace sheafwork
