// The program's plot run and plot test over the embedded host.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "embedded/automation/plot_run_fixture.h"
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
using ::testing::StartsWith;

struct NoFonts : FontFolders {
  bool HasFontFile(std::string_view) override { return false; }
};

using CoreFlowTest = EmbeddedRunTest;

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

  const RunResult result = Run(services);
  EXPECT_TRUE(result.cancelled);
  EXPECT_EQ(result.plotted, 0);
  EXPECT_EQ(result.failed, 0);
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

  HostSession& host = Attach();
  FakePrinters printers;
  NoFonts fonts;
  const std::string results = RunPlotTest(session, host, PlotTestServices{printers, fonts, {}, {}});
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

TEST_F(CoreFlowTest, ThePlotTestReportsAnUnresolvedExternalReference) {
  const std::string plan =
      AddDrawing("Plan.dxf", WithXrefs({XrefBlock("FOND", "C:\\fonds\\Fond.dwg")}));
  const std::string clean = AddDrawing("Propre.dxf");
  Row(plan, "Présentation1");
  Row(clean, "Coupe");
  Put(data, "support/romans.shx", "");

  HostSession& host = Attach();
  FakePrinters printers;
  NoFonts fonts;
  const std::string results = RunPlotTest(session, host, PlotTestServices{printers, fonts, {}, {}});

  EXPECT_THAT(results, HasSubstr("ERREUR:  XREF manquante: Xréf FOND : C:\\fonds\\Fond.dwg -> "
                                 "Introuvable\r\n"));
  EXPECT_THAT(results, HasSubstr("XREFCTL <0>, FILEDIA <1>, CMDECHO <1>, CMDDIA <1>, SHPNAME <>"));
  // Coupe's device is "Aucun"; the shape file is found along the support path.
  EXPECT_THAT(results, HasSubstr("présentation <Coupe>"));
  EXPECT_THAT(results, Not(HasSubstr("romans.shx")));
  EXPECT_THAT(results, Not(HasSubstr("xréf <")));  // both logs were written
  // The variables were put back.
  EXPECT_EQ(Host()->ActiveDocument()->GetVariable("XREFCTL"), host::SysVarValue(std::int16_t{0}));
  EXPECT_EQ(Host()->GetDocuments()->Count(), 1);
}

}  // namespace
}  // namespace sheafwork::embedded
