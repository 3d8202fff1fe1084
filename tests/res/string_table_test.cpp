#include "res/string_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <set>
#include <sstream>
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

std::string ReadSourceFile(const std::string& relative) {
  std::ifstream in(std::string(SHEAFWORK_SOURCE_DIR) + "/" + relative, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// The lines of a data file that are neither blank nor comments.
std::vector<std::string> DataLines(const std::string& relative) {
  std::vector<std::string> lines;
  std::istringstream in(ReadSourceFile(relative));
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line[0] != '#') lines.push_back(line);
  }
  return lines;
}

// The program's own texts: those whose wording is not fixed word for word.
std::vector<std::pair<int, std::string>> OwnTexts() {
  std::set<int> fixed;
  for (const std::string& line : DataLines("tests/data/res/fixed_texts.txt")) {
    const auto dash = line.find('-');
    const int first = std::stoi(line.substr(0, dash));
    const int last = dash == std::string::npos ? first : std::stoi(line.substr(dash + 1));
    for (int id = first; id <= last; ++id) fixed.insert(id);
  }
  std::vector<std::pair<int, std::string>> own;
  for (auto& row : ParseStringTable(ReadSourceFile("src/res/strings_fr.txt"))) {
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
  for (const std::string& line : DataLines("tests/data/res/accented_capitals.txt")) {
    const std::string wrong = line.substr(0, line.find('\t'));
    SCOPED_TRACE(line);
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
