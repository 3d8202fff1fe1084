// The busy host's filter, driven as COM drives it: Wine never asks a client
// filter to retry, so the calls are made here with the counts a busy host
// would bring.

#include "com/busy_filter.h"

#include <gtest/gtest.h>

#include "fakes/scripted_prompt.h"
#include "res/string_table.h"

namespace sheafwork::com {
namespace {

class BusyHostFilterTest : public ::testing::Test {
 protected:
  std::vector<std::string> Told() const {
    std::vector<std::string> texts;
    for (const auto& m : prompt.messages) {
      EXPECT_EQ(m.title, LoadResourceText(31));
      texts.push_back(m.text);
    }
    return texts;
  }
  testing::ScriptedPrompt prompt;
  BusyHostFilter filter{prompt};
};

TEST_F(BusyHostFilterTest, ABusyHostIsWaitedForAndTheUserToldOncePerCall) {
  const std::string busy = LoadResourceText(294);
  // elapsed ms of the same call, then whether the user has been told by then
  const std::pair<DWORD, std::size_t> steps[] = {
      {0, 0},
      {10000, 0},
      {29999, 0},
      {30000, 1},
      {45000, 1},
      {90000, 1},
      // a new call starts its count again and is told again
      {100, 1},
      {31000, 2}};
  for (const auto& [elapsed, told] : steps) {
    SCOPED_TRACE(elapsed);
    EXPECT_EQ(filter.RetryRejectedCall(nullptr, elapsed, SERVERCALL_RETRYLATER), kBusyRetryMs);
    EXPECT_EQ(Told(), std::vector<std::string>(told, busy));
  }
  // A host that refuses for good fails the call at once.
  EXPECT_EQ(filter.RetryRejectedCall(nullptr, 0, SERVERCALL_REJECTED), static_cast<DWORD>(-1));
}

TEST_F(BusyHostFilterTest, ARequestLeftUnansweredIsToldOnceAndWaitedFor) {
  EXPECT_EQ(filter.MessagePending(nullptr, 5000, PENDINGTYPE_TOPLEVEL),
            static_cast<DWORD>(PENDINGMSG_WAITDEFPROCESS));
  EXPECT_TRUE(prompt.messages.empty());
  filter.MessagePending(nullptr, 30000, PENDINGTYPE_TOPLEVEL);
  filter.MessagePending(nullptr, 60000, PENDINGTYPE_TOPLEVEL);
  EXPECT_EQ(Told(), std::vector<std::string>{LoadResourceText(293)});
  // Incoming calls from the host are always taken.
  EXPECT_EQ(filter.HandleInComingCall(CALLTYPE_TOPLEVEL, nullptr, 0, nullptr),
            static_cast<DWORD>(SERVERCALL_ISHANDLED));
}

}  // namespace
}  // namespace sheafwork::com
