// The printer catalogue against the machine the tests run on: the printers
// come from the print scheduler when one runs (scripts/start-cups.sh).

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#ifndef _WIN32
#include "fakes/cups_queue.h"
#endif
#include "fakes/temp_folder.h"
#include "platform/printers.h"

namespace sheafwork {
namespace {

#ifndef _WIN32
TEST(SystemPrinterCatalogTest, ListsAQueueOfTheSchedulerWithItsDevice) {
  SHEAFWORK_REQUIRE_CUPS();
  testing::TempFolder folder;
  const std::string output = folder.File("catalogue.pdf");
  testing::CupsQueue queue("sheafwork-catalogue", output);
  ASSERT_TRUE(queue.Error().empty()) << queue.Error();
  const std::vector<PrinterInfo> printers = SystemPrinterCatalog()->Printers();
  const auto found = std::find_if(printers.begin(), printers.end(),
                                  [&](const PrinterInfo& p) { return p.name == queue.Name(); });
  ASSERT_NE(found, printers.end()) << queue.Name();
  EXPECT_EQ(found->port, "file://" + output);
  EXPECT_FALSE(found->driver.empty());
}
#endif

}  // namespace
}  // namespace sheafwork
