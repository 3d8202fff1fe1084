#include "embedded/dxf/tokenizer.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "embedded/dxf/messages.h"
#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

static_assert(std::endian::native == std::endian::little,
              "binary DXF values are read by copying little-endian bytes");

constexpr std::string_view kBinarySentinel{"AutoCAD Binary DXF\r\n\x1a\0", 22};
// How far into a binary file the version is looked for.
constexpr std::size_t kVersionScanLength = 1024;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// Whitespace, NUL and the old end-of-file mark are allowed after the last tag.
bool OnlyTrailingFiller(const char* p, const char* end) {
  for (; p < end; ++p) {
    const char c = *p;
    if (c != ' ' && c != '\t' && c != '\r' && c != '\n' && c != '\0' && c != '\x1a') return false;
  }
  return true;
}

std::optional<double> ParseDouble(std::string_view text) {
  text = TrimSpaces(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double v = 0;
  const auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
  if (ec != std::errc() || ptr != text.data() + text.size() || text.empty()) return std::nullopt;
  return v;
}

std::optional<std::int64_t> ParseInteger(std::string_view text) {
  std::string_view t = TrimSpaces(text);
  if (!t.empty() && t.front() == '+') t.remove_prefix(1);
  std::int64_t v = 0;
  const auto [ptr, ec] = std::from_chars(t.data(), t.data() + t.size(), v);
  if (ec == std::errc() && ptr == t.data() + t.size() && !t.empty()) return v;
  // Some writers put integers as "1.0".
  const std::optional<double> d = ParseDouble(text);
  constexpr double kLimit = 9.2e18;
  if (!d || !std::isfinite(*d) || std::fabs(*d) > kLimit) return std::nullopt;
  return static_cast<std::int64_t>(*d);
}

template <typename T>
T Load(std::string_view bytes) {
  T v{};
  std::memcpy(&v, bytes.data(), sizeof(T));
  return v;
}

std::size_t BinaryWidth(ValueType type) {
  switch (type) {
    case ValueType::kDouble:
    case ValueType::kInt64:
      return 8;
    case ValueType::kInt32:
      return 4;
    case ValueType::kInt16:
      return 2;
    case ValueType::kBool:
      return 1;
    case ValueType::kString:
    case ValueType::kBinary:
    case ValueType::kUnknown:
      break;
  }
  return 0;
}

}  // namespace

ValueType TypeOfCode(int code) {
  if (code < 0) return ValueType::kUnknown;
  if (code <= 9) return ValueType::kString;
  if (code <= 59) return ValueType::kDouble;
  if (code <= 79) return ValueType::kInt16;
  if (code < 90) return ValueType::kUnknown;
  if (code <= 99) return ValueType::kInt32;
  if (code <= 102 || code == 105) return ValueType::kString;
  if (code < 110) return ValueType::kUnknown;
  if (code <= 149) return ValueType::kDouble;
  if (code < 160) return ValueType::kUnknown;
  if (code <= 169) return ValueType::kInt64;
  if (code <= 179) return ValueType::kInt16;
  if (code < 210) return ValueType::kUnknown;
  if (code <= 239) return ValueType::kDouble;
  if (code < 270) return ValueType::kUnknown;
  if (code <= 289) return ValueType::kInt16;
  if (code <= 299) return ValueType::kBool;
  if (code <= 309) return ValueType::kString;
  if (code <= 319) return ValueType::kBinary;
  if (code <= 369) return ValueType::kString;
  if (code <= 389) return ValueType::kInt16;
  if (code <= 399) return ValueType::kString;
  if (code <= 409) return ValueType::kInt16;
  if (code <= 419) return ValueType::kString;
  if (code <= 429) return ValueType::kInt32;
  if (code <= 439) return ValueType::kString;
  if (code <= 459) return ValueType::kInt32;
  if (code <= 469) return ValueType::kDouble;
  if (code <= 481) return ValueType::kString;
  if (code == 999) return ValueType::kString;
  if (code < 1000) return ValueType::kUnknown;
  if (code == 1004) return ValueType::kBinary;
  if (code <= 1009) return ValueType::kString;
  if (code <= 1059) return ValueType::kDouble;
  if (code <= 1070) return ValueType::kInt16;
  if (code == 1071) return ValueType::kInt32;
  return ValueType::kUnknown;
}

