// The POSIX services: the device URIs CUPS names a printer's port with, and
// the stop signals a run catches.
#include <gtest/gtest.h>

#include <csignal>

#include "fakes/test_data.h"
#include "platform/device_uri.h"
#include "platform/stop_request.h"

namespace sheafwork {
namespace {

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

}  // namespace
}  // namespace sheafwork
