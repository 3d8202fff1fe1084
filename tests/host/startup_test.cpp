#include "host/startup.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "batch/list_commands.h"
#include "fakes/fake_host.h"
#include "fakes/native_path.h"
#include "fakes/scripted_prompt.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "host/error.h"

namespace sheafwork {
namespace {

using testing::NativePath;

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class StartupTest : public ::testing::Test {
 protected:
  HostFactory Factory() {
    return [this] { return host.App(); };
  }
  ProgramFiles Files() const { return {data.path().string(), data.path().string()}; }

  testing::FakeHost host;
  testing::TempFolder data;
  testing::ScriptedPrompt prompt;
};

TEST_F(StartupTest, AttachingMakesTheHostVisibleRecordsItsSizeAndQuietsIt) {
  AttachResult attached = AttachHost(Factory(), Files(), prompt);
  ASSERT_TRUE(attached.ok);
  HostSession& session = *attached.host;
  EXPECT_TRUE(host.visible);
  EXPECT_TRUE(session.HostStarted);
  EXPECT_EQ(session.HostPath, "/opt/orvane");
  EXPECT_EQ(session.HostWidth, 1280);
  EXPECT_EQ(session.HostHeight, 900);
  EXPECT_NE(session.objOrvaState, nullptr);
  EXPECT_EQ(host.InitialDocument().variables["EXPERT"], host::SysVarValue(std::int16_t{2}));
  // No help file in the host's folder: the program's own is taken unchecked.
  EXPECT_EQ(attached.helpFilePath, data.File("quirerun.hlp"));
  EXPECT_THAT(prompt.messages, IsEmpty());
}

TEST_F(StartupTest, TheHostsHelpFileAndTheTemplateDrawingAreUsedWhenPresent) {
  testing::TempFolder hostFolder;
  std::filesystem::create_directory(hostFolder.path() / "Help");
  hostFolder.Write("Help/quirerun.hlp", "");
  host.path = hostFolder.path().string();
  const std::string templateDrawing = data.Write("QUIRERUN.DWG", "");
  host.AddDrawingAt(templateDrawing);

  AttachResult attached = AttachHost(Factory(), Files(), prompt);
  ASSERT_TRUE(attached.ok);
  EXPECT_EQ(attached.helpFilePath, hostFolder.File(NativePath("Help/quirerun.hlp")));
  EXPECT_EQ(attached.host->Doc().FullName(), templateDrawing);

  // A network folder is replaced by the root.
  host.path = "\\\\serveur\\orvane";
  EXPECT_EQ(AttachHost(Factory(), Files(), prompt).host->HostPath, NativePath("/"));
}

TEST_F(StartupTest, AHostThatCannotBeCreatedShowsMessage125AndIsNeverQuit) {
  AttachResult attached =
      AttachHost([]() -> std::shared_ptr<host::Application> { throw host::Error(429, "absent"); },
                 Files(), prompt);
  EXPECT_FALSE(attached.ok);
  EXPECT_EQ(attached.host, nullptr);
  ASSERT_EQ(prompt.messages.size(), 1u);
  EXPECT_EQ(prompt.messages[0].text, "Erreur lors du chargement d'Orvane pour Sheafwork");
  EXPECT_EQ(prompt.messages[0].title, "Erreur de traçage en différé Orvane");

  Session session(data.path().string());
  EndSession(session, attached.host.get(), prompt);
  EXPECT_FALSE(host.Quit());
}

// Only a host the program started is quit, even when attaching failed after
// it was created.
TEST_F(StartupTest, OnlyAHostTheProgramStartedIsQuit) {
  Session session(data.path().string());
  HostSession attachedOnly(host.App(), data.path().string());
  EndSession(session, &attachedOnly, prompt);
  EXPECT_FALSE(host.Quit());

  host.FailOn("Application.Height");
  AttachResult attached = AttachHost(Factory(), Files(), prompt);
  EXPECT_FALSE(attached.ok);
  ASSERT_NE(attached.host, nullptr);
  EndSession(session, attached.host.get(), prompt);
  EXPECT_TRUE(host.Quit());
}

TEST_F(StartupTest, EndingPutsTheVariablesAndTheWindowSizeBackBeforeQuitting) {
  AttachResult attached = AttachHost(Factory(), Files(), prompt);
  ASSERT_TRUE(attached.ok);
  host.width = 640;
  host.height = 480;
  host.ClearCalls();
  Session session(data.path().string());
  EndSession(session, attached.host.get(), prompt);
  EXPECT_THAT(host.Calls("Set"),
              ElementsAre("Document(Dessin1.dwg).SetVariable(PROXYNOTICE, 1)",
                          "Document(Dessin1.dwg).SetVariable(EXPERT, 0)",
                          "Application.SetWidth(1280)", "Application.SetHeight(900)"));
  EXPECT_EQ(host.Calls().back(), "Application.Quit()");
}

TEST_F(StartupTest, TheSaveQuestionComesOnlyForAModifiedListWithEntries) {
  Session session(data.path().string());
  session.ListModified = true;
  EndSession(session, nullptr, prompt);
  EXPECT_THAT(prompt.messages, IsEmpty());

  AddDrawingToList(session, data.Write("a.dwg", ""));
  session.ListModified = true;
  prompt.ThenAnswer(PromptAnswer::No);
  EndSession(session, nullptr, prompt);
  ASSERT_EQ(prompt.messages.size(), 1u);
  EXPECT_EQ(prompt.messages[0].text, "Souhaitez-vous enregistrer la liste courante?");
  EXPECT_EQ(prompt.messages[0].buttons, PromptButtons::YesNo);
  EXPECT_THAT(prompt.dialogs, IsEmpty());
}

TEST_F(StartupTest, ExitIsConfirmedUnlessForced) {
  prompt.ThenAnswer(PromptAnswer::Cancel).ThenAnswer(PromptAnswer::Ok);
  EXPECT_FALSE(ConfirmExit(prompt, false));
  EXPECT_TRUE(ConfirmExit(prompt, false));
  EXPECT_TRUE(ConfirmExit(prompt, true));
  ASSERT_EQ(prompt.messages.size(), 2u);
  EXPECT_EQ(prompt.messages[0].text, "Quitter le traçage en différé?");
}

TEST_F(StartupTest, OnlyAnExistingQx3FileNamedOnTheCommandLineIsLoaded) {
  Session session(data.path().string());
  const std::string list = testing::TestData("lists/one_row.QX3");
  const std::string text = testing::TestData("lists/magic_only.txt");
  EXPECT_FALSE(LoadCommandLineList(session, prompt, text));
  EXPECT_FALSE(LoadCommandLineList(session, prompt, data.File("absent.qx3")));
  EXPECT_FALSE(LoadCommandLineList(session, prompt, ""));
  EXPECT_THAT(prompt.messages, IsEmpty());
  EXPECT_TRUE(LoadCommandLineList(session, prompt, list));
  EXPECT_EQ(session.List.EntryCount(), 1);
  EXPECT_EQ(session.Caption, "Utilitaire de traçage en différé Orvane - " + list);
  EXPECT_FALSE(session.ListModified);
}

}  // namespace
}  // namespace sheafwork