std::optional<double> Tag::Double() const {
  if (!binary) return ParseDouble(value);
  if (TypeOfCode(code) == ValueType::kDouble && value.size() == 8) return Load<double>(value);
  if (const std::optional<std::int64_t> i = Integer()) return static_cast<double>(*i);
  return std::nullopt;
}

std::optional<std::int64_t> Tag::Integer() const {
  if (!binary) return ParseInteger(value);
  switch (TypeOfCode(code)) {
    case ValueType::kInt16:
      if (value.size() == 2) return Load<std::int16_t>(value);
      break;
    case ValueType::kInt32:
      if (value.size() == 4) return Load<std::int32_t>(value);
      break;
    case ValueType::kInt64:
      if (value.size() == 8) return Load<std::int64_t>(value);
      break;
    case ValueType::kBool:
      if (value.size() == 1) return static_cast<unsigned char>(value[0]);
      break;
    case ValueType::kDouble:
      if (value.size() == 8) {
        const double d = Load<double>(value);
        constexpr double kLimit = 9.2e18;
        if (std::isfinite(d) && std::fabs(d) <= kLimit) return static_cast<std::int64_t>(d);
      }
      break;
    case ValueType::kString:
      return ParseInteger(value);
    case ValueType::kBinary:
    case ValueType::kUnknown:
      break;
  }
  return std::nullopt;
}

bool IsBinaryDxf(std::string_view bytes) { return bytes.starts_with(kBinarySentinel); }

std::string_view TrimSpaces(std::string_view s) {
  while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
  while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
  return s;
}

Tokenizer::Tokenizer(std::string_view bytes, std::string name)
    : begin_(bytes.data()),
      pos_(bytes.data()),
      end_(bytes.data() + bytes.size()),
      name_(std::move(name)) {
  if (OnlyTrailingFiller(begin_, end_)) throw DxfError(dxfmsg::EmptyFile(name_));
  if (IsBinaryDxf(bytes)) {
    binary_ = true;
    pos_ += kBinarySentinel.size();
    DetectBinaryCodeWidth();
  } else if (bytes.starts_with("\xEF\xBB\xBF")) {
    pos_ += 3;
  }
}

void Tokenizer::DetectBinaryCodeWidth() {
  // The version decides the width of the group codes, and the version is a
  // tag: look at how the tag after "$ACADVER" is written.
  const std::string_view head(pos_, std::min<std::size_t>(end_ - pos_, kVersionScanLength));
  constexpr std::string_view kKey{"$ACADVER\0", 9};
  const std::size_t at = head.find(kKey);
  if (at != std::string_view::npos && at + kKey.size() + 2 <= head.size()) {
    const std::string_view rest = head.substr(at + kKey.size());
    if (rest[0] == 1 && rest[1] != 0) {
      shortCodes_ = true;
      return;
    }
    if (rest[0] == 1 && rest[1] == 0) {
      shortCodes_ = false;
      return;
    }
  }
  // No version: the first tag is 0/SECTION, whose code is 00 or 00 00.
  shortCodes_ = head.size() >= 2 && head[0] == 0 && head[1] != 0;
}

std::string_view Tokenizer::ReadLine() {
  const char* p = pos_;
  while (p < end_ && *p != '\n' && *p != '\r') ++p;
  const std::string_view line(pos_, static_cast<std::size_t>(p - pos_));
  if (p < end_) {
    if (*p == '\r' && p + 1 < end_ && p[1] == '\n') ++p;
    ++p;
  }
  pos_ = p;
  ++line_;
  return line;
}

bool Tokenizer::Next(Tag& tag) { return binary_ ? NextBinary(tag) : NextAscii(tag); }

