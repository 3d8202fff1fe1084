// Printing through a real CUPS queue: the job arrives on its sheet (200 ×
// 150 mm, not a standard size), with the copies asked for.

#include <gtest/gtest.h>

#include <chrono>

#include "embedded/render/plot_job.h"
#include "embedded/render/render_test_support.h"
#include "fakes/cups_queue.h"
#include "fakes/temp_folder.h"

namespace sheafwork::embedded {
namespace {

constexpr double kPointsPerMm = 72 / 25.4;

TEST(PrintTest, ASheetReachesTheCupsQueueOnItsOwnSizeWithItsCopies) {
  SHEAFWORK_REQUIRE_CUPS();
  sheafwork::testing::TempFolder folder;
  const std::string output = folder.File("imprime.pdf");
  sheafwork::testing::CupsQueue queue("sheafwork-rendu", output);
  ASSERT_TRUE(queue.Error().empty()) << queue.Error();

  Drawing d = testing::MakeDrawing();
  testing::ModelSpace(d).entities.push_back(testing::MakeLine({10, 10}, {190, 140}));
  d.Reindex();
  PlotJob job = testing::MakeJob(d, testing::ModelOf(d), testing::OneToOneSettings(200, 150));
  job.output = OutputKind::Printer;
  job.printerName = queue.Name();
  job.title = "essai - Objet";
  job.copies = 2;
  RunPlotJob(job);

  ASSERT_TRUE(queue.WaitUntilPrinted(std::chrono::seconds(60))) << queue.Error();
  const auto pages = sheafwork::testing::PdfPageSizes(output);
  ASSERT_EQ(pages.size(), 2u) << "one page per copy";
  for (const auto& [width, height] : pages) {
    EXPECT_NEAR(std::max(width, height), 200 * kPointsPerMm, 1.5);
    EXPECT_NEAR(std::min(width, height), 150 * kPointsPerMm, 1.5);
  }
}

}  // namespace
}  // namespace sheafwork::embedded
