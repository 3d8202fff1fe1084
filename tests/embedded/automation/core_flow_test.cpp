// The program's plot run and plot test over the embedded host; how the host
// runs a DWG converter (the stand-in converters of tests/data/dwg/converters
// in place of tools/dwg2dxf); the external references and image files a
// drawing pulls in, and the limits that keep them from running away.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <tuple>

#include "batch/session.h"
#include "embedded/automation/embedded_fixture.h"
#include "embedded/dxf/reader.h"
#include "embedded/model/xrefs.h"
#include "fakes/log_lines.h"
#include "host/host_session.h"
#include "plotrun/plot_run.h"
#include "plottest/plot_test.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::embedded {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

class CoreFlowTest : public EmbeddedHostTest {
 protected:
  CoreFlowTest() {
    session.Log.JournalLogFileName = logs.File("journal.log");
    session.Log.ErrorLogFileName = logs.File("erreurs.log");
    session.Log.JournalHeader = "journal";
    session.Log.JournalUserComment = "commentaire";
    session.Log.ErrorHeader = "erreurs";
  }

  /// Appends a row plotting `layout` of the drawing at `path`.
  BatchEntry& Row(const std::string& path, const std::string& layout) {
    BatchEntry& entry = session.List.Append();
    entry.FileName = path;
    entry.Layout = layout;
    return entry;
  }

  /// The core's session on the host, made once the host's options are set.
  HostSession Attach() {
    HostSession host(Host(), logs.path().string());
    host.objOrvaDoc = Host()->ActiveDocument();
    return host;
  }

  testing::TempFolder logs;
  Session session{logs.path().string()};
};

struct NoFonts : FontFolders {
  bool HasFontFile(std::string_view) override { return false; }
};

struct RowsSeen : RunObserver {
  void RowFinished(int row, RowStatus status) override {
    rows.push_back(std::to_string(row) + (status == RowStatus::Plotted ? " tracé" : " échec"));
  }
  void RowCancelled(int row) override { rows.push_back(std::to_string(row) + " annulé"); }
  std::vector<std::string> rows;
};

TEST_F(CoreFlowTest, ACancelDuringASheetStopsTheRunAndReportsItsRowCancelled) {
  const std::string plan = AddDrawing("Plan.dxf");
  Row(plan, "Présentation1");
  Row(plan, "Coupe");
  // The engine asks whether to stop while it draws; the user said so
  // during the first sheet.
  options.plotter = [this](const PlotJob& job) {
    display->cancel = true;
    if (job.work.cancelled && job.work.cancelled()) throw PlotError("interrompu");
  };
  RowsSeen seen;
  RunServices services;
  services.observer = &seen;

  HostSession host = Attach();
  const RunResult result = PlotAllEntries(session, host, services);
  EXPECT_EQ(std::tuple(result.cancelled, result.plotted, result.failed), std::tuple(true, 0, 0));
  EXPECT_THAT(seen.rows, ElementsAre("1 annulé"));
  EXPECT_THAT(
      testing::ReadLogLines(session.Log.ErrorLogFileName),
      ElementsAre("erreurs", AllOf(HasSubstr("interrompu par l'utilisateur"), EndsWith(plan))));
  EXPECT_EQ(display->failures.size(), 0u);
}

TEST_F(CoreFlowTest, ThePlotTestWarnsOfAReferenceLeftOutBeyondTheLimits) {
  options.xrefLimits.maxDepth = 1;
  AddDrawing("Fond.dxf", WithXrefs({XrefBlock("TRAME", "Trame.dxf")}));
  AddDrawing("Trame.dxf");
  Row(AddDrawing("Plan.dxf", WithXrefs({XrefBlock("FOND", "Fond.dxf")})), "Présentation1");

  HostSession host = Attach();
  NoFonts fonts;
  const std::string results =
      RunPlotTest(session, host, PlotTestServices{*printers, fonts, {}, {}});
  EXPECT_THAT(results,
              HasSubstr(LoadResourceText(ids::kTestXrefLeftOut) + "Xréf TRAME : Trame.dxf -> " +
                        files.File("Trame.dxf") + " : " + LoadResourceText(ids::kXrefLeftOutMark)));
  EXPECT_THAT(results, Not(HasSubstr("ERREUR:  XREF")));
  EXPECT_THAT(
      display->notices,
      Contains("Référence externe non chargée : TRAME (" + files.File("Trame.dxf") + ", dessin " +
               files.File("Fond.dxf") +
               ") : plus de 1 niveau de références imbriquées ; le dessin est tracé sans elle"));
}

