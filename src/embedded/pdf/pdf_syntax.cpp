#include "embedded/pdf/pdf_syntax.h"

#include <charconv>
#include <limits>

namespace sheafwork::embedded::pdf {

namespace {

// Far deeper than any object our writer makes (a resources dictionary is
// three levels deep), shallow enough for the stack whatever the input.
constexpr int kMaxDepth = 32;

bool Space(char c) {
  return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0';
}

bool Delimiter(char c) {
  return c == '(' || c == ')' || c == '<' || c == '>' || c == '[' || c == ']' || c == '{' ||
         c == '}' || c == '/' || c == '%';
}

bool Regular(char c) { return !Space(c) && !Delimiter(c); }

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool Digits(std::string_view text) {
  if (text.empty()) return false;
  for (char c : text) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

// A number as PDF writes one: an optional sign, digits with at most one
// point among or before them.
bool ParseNumber(std::string_view token, PdfValue& out) {
  std::string_view body = token;
  const bool negative = !body.empty() && body.front() == '-';
  if (!body.empty() && (body.front() == '-' || body.front() == '+')) body.remove_prefix(1);
  const std::size_t point = body.find('.');
  const std::string_view whole = body.substr(0, point);
  const std::string_view fraction =
      point == std::string_view::npos ? std::string_view() : body.substr(point + 1);
  if ((!whole.empty() && !Digits(whole)) || (!fraction.empty() && !Digits(fraction)) ||
      (whole.empty() && fraction.empty())) {
    return false;
  }
  double value = 0;
  const auto result = std::from_chars(body.data(), body.data() + body.size(), value);
  if (result.ec != std::errc() || result.ptr != body.data() + body.size()) return false;
  out.kind = point == std::string_view::npos ? PdfValue::Kind::Integer : PdfValue::Kind::Real;
  out.number = negative ? -value : value;
  return true;
}

}  // namespace

const PdfValue* PdfValue::Find(std::string_view key) const {
  if (kind != Kind::Dictionary) return nullptr;
  for (std::size_t i = 0; i + 1 < items.size(); i += 2) {
    if (items[i].text == key) return &items[i + 1];
  }
  return nullptr;
}

bool PdfValue::NameIs(std::string_view key, std::string_view name) const {
  const PdfValue* value = Find(key);
  return value != nullptr && value->kind == Kind::Name && value->text == name;
}

void PdfParser::SkipSpace() {
  while (at_ < text_.size()) {
    if (Space(text_[at_])) {
      ++at_;
    } else if (text_[at_] == '%') {
      while (at_ < text_.size() && text_[at_] != '\n' && text_[at_] != '\r') ++at_;
    } else {
      return;
    }
  }
}

std::string_view PdfParser::Regular() {
  const std::size_t start = at_;
  while (at_ < text_.size() && pdf::Regular(text_[at_])) ++at_;
  return text_.substr(start, at_ - start);
}

bool PdfParser::Keyword(std::string_view word) {
  SkipSpace();
  const std::size_t start = at_;
  if (Regular() == word) return true;
  at_ = start;
  return false;
}

long long PdfParser::PeekUnsigned(std::size_t& after) {
  const std::size_t start = at_;
  SkipSpace();
  const std::string_view token = Regular();
  after = at_;
  at_ = start;
  long long value = -1;
  if (!Digits(token) || token.size() > 10) return -1;
  std::from_chars(token.data(), token.data() + token.size(), value);
  return value;
}

bool PdfParser::ParseValue(PdfValue& out, int depth) {
  if (depth > kMaxDepth) return false;
  SkipSpace();
  if (at_ >= text_.size()) return false;
  out = PdfValue{};
  const std::size_t start = at_;
  const char c = text_[at_];
  if (c == '/') {
    ++at_;
    out.kind = PdfValue::Kind::Name;
    out.text = std::string(Regular());
    return true;
  }
  if (c == '(') return ParseString(out);
  if (c == '<' && at_ + 1 < text_.size() && text_[at_ + 1] == '<') {
    at_ += 2;
    out.kind = PdfValue::Kind::Dictionary;
    for (;;) {
      SkipSpace();
      if (text_.substr(at_, 2) == ">>") {
        at_ += 2;
        return true;
      }
      PdfValue key;
      if (!ParseValue(key, depth + 1) || key.kind != PdfValue::Kind::Name) return false;
      out.items.push_back(std::move(key));
      out.items.emplace_back();
      if (!ParseValue(out.items.back(), depth + 1)) return false;
    }
  }
  if (c == '<') return ParseHexString(out);
  if (c == '[') {
    ++at_;
    out.kind = PdfValue::Kind::Array;
    for (;;) {
      SkipSpace();
      if (at_ < text_.size() && text_[at_] == ']') {
        ++at_;
        return true;
      }
      out.items.emplace_back();
      if (!ParseValue(out.items.back(), depth + 1)) return false;
    }
  }
  const std::string_view token = Regular();
  if (token.empty()) return false;  // a delimiter out of place
  if (token == "null") return true;
  if (token == "true" || token == "false") {
    out.kind = PdfValue::Kind::Boolean;
    out.number = token == "true" ? 1 : 0;
    return true;
  }
  if (!ParseNumber(token, out)) return false;
  if (!Digits(token)) return true;
  // An object number followed by a generation and R is a reference.
  std::size_t afterGeneration = 0;
  if (PeekUnsigned(afterGeneration) < 0) return true;
  const std::size_t afterNumber = at_;
  at_ = afterGeneration;
  if (!Keyword("R")) {
    at_ = afterNumber;
    return true;
  }
  if (out.number < 1 || out.number > std::numeric_limits<int>::max()) return false;
  out.kind = PdfValue::Kind::Reference;
  references_.push_back({start, at_, static_cast<int>(out.number)});
  return true;
}

bool PdfParser::ParseString(PdfValue& out) {
  out.kind = PdfValue::Kind::String;
  ++at_;  // (
  int depth = 1;
  while (at_ < text_.size()) {
    const char c = text_[at_++];
    if (c == '\\') {
      if (at_ >= text_.size()) return false;
      const char e = text_[at_++];
      switch (e) {
        case 'n':
          out.text += '\n';
          break;
        case 'r':
          out.text += '\r';
          break;
        case 't':
          out.text += '\t';
          break;
        case 'b':
          out.text += '\b';
          break;
        case 'f':
          out.text += '\f';
          break;
        case '\r':  // a line continued: the end of line is not in the string
          if (at_ < text_.size() && text_[at_] == '\n') ++at_;
          break;
        case '\n':
          break;
        default:
          if (e >= '0' && e <= '7') {
            int code = e - '0';
            for (int n = 1; n < 3 && at_ < text_.size() && text_[at_] >= '0' && text_[at_] <= '7';
                 ++n) {
              code = code * 8 + (text_[at_++] - '0');
            }
            out.text += static_cast<char>(code & 0xFF);
          } else {
            out.text += e;  // \( \) \\ and an unknown escape: the character
          }
      }
    } else if (c == '(') {
      ++depth;
      out.text += c;
    } else if (c == ')') {
      if (--depth == 0) return true;
      out.text += c;
    } else {
      out.text += c;
    }
  }
  return false;  // never closed
}

bool PdfParser::ParseHexString(PdfValue& out) {
  out.kind = PdfValue::Kind::String;
  ++at_;  // <
  int high = -1;
  while (at_ < text_.size()) {
    const char c = text_[at_++];
    if (c == '>') {
      if (high >= 0) out.text += static_cast<char>(high << 4);
      return true;
    }
    if (Space(c)) continue;
    const int digit = HexDigit(c);
    if (digit < 0) return false;
    if (high < 0) {
      high = digit;
    } else {
      out.text += static_cast<char>((high << 4) | digit);
      high = -1;
    }
  }
  return false;
}

std::string RenumberReferences(std::string_view text, const std::vector<ReferenceSpan>& spans,
                               const std::vector<int>& renumbered) {
  std::string out;
  out.reserve(text.size() + 8 * spans.size());
  std::size_t last = 0;
  for (const ReferenceSpan& span : spans) {
    out.append(text.substr(last, span.begin - last));
    out += std::to_string(renumbered.at(static_cast<std::size_t>(span.object)));
    out += " 0 R";
    last = span.end;
  }
  out.append(text.substr(last));
  return out;
}

}  // namespace sheafwork::embedded::pdf
