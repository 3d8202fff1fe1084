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

}  // namespace
}  // namespace sheafwork::embedded
