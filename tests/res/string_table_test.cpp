#include "res/string_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "text/windows1252.h"

namespace sheafwork {
namespace {

using testing::HasSubstr;

constexpr int kFirstId = 31;
constexpr int kLastId = 313;

TEST(StringTableTest, HoldsEveryIdFrom31To313AndNothingElse) {
  for (int id = -32768; id <= 32767; ++id) {
    if (id >= kFirstId && id <= kLastId) {
      EXPECT_NO_THROW(LoadResourceText(id)) << "id " << id;
    } else {
      try {
        LoadResourceText(id);
        ADD_FAILURE() << "id " << id << " is in the table";
      } catch (const UnknownStringId& e) {
        EXPECT_EQ(e.id(), id);
      }
    }
  }
}

TEST(StringTableTest, EveryTextFitsWindows1252) {
  for (int id = kFirstId; id <= kLastId; ++id) {
    const std::string text = LoadResourceText(id);
    EXPECT_FALSE(text.empty()) << "id " << id;
    EXPECT_EQ(Utf8ToWindows1252(text).replaced, 0u) << "id " << id << ": " << text;
  }
}

TEST(StringTableTest, KeepsSpacesAndInnerQuotes) {
  struct Case {
    int id;
    std::string text;
  };
  const Case cases[] = {
      {31, "Utilitaire de traçage en différé Orvane"},
      {34, "Version "},
      {128, "> à "},
      {134, "   Vérification "},
      {140, "ERREUR:  XREF manquante: "},
      {275, "1/128\" = 1'0\""},
  };
  for (const Case& c : cases) EXPECT_EQ(LoadResourceText(c.id), c.text) << "id " << c.id;
  EXPECT_THAT(LoadResourceText(155), HasSubstr("\"Aucun\""));
}

TEST(StringTableTest, FiltersSplitIntoDescriptionAndPattern) {
  using Pairs = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ(SplitFilter(LoadResourceText(71)),
            (Pairs{{"Tous les dessins (*.dwg,*.dwt)", "*.dwg;*.dwt"},
                   {"Fichiers de dessin (*.dwg)", "*.dwg"},
                   {"Fichiers gabarits (*.dwt)", "*.dwt"}}));
  struct Case {
    int id;
    std::string pattern;
  };
  const Case single[] = {
      {94, "*.qx3"}, {191, "*.log"}, {200, "*.txt"}, {215, "*.pc3"}, {290, "*.*"}};
  for (const Case& c : single) {
    const Pairs pairs = SplitFilter(LoadResourceText(c.id));
    ASSERT_EQ(pairs.size(), 1u) << "id " << c.id;
    EXPECT_FALSE(pairs[0].first.empty()) << "id " << c.id;
    EXPECT_EQ(pairs[0].second, c.pattern) << "id " << c.id;
  }
  EXPECT_TRUE(SplitFilter("").empty());
  EXPECT_TRUE(SplitFilter("no pattern").empty());
}

TEST(StringTableTest, ParsesRowsCommentsAndLineEnds) {
  const auto rows = ParseStringTable(
      "# comment\r\n"
      "\r\n"
      "31 \"  a \"\r\n"
      "32   \"say \"hi\" now\"\n"
      "33 \"\"");
  using Rows = std::vector<std::pair<int, std::string>>;
  EXPECT_EQ(rows, (Rows{{31, "  a "}, {32, "say \"hi\" now"}, {33, ""}}));
}

TEST(StringTableTest, RejectsMalformedRowsNamingTheLine) {
  struct Case {
    std::string text;
    int line;
  };
  const Case cases[] = {
      {"31 \"a\"\n\"no id\"\n", 2},          {"# comment\n\n31 no quotes\n", 3},
      {"31 \"only one quote\n", 1},          {"31x \"a\"\n", 1},
      {"31 \"a\"\n32 \"b\"\n31 \"c\"\n", 3},
  };
  for (const Case& c : cases) {
    try {
      ParseStringTable(c.text);
      ADD_FAILURE() << "accepted " << testing::PrintToString(c.text);
    } catch (const StringTableError& e) {
      EXPECT_THAT(e.what(), HasSubstr("line " + std::to_string(c.line) + ":"))
          << testing::PrintToString(c.text);
    }
  }
}

}  // namespace
}  // namespace sheafwork
