// The COM host against the test server, across two processes: every member
// crosses the process boundary by name, a run of a list writes the same logs
// as with any host, and a server error or a server that dies ends as it
// should. Each test quits the server it started, or lets it die.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <filesystem>
#include <tuple>
#include <utility>

#include "batch/session.h"
#include "com/attach.h"
#include "com/com_host.h"
#include "com/dispatch.h"
#include "fakes/fake_host.h"
#include "fakes/log_lines.h"
#include "fakes/native_path.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "host/error.h"
#include "host/host_session.h"
#include "log/wide_path.h"
#include "plotrun/plot_run.h"
#include "plottest/plot_test.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr std::string_view kProgId = "Sheafwork.TestHost.1";

std::filesystem::path ProgramFolder() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path();
}

// Runs the test server with `argument` and waits for it.
int RunServer(const std::wstring& argument) {
  std::wstring command =
      L"\"" + (ProgramFolder() / L"sheafwork-test-host.exe").wstring() + L"\" " + argument;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &startup, &process)) {
    return -1;
  }
  WaitForSingleObject(process.hProcess, 30000);
  DWORD status = 1;
  GetExitCodeProcess(process.hProcess, &status);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return static_cast<int>(status);
}

class ComHostTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_EQ(RunServer(L"/RegServer"), 0); }

  void SetUp() override {
    ASSERT_TRUE(apartment.ok());
    ASSERT_TRUE(com::IsProgIdRegistered(kProgId));
    server = com::AttachServer(kProgId);
    app = com::MakeComApplication(server);
    // The test server's drawings: the copies of the fixtures in this test's
    // folder, with their one paper-space layout.
    std::string lines;
    for (const char* name : {"Plan.dxf", "Coupe.dxf", "Erreur53.dxf", "Facade.dxf"}) {
      std::filesystem::copy_file(FsPath(testing::TestData(std::string("comhost/") + name)),
                                 folder.path() / name);
      lines += std::string("drawing|") + Drawing(name) + "|Présentation1\n";
    }
    Control(lines);
  }

  void TearDown() override {
    if (!app) return;
    try {
      app->Quit();
    } catch (const host::Error&) {
      // Already gone: what the test wanted.
    }
    app.reset();
    server = {};
    // The server leaves the running object table as it ends.
    for (int i = 0; i < 50 && RunningServer(); ++i) Sleep(100);
  }

  static bool RunningServer() {
    CLSID clsid;
    com::ComRef<IUnknown> running;
    return SUCCEEDED(CLSIDFromProgID(L"Sheafwork.TestHost.1", &clsid)) &&
           SUCCEEDED(GetActiveObject(clsid, nullptr, running.Out()));
  }

  void Control(const std::string& lines) {
    com::Dispatch control(server);
    std::vector<com::Variant> args;
    args.emplace_back(std::string_view(lines));
    control.Call("TestControl", std::move(args));
  }

  // Whether the server serves the scripted host, whose drawings and devices
  // the test knows; the embedded host reads the files themselves.
  bool ServesScriptedHost() {
    return com::Dispatch(server).Get("TestHostKind").AsString() == "fake";
  }

  std::string Drawing(std::string_view name) const {
    return PathText(folder.path() / FsPath(name));
  }

  // A list of one row per drawing, each plotting its layout "Présentation1"
  // with the defaults, with both logs on.
  void MakeList(Session& list, const std::vector<std::string>& drawings) const {
    list.Log.JournalLogFileName = folder.File("QXJOURNL.LOG");
    list.Log.ErrorLogFileName = folder.File("QXERROR.LOG");
    list.Log.JournalHeader = "journal";
    list.Log.JournalUserComment = "comment";
    list.Log.ErrorHeader = "errors";
    for (const auto& name : drawings) {
      BatchEntry& entry = list.List.Append();
      entry.FileName = Drawing(name);
      entry.Layout = "Présentation1";
      entry.PlotSetup = LoadResourceText(76);
      entry.PlotDevice = LoadResourceText(76);
    }
  }

  RunResult RunList(const std::vector<std::string>& drawings) {
    MakeList(session, drawings);
    HostSession hostSession(app, PathText(folder.path()));
    return PlotAllEntries(session, hostSession, RunServices{});
  }

  // The plot test's results for `drawings` in `host`.
  std::string CheckList(std::shared_ptr<host::Application> host,
                        const std::vector<std::string>& drawings) const {
    struct : PrinterCatalog {
      std::vector<PrinterInfo> Printers() override { return {{"Bureau", "HP LaserJet", "LPT1:"}}; }
    } printers;
    struct : FontFolders {
      bool HasFontFile(std::string_view) override { return false; }
    } fonts;
    Session list{PathText(ProgramFolder())};
    MakeList(list, drawings);
    HostSession hostSession(std::move(host), PathText(folder.path()));
    const PlotTestServices services{
        printers, fonts, [] { return LocalTime{2026, 11, 26, 9, 0, 0}; }, {}};
    return RunPlotTest(list, hostSession, services);
  }

  std::vector<std::string> LogLines(const std::string& file, std::size_t header) const {
    auto lines = testing::ReadLogLines(file);
    return lines.size() < header ? lines
                                 : std::vector<std::string>(lines.begin() + header, lines.end());
  }

  com::Apartment apartment;
  testing::TempFolder folder;
  com::ComRef<IDispatch> server;
  std::shared_ptr<host::Application> app;
  Session session{PathText(ProgramFolder())};
};