bool Tokenizer::NextAscii(Tag& tag) {
  for (;;) {
    if (done_ || pos_ >= end_) return false;
    const std::string_view codeLine = ReadLine();
    const std::size_t codeLineNumber = line_;
    // Fast path for the usual right-aligned or plain code.
    const char* p = codeLine.data();
    const char* e = p + codeLine.size();
    while (p < e && IsBlank(*p)) ++p;
    while (e > p && IsBlank(e[-1])) --e;
    bool negative = false;
    if (p < e && *p == '-') negative = true, ++p;
    int code = 0;
    const char* digits = p;
    constexpr int kMaxDigits = 6;
    while (p < e && *p >= '0' && *p <= '9' && p - digits < kMaxDigits)
      code = code * 10 + (*p++ - '0');
    if (p == digits || p != e) {
      if (TrimSpaces(codeLine).empty() && OnlyTrailingFiller(pos_, end_)) {
        done_ = true;
        return false;
      }
      throw DxfError(dxfmsg::CodeExpected({name_, codeLineNumber, false}, codeLine));
    }
    if (negative) code = -code;
    if (pos_ >= end_)
      throw DxfError(dxfmsg::ValueMissing({name_, codeLineNumber + 1, false}, code));
    const std::string_view value = ReadLine();
    if (code == 999) continue;
    if (code == 0 && TrimSpaces(value) == "EOF") {
      done_ = true;
      return false;
    }
    tag.code = code;
    tag.value = value;
    tag.line = codeLineNumber;
    tag.binary = false;
    return true;
  }
}

void Tokenizer::FailBinaryEnd(std::size_t offset, int code) const {
  throw DxfError(dxfmsg::ValueMissing({name_, offset, true}, code));
}

bool Tokenizer::NextBinary(Tag& tag) {
  for (;;) {
    if (done_ || pos_ >= end_) return false;
    const std::size_t offset = static_cast<std::size_t>(pos_ - begin_);
    const auto byte = [](const char* q) { return static_cast<unsigned char>(*q); };
    int code = 0;
    if (shortCodes_) {
      code = byte(pos_++);
      if (code == 255) {
        if (end_ - pos_ < 2) throw DxfError(dxfmsg::CodeExpected({name_, offset, true}, ""));
        code = byte(pos_) | (byte(pos_ + 1) << 8);
        pos_ += 2;
      }
    } else {
      if (end_ - pos_ < 2) {
        if (OnlyTrailingFiller(pos_, end_)) return false;
        throw DxfError(dxfmsg::CodeExpected({name_, offset, true}, ""));
      }
      code = byte(pos_) | (byte(pos_ + 1) << 8);
      pos_ += 2;
    }
    const std::size_t valueOffset = static_cast<std::size_t>(pos_ - begin_);
    const ValueType type = TypeOfCode(code);
    std::string_view value;
    switch (type) {
      case ValueType::kString: {
        const void* nul = std::memchr(pos_, 0, static_cast<std::size_t>(end_ - pos_));
        if (nul == nullptr) FailBinaryEnd(valueOffset, code);
        const char* stop = static_cast<const char*>(nul);
        value = std::string_view(pos_, static_cast<std::size_t>(stop - pos_));
        pos_ = stop + 1;
        break;
      }
      case ValueType::kBinary: {
        if (pos_ >= end_) FailBinaryEnd(valueOffset, code);
        const std::size_t length = byte(pos_);
        if (static_cast<std::size_t>(end_ - pos_ - 1) < length) FailBinaryEnd(valueOffset, code);
        value = std::string_view(pos_ + 1, length);
        pos_ += 1 + length;
        break;
      }
      case ValueType::kUnknown:
        throw DxfError(dxfmsg::UnknownBinaryCode({name_, offset, true}, code));
      case ValueType::kDouble:
      case ValueType::kInt16:
      case ValueType::kInt32:
      case ValueType::kInt64:
      case ValueType::kBool: {
        const std::size_t width = BinaryWidth(type);
        if (static_cast<std::size_t>(end_ - pos_) < width) FailBinaryEnd(valueOffset, code);
        value = std::string_view(pos_, width);
        pos_ += width;
        break;
      }
    }
    if (code == 999) continue;
    if (code == 0 && value == "EOF") {
      done_ = true;
      return false;
    }
    tag.code = code;
    tag.value = value;
    tag.line = offset;
    tag.binary = true;
    return true;
  }
}

}  // namespace sheafwork::embedded
