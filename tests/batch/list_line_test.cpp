#include <gtest/gtest.h>

#include "batch/list_line.h"

namespace sheafwork {
namespace {

using Kind = ListValue::Kind;

struct GoodLine {
  const char* line;
  const char* key;
  Kind kind;
  const char* text;
};

TEST(ListLine, ReadsAKeyAndAValue) {
  const GoodLine cases[] = {
      {R"("BATCH FILE NAME","C:\lists\north.qx3")", "BATCH FILE NAME", Kind::Quoted,
       R"(C:\lists\north.qx3)"},
      {R"("DWG#1LAYOUT","A,B")", "DWG#1LAYOUT", Kind::Quoted, "A,B"},
      {R"("DWG#1LAYOUT","")", "DWG#1LAYOUT", Kind::Quoted, ""},
      {R"("BATCH NUM FILES",3)", "BATCH NUM FILES", Kind::Number, "3"},
      {R"("BATCH NUM FILES", 12 )", "BATCH NUM FILES", Kind::Number, "12"},
      {R"("K",#TRUE#)", "K", Kind::Boolean, "#TRUE#"},
      {R"(  "K" , #false#)", "K", Kind::Boolean, "#false#"},
      {R"(K,bare words )", "K", Kind::Bare, "bare words"},
      {R"("K",)", "K", Kind::Bare, ""},
      // A quote inside a value ends it; the rest up to the line end is lost.
      {R"("K","say "hi" now")", "K", Kind::Quoted, "say "},
      // An unterminated quote runs to the end of the line.
      {R"("K","open)", "K", Kind::Quoted, "open"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line);
    const auto parsed = ParseListLine(c.line);
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->key, c.key);
    EXPECT_EQ(parsed->value.kind, c.kind);
    EXPECT_EQ(parsed->value.text, c.text);
  }
}

TEST(ListLine, RefusesALineThatIsNotExactlyTwoItems) {
  for (const char* line : {R"("ONLY A KEY")", "", R"("K","a","b")", "K,a,b", R"("K",1,2)"}) {
    SCOPED_TRACE(line);
    EXPECT_FALSE(ParseListLine(line));
  }
}

TEST(ListLine, ConvertsValuesToTheFieldTypes) {
  const auto value = [](const char* line) { return ParseListLine(line)->value; };
  EXPECT_EQ(ValueAsBoolean(value(R"("K",#TRUE#)")), true);
  EXPECT_EQ(ValueAsBoolean(value(R"("K",#FALSE#)")), false);
  EXPECT_EQ(ValueAsBoolean(value(R"("K",-1)")), true);
  EXPECT_EQ(ValueAsBoolean(value(R"("K",0)")), false);
  EXPECT_EQ(ValueAsBoolean(value(R"("K","true")")), true);
  EXPECT_EQ(ValueAsBoolean(value(R"("K",)")), false);
  EXPECT_EQ(ValueAsBoolean(value(R"("K","oui")")), std::nullopt);

  EXPECT_EQ(ValueAsInteger(value(R"("K",42)")), 42);
  EXPECT_EQ(ValueAsInteger(value(R"("K","7")")), 7);
  EXPECT_EQ(ValueAsInteger(value(R"("K",2.5)")), std::nullopt);
  EXPECT_EQ(ValueAsInteger(value(R"("K",40000)")), std::nullopt);
  EXPECT_EQ(ValueAsInteger(value(R"("K",#TRUE#)")), std::nullopt);
  EXPECT_EQ(ValueAsInteger(value(R"("K",three)")), std::nullopt);

  EXPECT_EQ(ValueAsText(value(R"("K",#TRUE#)")), "True");
  EXPECT_EQ(ValueAsText(value(R"("K",007)")), "007");
}

TEST(ListLine, WritesQuotedTextBooleanTokensAndPlainNumbers) {
  EXPECT_EQ(FormatListLine("BATCH FILE NAME", R"(C:\l\n.qx3)"),
            R"("BATCH FILE NAME","C:\l\n.qx3")");
  EXPECT_EQ(FormatListLine("BATCH JOURNAL LOG ON?", true), R"("BATCH JOURNAL LOG ON?",#TRUE#)");
  EXPECT_EQ(FormatListLine("BATCH ERROR APPEND?", false), R"("BATCH ERROR APPEND?",#FALSE#)");
  EXPECT_EQ(FormatListLine("BATCH NUM FILES", 3), R"("BATCH NUM FILES",3)");
}

}  // namespace
}  // namespace sheafwork
