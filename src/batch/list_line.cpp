#include "batch/list_line.h"

#include <charconv>
#include <cmath>

#include "text/strings.h"

namespace sheafwork {
namespace {

constexpr std::string_view kTrue = "#TRUE#";
constexpr std::string_view kFalse = "#FALSE#";

std::string_view TrimBlanks(std::string_view s) {
  const auto first = s.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return s.substr(first, s.find_last_not_of(" \t") - first + 1);
}

bool ParseNumber(std::string_view s, double& out) {
  if (s.empty()) return false;
  if (s.front() == '+') s.remove_prefix(1);
  const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), out);
  return ec == std::errc{} && end == s.data() + s.size() && std::isfinite(out);
}

// Reads one item from the start of `rest`; on return `rest` holds what
// follows the item's separating comma, and `hadComma` says whether one came.
ListValue ReadItem(std::string_view& rest, bool& hadComma) {
  ListValue item;
  std::string_view s = rest.substr(std::min(rest.size(), rest.find_first_not_of(" \t")));
  std::size_t after = 0;  // where to look for the separating comma
  if (!s.empty() && s.front() == '"') {
    const auto close = s.find('"', 1);
    item.kind = ListValue::Kind::Quoted;
    item.text = std::string(s.substr(1, close == std::string_view::npos ? s.npos : close - 1));
    after = close == std::string_view::npos ? s.size() : close + 1;
  } else {
    const auto comma = s.find(',');
    const std::string_view bare = TrimBlanks(s.substr(0, comma));
    item.text = std::string(bare);
    double number = 0;
    if (EqualsIgnoreCase(bare, kTrue) || EqualsIgnoreCase(bare, kFalse)) {
      item.kind = ListValue::Kind::Boolean;
      item.boolean = EqualsIgnoreCase(bare, kTrue);
    } else if (ParseNumber(bare, number)) {
      item.kind = ListValue::Kind::Number;
    }
    after = comma == std::string_view::npos ? s.size() : comma;
  }
  const auto comma = s.find(',', after);
  hadComma = comma != std::string_view::npos;
  rest = hadComma ? s.substr(comma + 1) : std::string_view{};
  return item;
}

}  // namespace

std::optional<ListLine> ParseListLine(std::string_view line) {
  std::string_view rest = line;
  bool hadComma = false;
  ListLine result;
  result.key = ReadItem(rest, hadComma).text;
  if (!hadComma) return std::nullopt;
  result.value = ReadItem(rest, hadComma);
  if (hadComma) return std::nullopt;
  return result;
}

std::string ValueAsText(const ListValue& value) {
  if (value.kind == ListValue::Kind::Boolean) return value.boolean ? "True" : "False";
  return value.text;
}

std::optional<bool> ValueAsBoolean(const ListValue& value) {
  if (value.kind == ListValue::Kind::Boolean) return value.boolean;
  const std::string_view text = TrimBlanks(value.text);
  if (text.empty()) return false;
  double number = 0;
  if (ParseNumber(text, number)) return number != 0;
  if (EqualsIgnoreCase(text, "True")) return true;
  if (EqualsIgnoreCase(text, "False")) return false;
  return std::nullopt;
}

std::optional<int> ValueAsInteger(const ListValue& value) {
  if (value.kind == ListValue::Kind::Boolean) return std::nullopt;
  const std::string_view text = TrimBlanks(value.text);
  if (text.empty() && value.kind == ListValue::Kind::Bare) return 0;
  double number = 0;
  if (!ParseNumber(text, number) || number != std::floor(number)) return std::nullopt;
  if (number < -32768 || number > 32767) return std::nullopt;
  return static_cast<int>(number);
}

std::string FormatListLine(std::string_view key, std::string_view text) {
  std::string line;
  line.reserve(key.size() + text.size() + 5);
  line.append("\"").append(key).append("\",\"").append(text).append("\"");
  return line;
}

std::string FormatListLine(std::string_view key, bool value) {
  return "\"" + std::string(key) + "\"," + std::string(value ? kTrue : kFalse);
}

std::string FormatListLine(std::string_view key, int value) {
  return "\"" + std::string(key) + "\"," + std::to_string(value);
}

}  // namespace sheafwork
