// The session with the host: starting it, the drawings it opens and closes,
// its variables, and putting everything back at the end.
#include "host/host_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "fakes/fake_host.h"
#include "fakes/native_path.h"
#include "fakes/scripted_prompt.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "host/error.h"
#include "host/startup.h"

namespace sheafwork {
namespace {

using testing::NativePath;

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HostSessionTest : public ::testing::Test {
 protected:
  testing::FakeHost host;
  HostSession session{host.App(), NativePath("/prog")};
};

TEST_F(HostSessionTest, AFailedReadSkipsTheRestAndOnlyWhatWasSavedIsRestored) {
  host.FailOn("Document(Dessin1.dwg).GetVariable", host::Error(5, "refus"), 1);
  session.SetMainAppSysvars();
  EXPECT_EQ(std::tuple(session.SavedProxyNotice.has_value(), session.SavedExpert.has_value()),
            std::tuple(true, false));
  EXPECT_THAT(host.Calls("SetVariable"), IsEmpty());

  session.RestoreMainAppSysvars();
  EXPECT_THAT(host.Calls("SetVariable"),
              ElementsAre("Document(Dessin1.dwg).SetVariable(PROXYNOTICE, 1)"));

  // With nothing saved, nothing is put back.
  HostSession fresh{host.App(), NativePath("/prog")};
  host.FailOn("GetVariable");
  fresh.SetMainAppSysvars();
  host.ClearCalls();
  fresh.RestoreMainAppSysvars();
  EXPECT_THAT(host.Calls(), IsEmpty());
}

TEST_F(HostSessionTest, SingleDocumentModeSavesAWritableDrawingBeforeReplacingIt) {
  host.variables["SDI"] = std::int16_t{1};
  const auto& plan = host.AddDrawing("Plan.dwg");
  ASSERT_TRUE(session.OpenDrawing(plan.path).ok);
  EXPECT_THAT(host.InitialDocument().savedAs, ElementsAre(NativePath("/prog/QXTEMP.DWG")));
  EXPECT_THAT(host.OpenDocuments(), ElementsAre("*" + plan.path));

  // A read-only drawing is replaced without being saved.
  const auto& coupe = host.AddDrawing("Coupe.dwg");
  ASSERT_TRUE(session.OpenDrawing(coupe.path).ok);
  EXPECT_THAT(host.LastOpened(plan.path)->savedAs, IsEmpty());
  EXPECT_THAT(host.OpenDocuments(), ElementsAre("*" + coupe.path));

  // The active drawing, named in another letter case, is taken as it is.
  host.ClearCalls();
  host.Folder().Write("COUPE.DWG", "");
  ASSERT_TRUE(session.OpenDrawing(host.Folder().File("COUPE.DWG")).ok);
  EXPECT_THAT(host.Calls("Open"), IsEmpty());
  EXPECT_EQ(session.objOrvaDoc.get(), host.LastOpened(coupe.path));
}

// The last document is never closed.
TEST_F(HostSessionTest, CloseDrawingFindsTheDocumentIgnoringCaseAndActivatesAnother) {
  const auto& plan = host.AddDrawing("Plan.dwg");
  ASSERT_TRUE(session.OpenDrawing(plan.path).ok);
  std::string upper = plan.path;
  upper.replace(upper.size() - 8, 8, "PLAN.DWG");
  host.ClearCalls();

  EXPECT_TRUE(session.CloseDrawing(upper));
  EXPECT_THAT(host.Calls("Activate"), ElementsAre("Document(Dessin1.dwg).Activate()"));
  EXPECT_THAT(host.OpenDocuments(), ElementsAre("*Dessin1.dwg"));
  EXPECT_FALSE(session.CloseDrawing(plan.path));
  EXPECT_FALSE(session.CloseDrawing("Dessin1.dwg"));
  EXPECT_THAT(host.Calls("Close"), ElementsAre("Document(Plan.dwg).Close(false)"));
}

TEST(SysVarTest, ValuesReadAsTextAndNumbers) {
  EXPECT_EQ(host::FormatSysVar(std::int16_t{-1}), "-1");
  EXPECT_EQ(host::FormatSysVar(std::int32_t{70000}), "70000");
  EXPECT_EQ(host::FormatSysVar(0.25), "0.25");
  EXPECT_EQ(host::FormatSysVar(std::string("romans")), "romans");
  EXPECT_EQ(host::SysVarAsInteger(std::int16_t{2}), 2);
  EXPECT_EQ(host::SysVarAsInteger(1.6), 2);
  EXPECT_THROW(host::SysVarAsInteger(std::string("1")), host::Error);
}

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
