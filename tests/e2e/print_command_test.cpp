// `sheafwork plot` to a system printer: a CUPS queue that writes to a file.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "e2e/program.h"
#include "fakes/cups_queue.h"

namespace sheafwork::e2e {
namespace {

using PrintCommand = ExampleListTest;

TEST_F(PrintCommand, ARowWhoseDeviceIsAQueuePrintsItsSheetThere) {
  SHEAFWORK_REQUIRE_CUPS();
  const std::string printed = folder_.File("imprime.pdf");
  testing::CupsQueue queue("sheafwork-e2e", printed);
  ASSERT_TRUE(queue.Error().empty()) << queue.Error();
  AddRow(Plan("rez-de-chaussee.dxf"), " --layout 'Plan A3' --device " + Quoted(queue.Name()));

  const ProgramRun run = RunList("plot");
  ASSERT_EQ(run.status, 0) << run.err;
  ASSERT_TRUE(queue.WaitUntilPrinted(std::chrono::seconds(60))) << queue.Error();

  // One copy of one A3 sheet; a printer may turn the page for the paper.
  const auto pages = testing::PdfPageSizes(printed);
  ASSERT_EQ(pages.size(), 1u);
  const auto [width, height] = pages.front();
  EXPECT_NEAR(std::max(width, height), Points(420), 1.5);
  EXPECT_NEAR(std::min(width, height), Points(297), 1.5);
  // Nothing was written beside the drawing: the sheet went to the printer.
  EXPECT_TRUE(PlotOutput(Plan("rez-de-chaussee-Plan A3")).empty());
}

}  // namespace
}  // namespace sheafwork::e2e
