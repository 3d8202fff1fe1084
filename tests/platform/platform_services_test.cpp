// The operating-system services against the machine the tests run on: the
// fonts come from fonts-dejavu-core (scripts/setup.sh; on Windows the test
// prefix's FONTS folder holds a copy, scripts/test-windows.sh); the printers
// from the print scheduler when one runs (scripts/start-cups.sh).

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#ifndef _WIN32
#include "fakes/cups_queue.h"
#endif
#include "fakes/temp_folder.h"
#include "platform/device_uri.h"
#include "platform/fonts.h"
#include "platform/printers.h"

namespace sheafwork {
namespace {

TEST(SystemFontFoldersTest, FindsInstalledFontFilesWhateverTheirLetterCase) {
  const auto fonts = SystemFontFolders();
  EXPECT_TRUE(fonts->HasFontFile("dEjAvUsAnS.tTf"));
  EXPECT_FALSE(fonts->HasFontFile("sheafwork-no-such-font-7c1e.ttf"));
}

TEST(SystemPrinterCatalogTest, ListsThisMachinesPrintersWithoutThrowing) {
  std::vector<PrinterInfo> printers;
  ASSERT_NO_THROW(printers = SystemPrinterCatalog()->Printers());
  for (const PrinterInfo& p : printers) {
    EXPECT_FALSE(p.name.empty());
#ifndef _WIN32
    EXPECT_EQ(p.port, StripUserInfo(p.port)) << p.name;
#endif
  }
}

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
