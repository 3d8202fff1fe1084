#include "batch/plot_values.h"

#include <gtest/gtest.h>

#include "fakes/test_data.h"

namespace sheafwork {
namespace {

using testing::ReadTestTable;

TEST(PlotValues, AreaWordsAndCodes) {
  for (const auto& row : ReadTestTable("lists/plot_areas.tsv")) {
    SCOPED_TRACE(row.where);
    const auto code = PlotAreaCode(row[0]);
    EXPECT_EQ(code.value_or("refused"), row[1]);
  }
}

// What is stored is what the run applies without a fallback.
TEST(PlotValues, ScaleNamesRatiosAndCodes) {
  for (const auto& row : ReadTestTable("lists/plot_scales.tsv")) {
    SCOPED_TRACE(row.where);
    const auto code = PlotScaleCode(row[0], row[1] == "1");
    ASSERT_EQ(code ? code->plotScale : "refused", row[2]);
    if (!code) continue;
    EXPECT_EQ(code->custom, row[3] == "1" && !row[2].empty());
    EXPECT_TRUE(IsUsableScale(code->plotScale, code->custom));
  }
}

TEST(PlotValues, ReadableNamesOfCodes) {
  for (const auto& row : ReadTestTable("lists/plot_value_names.tsv")) {
    SCOPED_TRACE(row.where);
    if (row[1] != "-") {
      EXPECT_EQ(PlotScaleName(row[0], row[1] == "1"), row[2]);
      continue;
    }
    EXPECT_EQ(PlotAreaName(row[0]), row[2]);
    if (!row[2].empty()) {
      EXPECT_EQ(PlotAreaCode(row[2]), row[0]);
    }
  }
}

}  // namespace
}  // namespace sheafwork
