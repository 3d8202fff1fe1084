// The platform services on the machine the tests run on: the printer
// catalogue (the printers come from the print scheduler when one runs,
// scripts/start-cups.sh), the device URIs CUPS names a printer's port with,
// and the stop signals a run catches; all of them POSIX ones.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <vector>

#ifndef _WIN32
#include "fakes/cups_queue.h"
#endif
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "platform/device_uri.h"
#include "platform/printers.h"
#include "platform/stop_request.h"

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

TEST(StripUserInfoTest, RemovesOnlyTheUserInformationOfTheAuthority) {
  for (const auto& row : testing::ReadTestTable("platform/device_uris.tsv")) {
    EXPECT_EQ(StripUserInfo(row[0]), row[1]) << row.where;
  }
}

// While a run catches them, Ctrl+C, SIGTERM and SIGHUP each ask it to stop
// instead of ending the program; the request ends with the run.
TEST(StopSignalsTest, EachStopSignalRequestsAStopOnce) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    SCOPED_TRACE(signal);
    {
      const StopSignals signals("");
      EXPECT_FALSE(StopRequested());
      ASSERT_EQ(std::raise(signal), 0);  // would end the test program if not caught
      EXPECT_TRUE(StopRequested());
    }
    EXPECT_FALSE(StopRequested());
  }
}
#endif

}  // namespace
}  // namespace sheafwork
