#include "host/registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/fake_host.h"

namespace sheafwork {
namespace {

TEST(HostRegistryTest, TheFirstOrTheNamedDefaultIsFoundWithoutAName) {
  testing::FakeHost first, second;
  HostRegistry registry;
  EXPECT_EQ(registry.Find(""), nullptr);

  registry.Register("premier", [&] { return first.App(); });
  registry.Register("second", [&] { return second.App(); });
  EXPECT_EQ(registry.DefaultName(), "premier");
  EXPECT_EQ((*registry.Find(""))(), first.App());

  registry.Register(
      "second", [&] { return second.App(); }, true);
  EXPECT_EQ((*registry.Find(""))(), second.App());
  EXPECT_EQ((*registry.Find("premier"))(), first.App());
  EXPECT_EQ(registry.Find("absent"), nullptr);
  EXPECT_THAT(registry.Names(), ::testing::ElementsAre("premier", "second"));
}

}  // namespace
}  // namespace sheafwork