// Values of every kind cross the process boundary both ways: texts with
// accents, arrays of texts and of reals, arguments by reference, objects
// passed back to the server, optional arguments left out, errors with their
// number and description.
TEST_F(ComHostTest, MembersCrossTheProcessBoundaryByName) {
  auto doc = app->GetDocuments()->Open(Drawing("Plan.dxf"), true);
  EXPECT_EQ(doc->FullName(), Drawing("Plan.dxf"));
  doc->Activate();
  EXPECT_EQ(app->ActiveDocument()->FullName(), Drawing("Plan.dxf"));
  // Documents are counted from 1 by the server, from 0 by the program.
  auto documents = app->GetDocuments();
  ASSERT_EQ(documents->Count(), 2);
  EXPECT_EQ(documents->Item(1)->FullName(), Drawing("Plan.dxf"));

  auto layouts = doc->GetLayouts();
  ASSERT_EQ(layouts->Count(), 2);
  auto layout = layouts->Item(1);
  EXPECT_EQ(layout->Name(), "Présentation1");
  doc->SetActiveLayout(layout);
  EXPECT_EQ(doc->ActiveLayout()->Name(), "Présentation1");

  layout->SetCanonicalMediaName("ISO_A3_(297.00_x_420.00_MM)");
  EXPECT_EQ(layout->CanonicalMediaName(), "ISO_A3_(297.00_x_420.00_MM)");
  if (ServesScriptedHost()) {
    EXPECT_THAT(layout->GetCanonicalMediaNames(),
                ElementsAre("ISO_A4_(210.00_x_297.00_MM)", "ISO_A3_(297.00_x_420.00_MM)"));
  } else {
    EXPECT_THAT(layout->GetCanonicalMediaNames(),
                ::testing::Contains(layout->CanonicalMediaName()));
  }
  layout->SetPlotRotation(3);
  EXPECT_EQ(layout->PlotRotation(), 3);
  layout->SetWindowToPlot({1.5, -2}, {420.25, 297});
  host::Point2 low;
  host::Point2 high;
  layout->GetWindowToPlot(low, high);
  EXPECT_EQ(std::tuple(low.x, low.y, high.x, high.y), std::tuple(1.5, -2.0, 420.25, 297.0));
  layout->SetCustomScale(1, 50);
  double numerator = 0;
  double denominator = 0;
  layout->GetCustomScale(numerator, denominator);
  EXPECT_EQ(std::pair(numerator, denominator), std::pair(1.0, 50.0));
  layout->SetPlotOrigin({5, 7.5});
  EXPECT_EQ(layout->PlotOrigin().y, 7.5);
  layout->SetStyleSheet("monochrome été.ctb");
  EXPECT_EQ(layout->StyleSheet(), "monochrome été.ctb");

  // The model tab takes the layout's settings through an object argument.
  auto model = layouts->Item(0);
  model->CopyFrom(*layout);
  EXPECT_EQ(model->PlotRotation(), 3);

  doc->SetVariable("EXPERT", std::int16_t{2});
  EXPECT_EQ(host::SysVarAsInteger(doc->GetVariable("EXPERT")), 2);
  EXPECT_EQ(std::get<std::string>(doc->GetVariable("SHPNAME")), "");

  auto plot = doc->GetPlot();
  std::int16_t count = 4;
  plot->StartBatchMode(count);
  EXPECT_EQ(count, 4);
  EXPECT_TRUE(plot->PlotToDevice(std::nullopt));
  EXPECT_TRUE(plot->PlotToFile(folder.File("Plan"), std::string("PDF.pc3")));
  EXPECT_TRUE(app->GetOrvaState()->IsQuiescent());
  EXPECT_TRUE(doc->UndrawnEntities().empty());

  try {
    app->GetDocuments()->Open(Drawing("Absent.dxf"), true);
    FAIL() << "no error for a drawing the server does not have";
  } catch (const host::HostGone&) {
    FAIL() << "the server is not gone";
  } catch (const host::Error& error) {
    EXPECT_EQ(error.number(), host::kFileNotFound);
    EXPECT_FALSE(error.description().empty());
  }
}

