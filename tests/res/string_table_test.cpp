#include "res/string_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <string>

#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "text/windows1252.h"

namespace sheafwork {
namespace {

using ::testing::HasSubstr;
using ::testing::Property;
using ::testing::Throws;
using ::testing::ThrowsMessage;

TEST(StringTableTest, HoldsIds31To313WithTextsThatFitWindows1252) {
  for (int id = 31; id <= 313; ++id) {
    EXPECT_EQ(Utf8ToWindows1252(LoadResourceText(id)).replaced, 0u) << "id " << id;
  }
  for (int id : {30, 314}) {
    EXPECT_THAT([id] { LoadResourceText(id); },
                Throws<UnknownStringId>(Property(&UnknownStringId::id, id)));
  }
}

TEST(StringTableTest, RejectsAMalformedRowNamingItsLine) {
  EXPECT_THAT([] { ParseStringTable("# comment\n\n31 \"a\"\n32 no quotes\n"); },
              ThrowsMessage<StringTableError>(HasSubstr("line 4:")));
  EXPECT_THAT([] { ParseStringTable("31 \"a\"\n32 \"b\"\n# comment\n31 \"c\"\n"); },
              ThrowsMessage<StringTableError>(HasSubstr("line 4: id given twice")));
}

// The program's own texts: those whose wording is not fixed word for word.
std::vector<std::pair<int, std::string>> OwnTexts() {
  std::set<int> fixed;
  for (const auto& row : testing::ReadTestTable("res/fixed_texts.txt")) {
    const std::vector<std::string> range = row.List(0, "-");
    for (int id = std::stoi(range.front()); id <= std::stoi(range.back()); ++id) fixed.insert(id);
  }
  std::vector<std::pair<int, std::string>> own;
  const std::string table = std::string(SHEAFWORK_SOURCE_DIR) + "/src/res/strings_fr.txt";
  for (auto& row : ParseStringTable(testing::TempFolder::Read(table))) {
    if (!fixed.count(row.first)) own.push_back(std::move(row));
  }
  return own;
}

// French typography: a non-breaking space (U+00A0, or the narrow U+202F)
// before ":", ";", "?" and "!" used as punctuation (followed by a space or
// ending the text; "1:50" and "C:\" are not punctuation), never a plain
// space or none.
TEST(StringTableTest, OwnTextsPutANonBreakingSpaceBeforeDoublePunctuation) {
  const std::vector<std::pair<int, std::string>> own = OwnTexts();
  ASSERT_GT(own.size(), 10u);
  for (const auto& [id, text] : own) {
    SCOPED_TRACE("id " + std::to_string(id) + ": " + text);
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (std::string_view(":;?!").find(text[i]) == std::string_view::npos) continue;
      const bool punctuation = i + 1 == text.size() || text[i + 1] == ' ';
      if (!punctuation) continue;
      const std::string before = text.substr(0, i);
      const bool nonBreaking = before.ends_with("\u00a0") || before.ends_with("\u202f");
      EXPECT_TRUE(nonBreaking) << "'" << text[i] << "' at byte " << i;
    }
  }
}

TEST(StringTableTest, OwnTextsWriteCapitalsWithTheirAccents) {
  const std::vector<std::pair<int, std::string>> own = OwnTexts();
  for (const auto& row : testing::ReadTestTable("res/accented_capitals.txt")) {
    const std::string& wrong = row[0];
    SCOPED_TRACE(row.where);
    for (const auto& [id, text] : own) {
      for (auto pos = text.find(wrong); pos != std::string::npos; pos = text.find(wrong, pos + 1)) {
        const auto end = pos + wrong.size();
        const bool word =
            (pos == 0 || !std::isalpha(static_cast<unsigned char>(text[pos - 1]))) &&
            (end == text.size() || !std::isalpha(static_cast<unsigned char>(text[end])));
        EXPECT_FALSE(word) << "id " << id << ": " << text;
      }
    }
  }
}

}  // namespace
}  // namespace sheafwork
