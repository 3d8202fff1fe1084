#include <gtest/gtest.h>

#include "batch/list_line.h"

namespace sheafwork {
namespace {

using Kind = ListValue::Kind;

TEST(ListLine, ReadsAKeyAndAValue) {
  const struct {
    const char* line;
    const char* key;
    Kind kind;
    const char* text;
  } cases[] = {
      {R"("DWG#1LAYOUT","A,B")", "DWG#1LAYOUT", Kind::Quoted, "A,B"},
      {R"("BATCH NUM FILES", 12 )", "BATCH NUM FILES", Kind::Number, "12"},
      {R"(  "K" , #false#)", "K", Kind::Boolean, "#false#"},
      {R"(K,bare words )", "K", Kind::Bare, "bare words"},
      {R"("K",)", "K", Kind::Bare, ""},
      {R"("K","say "hi" now")", "K", Kind::Quoted, "say "},  // a quote ends the value
      {R"("K","open)", "K", Kind::Quoted, "open"},
  };
  for (const auto& c : cases) {
    const auto parsed = ParseListLine(c.line);
    ASSERT_TRUE(parsed) << c.line;
    EXPECT_EQ(parsed->key, c.key);
    EXPECT_EQ(parsed->value.kind, c.kind) << c.line;
    EXPECT_EQ(parsed->value.text, c.text) << c.line;
  }
  for (const char* bad : {R"("ONLY A KEY")", "", R"("K","a","b")", "K,a,b"}) {
    EXPECT_FALSE(ParseListLine(bad)) << bad;
  }
}

TEST(ListLine, ConvertsValuesToTheFieldTypes) {
  const auto value = [](const char* item) {
    return ParseListLine(std::string("K,") + item)->value;
  };
  EXPECT_EQ(ValueAsBoolean(value("#TRUE#")), true);
  EXPECT_EQ(ValueAsBoolean(value("-1")), true);
  EXPECT_EQ(ValueAsBoolean(value("\"false\"")), false);
  EXPECT_EQ(ValueAsBoolean(value("\"oui\"")), std::nullopt);
  EXPECT_EQ(ValueAsInteger(value("\"7\"")), 7);
  EXPECT_EQ(ValueAsInteger(value("2.5")), std::nullopt);
  EXPECT_EQ(ValueAsInteger(value("40000")), std::nullopt);
  EXPECT_EQ(ValueAsInteger(value("#TRUE#")), std::nullopt);
  EXPECT_EQ(ValueAsText(value("#TRUE#")), "True");
  EXPECT_EQ(ValueAsText(value("007")), "007");
  EXPECT_EQ(FormatListLine("K", R"(C:\a)"), R"("K","C:\a")");
  EXPECT_EQ(FormatListLine("K", false), R"("K",#FALSE#)");
  EXPECT_EQ(FormatListLine("K", 3), R"("K",3)");
}

}  // namespace
}  // namespace sheafwork
