#include "host/startup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "fakes/fake_host.h"
#include "fakes/native_path.h"
#include "fakes/scripted_prompt.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"

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

TEST_F(StartupTest, TheHostsHelpFileAndTheTemplateDrawingAreUsedWhenPresent) {
  testing::TempFolder hostFolder;
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

TEST_F(StartupTest, OnlyAnExistingQx3FileNamedOnTheCommandLineIsLoaded) {
  Session session(data.path().string());
  const std::string list = testing::TestData("lists/one_row.QX3");
  const std::string text = testing::TestData("lists/magic_only.txt");
  EXPECT_FALSE(LoadCommandLineList(session, prompt, text));
  EXPECT_FALSE(LoadCommandLineList(session, prompt, data.File("absent.qx3")));
  EXPECT_FALSE(LoadCommandLineList(session, prompt, ""));
  EXPECT_THAT(prompt.messages, IsEmpty());
  EXPECT_TRUE(LoadCommandLineList(session, prompt, list));
  EXPECT_EQ(std::tuple(session.List.EntryCount(), session.Caption, session.ListModified),
            std::tuple(1, "Utilitaire de traçage en différé Orvane - " + list, false));
}

}  // namespace
}  // namespace sheafwork
