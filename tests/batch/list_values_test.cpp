// Single values of a list file: the line syntax and its field types, and the
// plot area and scale codes with their readable names.
#include <gtest/gtest.h>

#include "batch/list_line.h"
#include "batch/plot_values.h"
#include "fakes/test_data.h"

namespace sheafwork {
namespace {

using testing::ReadTestTable;

std::string KindName(ListValue::Kind kind) {
  switch (kind) {
    case ListValue::Kind::Quoted:
      return "quoted";
    case ListValue::Kind::Bare:
      return "bare";
    case ListValue::Kind::Boolean:
      return "boolean";
    case ListValue::Kind::Number:
      return "number";
  }
  return "?";
}

TEST(ListLine, ReadsAKeyAndAValueAndConvertsItToTheFieldTypes) {
  for (const auto& row : ReadTestTable("lists/list_lines.tsv")) {
    SCOPED_TRACE(row.where);
    const auto parsed = ParseListLine(row[0]);
    ASSERT_EQ(parsed.has_value(), row[1] != "refused");
    if (!parsed) continue;
    const ListValue& value = parsed->value;
    EXPECT_EQ(parsed->key, row[1]);
    EXPECT_EQ(KindName(value.kind), row[2]);
    EXPECT_EQ(value.text, row[3]);
    const auto boolean = ValueAsBoolean(value);
    EXPECT_EQ(boolean ? (*boolean ? "true" : "false") : "refused", row[4]);
    const auto integer = ValueAsInteger(value);
    EXPECT_EQ(integer ? std::to_string(*integer) : "refused", row[5]);
    EXPECT_EQ(ValueAsText(value), row[6]);
  }
}

TEST(ListLine, WritesEachFieldTypeInItsForm) {
  EXPECT_EQ(FormatListLine("K", R"(C:\a)"), R"("K","C:\a")");
  EXPECT_EQ(FormatListLine("K", false), R"("K",#FALSE#)");
  EXPECT_EQ(FormatListLine("K", 3), R"("K",3)");
}

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
