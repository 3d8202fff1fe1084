#include "text/paper_names.h"

#include <array>
#include <vector>

namespace sheafwork {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// A number with a fractional part loses its trailing zeros, and its point
// when nothing is left after it.
std::string TrimDecimalZeros(std::string word) {
  const auto point = word.find('.');
  if (point == std::string::npos) return word;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (i != point && !IsDigit(word[i])) return word;
  }
  while (word.size() > point + 1 && word.back() == '0') word.pop_back();
  if (word.size() == point + 1) word.pop_back();
  return word;
}

std::string UnitWord(std::string word) {
  constexpr std::array<std::string_view, 4> kInches = {"inches", "inch", "pouces", "pouce"};
  for (std::string_view inches : kInches) {
    if (word == inches) return "in";
  }
  return TrimDecimalZeros(std::move(word));
}

std::vector<std::string> Words(std::string_view name) {
  std::vector<std::string> words;
  std::string word;
  const auto endWord = [&] {
    if (!word.empty()) words.push_back(UnitWord(std::move(word)));
    word.clear();
  };
  for (const char c : name) {
    if (c == ' ' || c == '_' || c == '\t') {
      endWord();
    } else if (c == '(' || c == ')') {
      endWord();
      words.emplace_back(1, c);
    } else if (c == '"') {
      endWord();
      words.emplace_back("in");
    } else {
      word += Lower(c);
    }
  }
  endWord();
  return words;
}

std::string Join(const std::vector<std::string>& words, std::size_t end) {
  std::string joined;
  for (std::size_t i = 0; i < end && i < words.size(); ++i) {
    if (!joined.empty()) joined += ' ';
    joined += words[i];
  }
  return joined;
}

}  // namespace

std::string NormalisePaperName(std::string_view name) {
  const std::vector<std::string> words = Words(name);
  return Join(words, words.size());
}

bool SamePaperName(std::string_view a, std::string_view b) {
  const std::vector<std::string> wordsA = Words(a);
  const std::vector<std::string> wordsB = Words(b);
  if (wordsA.empty() || wordsB.empty()) return false;
  if (wordsA == wordsB) return true;
  std::size_t bracketA = 0;
  while (bracketA < wordsA.size() && wordsA[bracketA] != "(") ++bracketA;
  std::size_t bracketB = 0;
  while (bracketB < wordsB.size() && wordsB[bracketB] != "(") ++bracketB;
  // Only a name without a size stands for any size of the same name.
  if (bracketA < wordsA.size() && bracketB < wordsB.size()) return false;
  return bracketA > 0 && Join(wordsA, bracketA) == Join(wordsB, bracketB);
}

}  // namespace sheafwork
