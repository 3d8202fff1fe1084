// `sheafwork plot` to a system printer: a CUPS queue that writes to a file.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "e2e/program.h"
#include "fakes/cups_queue.h"

namespace sheafwork::e2e {
namespace {

TEST(PrintCommand, ARowWhoseDeviceIsAQueuePrintsItsSheetThere) {
  SHEAFWORK_REQUIRE_CUPS();
  testing::TempFolder folder;
  const std::string printed = folder.File("imprime.pdf");
  testing::CupsQueue queue("sheafwork-e2e", printed);
  ASSERT_TRUE(queue.Error().empty()) << queue.Error();

  const std::string plans = CopyExamplePlans(folder);
  const std::string list = folder.File("lot.qx3");
  const std::string drawing = plans + "/rez-de-chaussee.dxf";
  ASSERT_EQ(Sheafwork("list add " + Quoted(list) + " " + Quoted(drawing) +
                          " --layout 'Plan A3' --device " + Quoted(queue.Name()),
                      folder)
                .status,
            0);

  const ProgramRun run = Sheafwork("plot " + Quoted(list), folder);
  ASSERT_EQ(run.status, 0) << run.err;
  ASSERT_TRUE(queue.WaitUntilPrinted(std::chrono::seconds(60))) << queue.Error();

  // One copy of one A3 sheet; a printer may turn the page for the paper.
  const auto pages = testing::PdfPageSizes(printed);
  ASSERT_EQ(pages.size(), 1u);
  const auto [width, height] = pages.front();
  EXPECT_NEAR(std::max(width, height), Points(420), 1.5);
  EXPECT_NEAR(std::min(width, height), Points(297), 1.5);
  // Nothing was written beside the drawing: the sheet went to the printer.
  EXPECT_TRUE(PlotOutput(plans + "/rez-de-chaussee-Plan A3").empty());
}

}  // namespace
}  // namespace sheafwork::e2e