// Sets an environment variable for the life of the object.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::string& value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    setenv(name, value.c_str(), 1);
  }
  ~ScopedVariable() { old_ ? setenv(name_, old_->c_str(), 1) : unsetenv(name_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

struct Failure {
  const char* converter;  ///< in tests/data/dwg/converters
  int timeLimitMs;
  const char* reason;  ///< what the error says before the drawing's name
};

void PrintTo(const Failure& failure, std::ostream* out) { *out << failure.converter; }

class DwgConverterFailure : public EmbeddedHostTest,
                            public ::testing::WithParamInterface<Failure> {};

TEST_P(DwgConverterFailure, FailsTheOpenWithTheReasonOnTheDisplayAndInTheHostLog) {
  const Failure& failure = GetParam();
  options.dwgConverter = testing::TestData(std::string("dwg/converters/") + failure.converter);
  options.dwgTimeLimit = std::chrono::milliseconds(failure.timeLimitMs);
  options.reader = [](const std::string& path) { return ReadDxfFile(path); };
  Host()->GetPreferences()->SetLogFileOn(true);
  const std::string dwg = AddDrawing("Plan.dwg");

  const auto start = std::chrono::steady_clock::now();
  const host::Error error = ErrorOf([&] { Open(dwg); });
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  const std::string expected = failure.reason + (" : " + dwg);
  EXPECT_EQ(error.description(), expected);
  EXPECT_EQ(display->failures, std::vector<std::string>{expected});
  EXPECT_THAT(HostLog(), HasSubstr(expected));
  EXPECT_EQ(Host()->GetDocuments()->Count(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Converters, DwgConverterFailure,
    ::testing::Values(
        Failure{"no-output.sh", 10000,
                "la conversion DWG a échoué (le convertisseur n'a pas écrit de fichier DXF)"},
        Failure{"hangs.sh", 300,
                "la conversion DWG a échoué (le convertisseur a été arrêté au bout de 1 s)"},
        // What it wrote cannot be read: the drawing is named, not the
        // temporary file.
        Failure{"unreadable-output.sh", 10000,
                "le DXF converti de ce dessin DWG est illisible (ligne 1 : section TABLES sans "
                "ENDSEC)"}));

TEST_F(EmbeddedHostTest, AConverterRunByNodeSaysWhatToInstallWhenNodeIsMissing) {
  testing::TempFolder emptyPath;
  options.dwgConverter = (data.path() / "dwg2dxf" / "dwg2dxf.js").string();
  const std::string dwg = AddDrawing("Plan.dwg");
  ScopedVariable path("PATH", emptyPath.path().string());
  const host::Error error = ErrorOf([&] { Open(dwg); });
  EXPECT_THAT(error.description(), AllOf(HasSubstr("Node.js est introuvable"),
                                         HasSubstr("installez le paquet nodejs"), HasSubstr(dwg)));
}

// External references and image files.

TEST(ResolveExternalReferencesTest, FollowsNestedReferencesButNotOverlaysAndBreaksCycles) {
  testing::TempFolder folder;
  const std::string a = folder.Write("A.dxf", "");
  for (const char* name : {"B.dxf", "C.dxf", "Illisible.dxf"}) folder.Write(name, "");
  std::map<std::string, Drawing> byName = {
      {"A.dxf", WithXrefs({XrefBlock("B", "B.dxf")})},
      {"B.dxf", WithXrefs({XrefBlock("A", "A.dxf"), XrefBlock("C", "C.dxf", true)})},
  };
  Drawing drawing = byName["A.dxf"];
  drawing.path = a;
  drawing.blocks.push_back(XrefBlock("ILL", "Illisible.dxf"));
  ResolveExternalReferences(drawing, "", [&](const std::string& path) {
    const std::string name = std::filesystem::path(path).filename().string();
    if (!byName.contains(name)) throw std::runtime_error("illisible");
    return std::make_shared<const Drawing>(byName[name]);
  });
  ASSERT_EQ(drawing.xrefs.size(), 2u);
  EXPECT_EQ(drawing.xrefs[1].resolvedPath, "");  // could not be read
  const auto& b = drawing.xrefs[0].drawing;
  ASSERT_TRUE(b);
  ASSERT_EQ(b->xrefs.size(), 2u);
  EXPECT_EQ(b->xrefs[0].resolvedPath, a);  // back to A: found, not loaded again
  EXPECT_FALSE(b->xrefs[0].drawing);
  EXPECT_EQ(b->xrefs[1].resolvedPath, "");  // an overlay inside a reference
}

// Follows the first reference down from `drawing`: the file name of each
// drawing loaded, then why the chain stops ("profondeur", "taille") or "fin".
std::vector<std::string> FirstChain(const Drawing& drawing) {
  std::vector<std::string> chain;
  const Drawing* at = &drawing;
  while (!at->xrefs.empty()) {
    const ExternalReference& first = at->xrefs.front();
    if (!first.drawing) {
      chain.push_back(first.beyond == XrefLimit::Depth  ? "profondeur"
                      : first.beyond == XrefLimit::Size ? "taille"
                                                        : "non chargée");
      return chain;
    }
    chain.push_back(std::filesystem::path(first.resolvedPath).filename().string());
    at = first.drawing.get();
  }
  chain.push_back("fin");
  return chain;
}

// tests/data/dxf/fan-out: xref-N has ten reference blocks that all name
// xref-(N-1); the files weigh about 18 KB each.
TEST(FanOutTest, ReferencesBeyondTheDepthOrSizeLimitAreLeftOutAndSaySo) {
  const std::string top = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/dxf/fan-out/xref-6.dxf";
  struct Case {
    XrefLimits limits;
    std::vector<std::string> chain;
  };
  const Case cases[] = {
      {{3, XrefLimits{}.maxTotalBytes}, {"xref-5.dxf", "xref-4.dxf", "xref-3.dxf", "profondeur"}},
      {{16, 40000}, {"xref-5.dxf", "xref-4.dxf", "taille"}},
      {{0, XrefLimits{}.maxTotalBytes}, {"profondeur"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.limits.maxDepth) + " " + std::to_string(c.limits.maxTotalBytes));
    Drawing drawing = ReadDxfFile(top);
    drawing.path = top;
    std::size_t reads = 0;
    ResolveExternalReferences(
        drawing, "",
        [&](const std::string& path) {
          if (++reads > 20) throw std::runtime_error("trop de lectures");  // a runaway
          return std::make_shared<const Drawing>(ReadDxfFile(path));
        },
        c.limits);
    EXPECT_EQ(FirstChain(drawing), c.chain);
    // What was read is what the chain shows: nothing beyond a limit.
    EXPECT_EQ(reads, c.chain.size() - 1);
  }
}

// Image files a drawing shows that are missing or cannot be read: the host
// names them on the progress display and, like missing external references,
// in the external-reference log the plot test reads.
TEST_F(EmbeddedHostTest, TheReferenceLogListsImageFilesWithTheNotFoundMark) {
  const std::string raster = std::string(SHEAFWORK_SOURCE_DIR) + "/tests/data/raster/";
  files.Write("logos/logo.png", testing::TempFolder::Read(raster + "rgb8.png"));
  files.Write("scan.png", testing::TempFolder::Read(raster + "python.ppm"));  // not read
  Drawing drawing = SampleDrawing();
  drawing.images["A1"] = {"logos\\logo.png", ""};
  drawing.images["A2"] = {"C:\\plans\\absent.png", ""};
  drawing.images["A3"] = {"D:\\scans\\scan.png", ""};
  const std::string plan = AddDrawing("Plan.dxf", std::move(drawing));
  Host()->ActiveDocument()->SetVariable("XREFCTL", std::int16_t{1});
  Open(plan);
  const std::string drawn = " (dessin " + plan + ") ; seul son cadre est tracé";
  EXPECT_THAT(display->notices,
              UnorderedElementsAre("Image introuvable : C:\\plans\\absent.png" + drawn,
                                   "Image illisible : " + files.File("scan.png") + drawn));
  EXPECT_EQ(testing::TempFolder::Read(files.File("Plan.xlg")),
            "Références externes du dessin " + plan + "\r\n" + "Image C:\\plans\\absent.png -> " +
                "Introuvable\r\n" + "Image D:\\scans\\scan.png -> " + files.File("scan.png") +
                "\r\n" + "Image logos\\logo.png -> " + files.File("logos/logo.png") + "\r\n");
}

}  // namespace
}  // namespace sheafwork::embedded
