#include "batch/plot_values.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace sheafwork {
namespace {

// What each value given for the plot area becomes in the list; nullopt:
// refused. A bare word is never taken for a view: it is a typo far more
// often than a view's name.
TEST(PlotValues, AreaWordsAndCodes) {
  struct Case {
    const char* given;
    std::optional<std::string> code;
  };
  const Case cases[] = {
      {"extents", "#E"},
      {"Display", "#D"},
      {"limits", "#L"},
      {"layout", "#O"},
      {"#E", "#E"},
      {"#O", "#O"},
      {"", ""},
      {"view:Façade nord", "Façade nord"},
      {"window:0,0,420,297", "#W0,0,420,297"},
      {"window: -10.5, 0, 420, 297", "#W-10.5,0,420,297"},
      {"#W1,2,3,4", "#W1,2,3,4"},
      {"etendue", std::nullopt},
      {"Nord", std::nullopt},
      {"#e", std::nullopt},
      {"#X", std::nullopt},
      {"view:", std::nullopt},
      {"view:#E", std::nullopt},
      {"window:0,0,420", std::nullopt},
      {"window:0,0,420,297,5", std::nullopt},
      {"window:0,0,0,297", std::nullopt},
      {"window:0,0,42,0,5", std::nullopt},
      {"window:a,0,420,297", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.given);
    EXPECT_EQ(PlotAreaCode(c.given), c.code);
  }
}

TEST(PlotValues, ScaleNamesRatiosAndCodes) {
  struct Case {
    const char* given;
    bool custom;
    std::optional<std::string> code;  // with the flag the list stores
    bool storedCustom;
  };
  const Case cases[] = {
      {"fit", false, "S#0", false},
      {"FIT", false, "S#0", false},
      {"1:1", false, "S#16", false},
      {"1:50", false, "S#25", false},
      {"100:1", false, "S#31", false},
      {"1/4\"=1'0\"", false, "S#8", false},
      {"1' 0\" = 1' 0\"", false, "S#15", false},
      {"S#25", false, "S#25", false},
      {"S#32", false, "S#32", false},
      {"0#0", false, "0#0", false},
      {"", false, "", false},
      {"1:25", false, std::nullopt, false},
      {"S#33", false, std::nullopt, false},
      {"S#-1", false, std::nullopt, false},
      {"1#50", false, std::nullopt, false},
      {"ajuster", false, std::nullopt, false},
      {"1:25", true, "1#25", true},
      {"1#48", true, "1#48", true},
      {"1,5 : 100", true, "1,5#100", true},
      {"0:5", true, std::nullopt, false},
      {"1:-5", true, std::nullopt, false},
      {"S#25", true, std::nullopt, false},
      {"1:", true, std::nullopt, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.given) + (c.custom ? " custom" : ""));
    const auto code = PlotScaleCode(c.given, c.custom);
    ASSERT_EQ(code.has_value(), c.code.has_value());
    if (!code) continue;
    EXPECT_EQ(code->plotScale, *c.code);
    EXPECT_EQ(code->custom, c.storedCustom && !c.code->empty());
    // What is stored is what the run applies without a fallback.
    EXPECT_TRUE(IsUsableScale(code->plotScale, code->custom));
  }
}

// `list show` prints these beside the codes; each reads back to its code.
TEST(PlotValues, ReadableNamesOfCodes) {
  const std::pair<const char*, const char*> areas[] = {
      {"#E", "extents"}, {"#O", "layout"}, {"Nord", "view:Nord"}, {"#W0,0,1,1", "window:0,0,1,1"},
      {"", ""},
  };
  for (const auto& [code, name] : areas) {
    SCOPED_TRACE(code);
    EXPECT_EQ(PlotAreaName(code), name);
    if (*name != '\0') {
      EXPECT_EQ(PlotAreaCode(name), code);
    }
  }
  struct Scale {
    const char* code;
    bool custom;
    const char* name;
  };
  const Scale scales[] = {
      {"S#25", false, "1:50"}, {"S#0", false, "fit"},
      {"0#7", false, "fit"},   {"S#8", false, "1/4\" = 1'0\""},
      {"1#48", true, "1:48"},  {"S#11", false, ""},
      {"1#48", false, ""},     {"S#25", true, ""},
      {"", false, ""},
  };
  for (const Scale& s : scales) {
    SCOPED_TRACE(s.code);
    EXPECT_EQ(PlotScaleName(s.code, s.custom), s.name);
  }
}

}  // namespace
}  // namespace sheafwork
