#include "platform/stop_request.h"

#include <gtest/gtest.h>

#include <csignal>

namespace sheafwork {
namespace {

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
