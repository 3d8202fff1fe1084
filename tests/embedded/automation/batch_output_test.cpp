// What a batch of plots leaves besides its plots: the combined PDF, the
// copies handed to printers, and stopping between two layouts.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sstream>

#include "embedded/automation/plot_run_fixture.h"
#include "fakes/cups_queue.h"

namespace sheafwork::embedded {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr double kPointsPerMm = 72 / 25.4;

/// The sample drawing with both paper layouts plotting to PDF: "Présentation1"
/// on an A3 sheet, "Coupe" on a 500 × 250 mm one.
Drawing TwoSheetDrawing() {
  Drawing d = SampleDrawing();
  for (Layout& layout : d.layouts) {
    if (!layout.IsModel()) layout.settings.configName = "PDF.pc3";
  }
  return d;
}

class BatchOutputTest : public EmbeddedHostTest {
 protected:
  // The combined PDF goes to `path`; its closing is recorded.
  void Combine(const std::string& path) {
    options.combinedPdf = path;
    options.combinedPdfClosed = [this](int pages, const std::string& error) {
      closings.push_back(std::to_string(pages) + (error.empty() ? "" : " " + error));
    };
  }

  std::vector<std::string> closings;
};

TEST_F(BatchOutputTest, TheCombinedPdfGetsEachPlottedSheetInOrderWhenTheBatchEnds) {
  const std::string combined = files.File("tout.pdf");
  Combine(combined);
  auto doc = OpenPlan(TwoSheetDrawing());
  auto plot = doc->GetPlot();
  std::int16_t count = 3;
  plot->StartBatchMode(count);
  Show(*doc, "Coupe");
  ASSERT_TRUE(plot->PlotToFile(files.File("coupe.pdf"), std::nullopt));
  EXPECT_FALSE(plot->PlotToDevice("Absent.pc3"));  // a failed plot adds no page
  Show(*doc, "Présentation1");
  ASSERT_TRUE(plot->PlotToDevice(std::nullopt));
  EXPECT_FALSE(std::filesystem::exists(combined)) << "written before the batch ended";

  plot->SetSheafworkProgress(false);
  EXPECT_THAT(closings, ElementsAre("2"));
  const auto pages = testing::PdfPageSizes(combined);
  ASSERT_EQ(pages.size(), 2u);
  EXPECT_NEAR(pages[0].first, 500 * kPointsPerMm, 1);
  EXPECT_NEAR(pages[0].second, 250 * kPointsPerMm, 1);
  EXPECT_NEAR(pages[1].first, 420 * kPointsPerMm, 1);
  EXPECT_NEAR(pages[1].second, 297 * kPointsPerMm, 1);

  // Plots after the batch ended change nothing, and quitting closes nothing
  // twice.
  ASSERT_TRUE(plot->PlotToDevice(std::nullopt));
  Host()->Quit();
  EXPECT_THAT(closings, ElementsAre("2"));
  EXPECT_EQ(testing::PdfPageSizes(combined).size(), 2u);
}

TEST_F(BatchOutputTest, QuittingWritesTheCombinedPdfAndAnEmptyOneIsNotWritten) {
  const std::string combined = files.File("tout.pdf");
  Combine(combined);
  auto doc = OpenPlan(TwoSheetDrawing());
  Show(*doc, "Présentation1");
  ASSERT_TRUE(doc->GetPlot()->PlotToDevice(std::nullopt));
  Host()->Quit();
  EXPECT_THAT(closings, ElementsAre("1"));
  EXPECT_EQ(testing::PdfPageSizes(combined).size(), 1u);

  // A second host that plots nothing leaves the earlier file as it was.
  closings.clear();
  app = nullptr;
  OpenPlan(TwoSheetDrawing());
  Host()->Quit();
  EXPECT_THAT(closings, ElementsAre("0"));
  EXPECT_EQ(testing::PdfPageSizes(combined).size(), 1u);
}

TEST_F(BatchOutputTest, ACombinedPdfThatCannotBeCreatedKeepsTheHostFromStarting) {
  Combine(files.File("absent/tout.pdf"));
  try {
    Host();
    ADD_FAILURE() << "the host started";
  } catch (const host::Error& error) {
    EXPECT_EQ(error.number(), 75);
    EXPECT_THAT(error.description(), HasSubstr(files.File("absent/tout.pdf")));
  }
}

TEST_F(BatchOutputTest, TheNumberOfCopiesReachesThePrinterJob) {
  auto doc = OpenPlan(TwoSheetDrawing());
  auto plot = doc->GetPlot();
  ASSERT_TRUE(plot->PlotToDevice("Bureau-HP"));
  plot->SetNumberOfCopies(3);
  ASSERT_TRUE(plot->PlotToDevice("Bureau-HP"));
  // The number belongs to the document: a new plot object keeps it.
  ASSERT_TRUE(doc->GetPlot()->PlotToDevice("Bureau-HP"));
  ASSERT_EQ(plots.size(), 3u);
  EXPECT_EQ(plots[0].copies, 1);
  EXPECT_EQ(plots[1].copies, 3);
  EXPECT_EQ(plots[2].copies, 3);
}

/// A display that asks to stop as soon as the first plot has begun.
struct StopAfterFirstPlot : RecordingDisplay {
  bool Cancelled() override { return events.size() > 1; }
};

struct CancelCase {
  const char* name;
  std::vector<std::string> rows;  ///< the layout of each row
  std::size_t journalRows;        ///< rows the journal shows as plotted
};

class CancelTest : public EmbeddedRunTest, public ::testing::WithParamInterface<CancelCase> {};

TEST_P(CancelTest, CancellingStopsTheRunAfterTheLayoutUnderWay) {
  auto stopping = std::make_shared<StopAfterFirstPlot>();
  options.progress = stopping;
  const std::string plan = AddDrawing("Plan.dxf", TwoSheetDrawing());
  for (const std::string& layout : GetParam().rows) Row(plan, layout);

  const RunResult result = Run();
  EXPECT_TRUE(result.cancelled);
  EXPECT_TRUE(result.endedEarly);
  ASSERT_EQ(plots.size(), 1u);
  EXPECT_EQ(plots[0].layout, "Présentation1");
  EXPECT_THAT(stopping->events, ElementsAre("start 2", "1/2 Plan.dxf Présentation1", "finish"));
  std::size_t rows = 0;
  for (const std::string& line : testing::ReadLogLines(session.Log.JournalLogFileName)) {
    rows += line.find("Plan.dxf, ") == 0 ? 1 : 0;
  }
  EXPECT_EQ(rows, GetParam().journalRows);
}

INSTANTIATE_TEST_SUITE_P(Rows, CancelTest,
                         ::testing::Values(
                             // Between two layouts of one row: the row is left unfinished.
                             CancelCase{"BetweenLayoutsOfARow", {"Toutes les présentations"}, 0},
                             // Between two rows: the first row is done.
                             CancelCase{"BetweenRows", {"Présentation1", "Coupe"}, 1}),
                         [](const ::testing::TestParamInfo<CancelCase>& info) {
                           return info.param.name;
                         });

TEST(ConsoleProgressDisplayTest, CtrlCDuringABatchCancelsItInsteadOfEndingTheProgram) {
  std::ostringstream out;
  auto display = ConsoleProgressDisplay(out, false);
  struct sigaction before = {};
  sigaction(SIGINT, nullptr, &before);

  display->Start(2);
  EXPECT_FALSE(display->Cancelled());
  std::raise(SIGINT);  // would end the test program without the display
  EXPECT_TRUE(display->Cancelled());
  display->Finish();
  EXPECT_FALSE(display->Cancelled());

  struct sigaction after = {};
  sigaction(SIGINT, nullptr, &after);
  EXPECT_EQ(after.sa_handler, before.sa_handler) << "Ctrl+C was not given back";
  EXPECT_THAT(out.str(), IsEmpty());
}

}  // namespace
}  // namespace sheafwork::embedded
