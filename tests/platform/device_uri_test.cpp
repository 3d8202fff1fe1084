#include "platform/device_uri.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace sheafwork {
namespace {

// Expected null: the URI comes back unchanged.
TEST(StripUserInfoTest, RemovesOnlyTheUserInformationOfTheAuthority) {
  const std::pair<const char*, const char*> cases[] = {
      {"ipp://user:pw@host/q", "ipp://host/q"},
      {"ipps://alice@printer.example:631/ipp/print", "ipps://printer.example:631/ipp/print"},
      // A password with a bare "@" in it must not leave its tail behind.
      {"smb://jean:p@ss@server/share", "smb://server/share"},
      // The authority ends at the path, the query, the fragment or the end.
      {"ipp://user@host?waitjob=false", "ipp://host?waitjob=false"},
      {"ipp://user@host#x", "ipp://host#x"},
      {"lpd://user:pw@host", "lpd://host"},
      {"ipp://host/q@floor2", nullptr},
      {"lpd://host/queue?user=a@b", nullptr},
      {"ipp://host#team@site", nullptr},
      // No "scheme://" authority at all.
      {"mailto:user@example.org", nullptr},
      {"1ipp://user@host/q", nullptr},
      {"a/b://user@host/q", nullptr},
      {"", nullptr},
  };
  for (const auto& [uri, expected] : cases) {
    EXPECT_EQ(StripUserInfo(uri), expected ? expected : uri) << uri;
  }
}

}  // namespace
}  // namespace sheafwork
