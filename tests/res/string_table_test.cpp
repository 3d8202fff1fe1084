#include "res/string_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "text/windows1252.h"

namespace sheafwork {
namespace {

TEST(StringTableTest, HoldsIds31To313WithTextsThatFitWindows1252) {
  for (int id = 31; id <= 313; ++id) {
    EXPECT_EQ(Utf8ToWindows1252(LoadResourceText(id)).replaced, 0u) << "id " << id;
  }
  for (int id : {30, 314}) {
    try {
      LoadResourceText(id);
      ADD_FAILURE() << "id " << id << " is in the table";
    } catch (const UnknownStringId& e) {
      EXPECT_EQ(e.id(), id);
    }
  }
}

TEST(StringTableTest, KeepsSpacesAndInnerQuotes) {
  EXPECT_EQ(LoadResourceText(31), "Utilitaire de traçage en différé Orvane");
  EXPECT_EQ(LoadResourceText(34), "Version ");
  EXPECT_EQ(LoadResourceText(134), "   Vérification ");
  EXPECT_EQ(LoadResourceText(140), "ERREUR:  XREF manquante: ");
  EXPECT_EQ(LoadResourceText(275), "1/128\" = 1'0\"");
}

TEST(StringTableTest, FiltersSplitIntoDescriptionAndPattern) {
  using Pairs = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ(SplitFilter(LoadResourceText(71)),
            (Pairs{{"Tous les dessins (*.dwg,*.dwt)", "*.dwg;*.dwt"},
                   {"Fichiers de dessin (*.dwg)", "*.dwg"},
                   {"Fichiers gabarits (*.dwt)", "*.dwt"}}));
  EXPECT_THAT(SplitFilter(LoadResourceText(94)),
              testing::ElementsAre(testing::Pair(testing::_, "*.qx3")));
}

TEST(StringTableTest, RejectsAMalformedRowNamingItsLine) {
  try {
    ParseStringTable("# comment\n\n31 \"a\"\n32 no quotes\n");
    ADD_FAILURE() << "accepted a row without quotes";
  } catch (const StringTableError& e) {
    EXPECT_THAT(e.what(), testing::HasSubstr("line 4:"));
  }
  try {
    ParseStringTable("31 \"a\"\n32 \"b\"\n# comment\n31 \"c\"\n");
    ADD_FAILURE() << "accepted an id given twice";
  } catch (const StringTableError& e) {
    EXPECT_THAT(e.what(), testing::HasSubstr("line 4: id given twice"));
  }
}

}  // namespace
}  // namespace sheafwork
