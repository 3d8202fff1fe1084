#include "plottest/results_actions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>

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
  void ExpectOneCriticalBox(const std::string& text, const std::string& title) {
    ASSERT_EQ(prompt_.messages.size(), 1u);
    EXPECT_EQ(prompt_.messages[0].text, text);
    EXPECT_EQ(prompt_.messages[0].title, title);
    EXPECT_EQ(prompt_.messages[0].icon, PromptIcon::Critical);
    EXPECT_EQ(prompt_.messages[0].buttons, PromptButtons::Ok);
  }

  testing::TempFolder dir_;
  testing::ScriptedPrompt prompt_;
  LogSettings settings_ = DefaultLogSettings(dir_.path().string());
};

TEST_F(ResultsActionsTest, AJournalThatIsOffOrUnnamedIsRefusedBeforeEmptyResults) {
  settings_.JournalLogOn = false;
  EXPECT_FALSE(AppendResultsToJournal(settings_, "", prompt_));
  ExpectOneCriticalBox(kJournalOff, kErrorTitle);

  prompt_.messages.clear();
  settings_.JournalLogOn = true;
  settings_.JournalLogFileName.clear();
  EXPECT_FALSE(AppendResultsToJournal(settings_, kResults, prompt_));
  ExpectOneCriticalBox(kJournalOff, kErrorTitle);

  prompt_.messages.clear();
  settings_ = DefaultLogSettings(dir_.path().string());
  EXPECT_FALSE(AppendResultsToJournal(settings_, "", prompt_));
  ExpectOneCriticalBox(kNoResults, kErrorTitle);
  EXPECT_FALSE(std::filesystem::exists(settings_.JournalLogFileName));
}

TEST_F(ResultsActionsTest, ResultsAreAppendedOnceInWindows1252AfterWhatTheJournalHolds) {
  // A journal that does not exist yet is created.
  ASSERT_TRUE(AppendResultsToJournal(settings_, kResults, prompt_));
  EXPECT_EQ(testing::TempFolder::Read(settings_.JournalLogFileName), kResultsBytes + "\r\n");

  dir_.Write("QXJOURNL.LOG", "ancien\r\n");
  ASSERT_TRUE(AppendResultsToJournal(settings_, kResults, prompt_));
  EXPECT_EQ(testing::TempFolder::Read(settings_.JournalLogFileName),
            "ancien\r\n" + kResultsBytes + "\r\n");
  EXPECT_TRUE(prompt_.messages.empty());
}

TEST_F(ResultsActionsTest, AJournalThatCannotBeWrittenIsReported) {
  settings_.JournalLogFileName = dir_.File("absent/QXJOURNL.LOG");
  EXPECT_FALSE(AppendResultsToJournal(settings_, kResults, prompt_));
  ExpectOneCriticalBox(kJournalOff, kErrorTitle);
}

TEST_F(ResultsActionsTest, SaveAsRefusesEmptyResultsWithoutAskingForAName) {
  EXPECT_FALSE(SaveResultsAs("", prompt_));
  ExpectOneCriticalBox(kNoResults, kAppTitle);
  EXPECT_TRUE(prompt_.dialogs.empty());
}

TEST_F(ResultsActionsTest, SaveAsAsksForATextFileAndWritesNothingWhenCancelled) {
  prompt_.ThenChoose(std::nullopt);
  EXPECT_FALSE(SaveResultsAs(kResults, prompt_));
  ASSERT_EQ(prompt_.dialogs.size(), 1u);
  const auto& dialog = prompt_.dialogs[0];
  EXPECT_TRUE(dialog.save);
  EXPECT_EQ(dialog.request.title, "Enregistrer les résultats de l'essai de traçage");
  EXPECT_EQ(dialog.request.filter, "Fichiers texte (*.txt)|*.txt");
  EXPECT_TRUE(dialog.request.confirmOverwrite);
  EXPECT_TRUE(prompt_.messages.empty());
  EXPECT_TRUE(std::filesystem::is_empty(dir_.path()));
}

TEST_F(ResultsActionsTest, SaveAsReplacesTheChosenFile) {
  const std::string path = dir_.Write("essai.txt",
                                      "un ancien contenu plus long que le nouveau, "
                                      "bien plus long, vraiment bien plus long");
  prompt_.ThenChoose(path);
  EXPECT_TRUE(SaveResultsAs(kResults, prompt_));
  EXPECT_EQ(testing::TempFolder::Read(path), kResultsBytes + "\r\n");
  EXPECT_TRUE(prompt_.messages.empty());
}

TEST_F(ResultsActionsTest, AFailedSaveShowsTheSystemsReason) {
  prompt_.ThenChoose(dir_.File("absent/essai.txt"));
  EXPECT_FALSE(SaveResultsAs(kResults, prompt_));
  ExpectOneCriticalBox(
      std::string("Erreur lors de l'enregistrement des résultats de l'essai de traçage, erreur de "
                  "description: ") +
          std::strerror(ENOENT),
      kErrorTitle);

  // A write that fails only when the data reaches the disk.
  std::string error;
  EXPECT_FALSE(WriteResultsFile("/dev/full", kResults, error));
  EXPECT_EQ(error, std::strerror(ENOSPC));
}

}  // namespace
}  // namespace sheafwork
