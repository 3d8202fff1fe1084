#include "host/host_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "fakes/fake_host.h"
#include "fakes/native_path.h"
#include "host/error.h"

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

}  // namespace
}  // namespace sheafwork
