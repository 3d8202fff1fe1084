#include "batch/list_line.h"

#include <gtest/gtest.h>

#include "fakes/test_data.h"

namespace sheafwork {
namespace {

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
  for (const auto& row : testing::ReadTestTable("lists/list_lines.tsv")) {
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

}  // namespace
}  // namespace sheafwork
