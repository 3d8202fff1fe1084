#include "platform/device_uri.h"

#include <gtest/gtest.h>

#include "fakes/test_data.h"

namespace sheafwork {
namespace {

TEST(StripUserInfoTest, RemovesOnlyTheUserInformationOfTheAuthority) {
  for (const auto& row : testing::ReadTestTable("platform/device_uris.tsv")) {
    EXPECT_EQ(StripUserInfo(row[0]), row[1]) << row.where;
  }
}

}  // namespace
}  // namespace sheafwork