// A run of a list through the server: a journal line per plotted row, and
// the error log lines of the one row whose drawing the server refuses to
// open with error 53.
TEST_F(ComHostTest, ARunJournalsEachPlottedRowAndLogsTheRowTheServerCannotOpen) {
  Control(testing::ReadTestData("comhost/error53.control"));
  const RunResult result = RunList({"Plan.dxf", "Erreur53.dxf", "Coupe.dxf"});
  EXPECT_EQ(std::tuple(result.plotted, result.failed, result.endedEarly), std::tuple(2, 1, false));
  EXPECT_THAT(LogLines(session.Log.JournalLogFileName, 2),
              ElementsAre(StartsWith("Plan.dxf, "), StartsWith("Coupe.dxf, ")));
  EXPECT_THAT(LogLines(session.Log.ErrorLogFileName, 1),
              ElementsAre(LoadResourceText(ids::kCannotOpenDrawing) + Drawing("Erreur53.dxf"),
                          LoadResourceText(ids::kPlotFailed) + Drawing("Erreur53.dxf")));
}

// A server that dies while a drawing is being opened: the row under way
// fails, the run ends within seconds saying the host is gone, and both logs
// are whole.
TEST_F(ComHostTest, AServerThatDiesMidRunEndsTheRunWithCompleteLogs) {
  Control(testing::ReadTestData("comhost/dies-at-second-open.control"));
  const auto start = std::chrono::steady_clock::now();
  const RunResult result = RunList({"Plan.dxf", "Coupe.dxf", "Facade.dxf"});
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_EQ(std::tuple(result.plotted, result.failed, result.endedEarly, result.journalWritten,
                       result.errorLogWritten),
            std::tuple(1, 1, true, true, true));
  EXPECT_EQ(LogLines(session.Log.JournalLogFileName, 2).size(), 1u);
  EXPECT_THAT(LogLines(session.Log.ErrorLogFileName, 1),
              ElementsAre(LoadResourceText(ids::kProblemOpeningDrawing) + Drawing("Coupe.dxf"),
                          LoadResourceText(ids::kPlotFailed) + Drawing("Coupe.dxf"),
                          HasSubstr(LoadResourceText(ids::kComHostGone))));
  app.reset();  // nothing to quit
}

// The plot test reads through the server exactly what it reads from the same
// scripted host in its own process: the same results, line for line. (With
// the embedded host served there is nothing in process to compare with.)
TEST_F(ComHostTest, ThePlotTestThroughTheServerReadsWhatItReadsInProcess) {
  if (!ServesScriptedHost()) GTEST_SKIP() << "the server serves the embedded host";
  Control(testing::ReadTestData("comhost/error53.control"));
  const std::vector<std::string> drawings = {"Plan.dxf", "Erreur53.dxf", "Coupe.dxf"};
  const std::string throughServer = CheckList(app, drawings);

  testing::FakeHost inProcess;
  for (const auto& name : drawings)
    inProcess.AddDrawingAt(Drawing(name)).AddLayout("Présentation1");
  inProcess.Drawing(Drawing("Erreur53.dxf")).openError = host::Error(53, "Fichier introuvable");
  EXPECT_EQ(throughServer, CheckList(inProcess.App(), drawings));
  EXPECT_THAT(throughServer, HasSubstr("Erreur53.dxf"));
}

}  // namespace
}  // namespace sheafwork
