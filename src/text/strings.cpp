#include "text/strings.h"

#include <vector>

#include "text/utf8.h"

namespace sheafwork {

int HexDigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::string_view TrimSpaces(std::string_view s) {
  const auto first = s.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  const auto last = s.find_last_not_of(' ');
  return s.substr(first, last - first + 1);
}

namespace {

// The byte offsets at which the characters of `s` start.
std::vector<std::size_t> CharStarts(std::string_view s) {
  std::vector<std::size_t> starts;
  for (std::size_t pos = 0; pos < s.size(); pos += DecodeUtf8(s, pos).length) {
    starts.push_back(pos);
  }
  return starts;
}

}  // namespace

std::string_view DropLastChars(std::string_view s, std::size_t n) {
  const auto starts = CharStarts(s);
  if (starts.size() < n) return s;
  return s.substr(0, starts.size() == n ? 0 : starts[starts.size() - n]);
}

std::string_view LastChars(std::string_view s, std::size_t n) {
  const auto starts = CharStarts(s);
  if (starts.size() <= n) return s;
  return s.substr(starts[starts.size() - n]);
}

char32_t FoldCase(char32_t c) {
  if (c >= 'A' && c <= 'Z') return c + 0x20;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 0x20;
  switch (c) {
    case 0x0160:
      return 0x0161;  // Š
    case 0x0152:
      return 0x0153;  // Œ
    case 0x017D:
      return 0x017E;  // Ž
    case 0x0178:
      return 0x00FF;  // Ÿ
    default:
      return c;
  }
}

namespace {

// Walks `s` one character at a time; a malformed byte is its own character,
// kept apart from real code points so that it never equals a letter.
class FoldedChars {
 public:
  explicit FoldedChars(std::string_view s) : s_(s) {}
  bool done() const { return pos_ >= s_.size(); }
  char32_t next() {
    const DecodedChar d = DecodeUtf8(s_, pos_);
    pos_ += d.length;
    return d.valid ? FoldCase(d.codePoint) : kMalformedByte + d.codePoint;
  }

 private:
  std::string_view s_;
  std::size_t pos_ = 0;
};

}  // namespace

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
  FoldedChars x(a);
  FoldedChars y(b);
  while (!x.done() && !y.done()) {
    if (x.next() != y.next()) return false;
  }
  return x.done() && y.done();
}

bool StartsWithIgnoreCase(std::string_view s, std::string_view prefix) {
  FoldedChars x(s);
  FoldedChars y(prefix);
  while (!y.done()) {
    if (x.done() || x.next() != y.next()) return false;
  }
  return true;
}

bool EndsWithIgnoreCase(std::string_view s, std::string_view suffix) {
  // Try every character boundary of `s`, as the decoder walks it (a malformed
  // byte is a character of its own), from which the rest could be `suffix`.
  for (std::size_t start = 0;; start += DecodeUtf8(s, start).length) {
    if (EqualsIgnoreCase(s.substr(start), suffix)) return true;
    if (start >= s.size()) return false;
  }
}

}  // namespace sheafwork
