#pragma once
// One line of a list file: a key and a value in comma-separated form.
//   "BATCH FILE NAME","C:\lists\north.qx3"
//   "BATCH JOURNAL LOG ON?",#TRUE#
//   "BATCH NUM FILES",3
// Strings are quoted with no escaping, Booleans are #TRUE# or #FALSE#,
// integers are plain decimals.

#include <optional>
#include <string>
#include <string_view>

namespace sheafwork {

struct ListValue {
  enum class Kind {
    Quoted,   ///< "text"
    Bare,     ///< unquoted text, spaces around it removed
    Boolean,  ///< #TRUE# or #FALSE#
    Number,   ///< unquoted decimal number
  };
  Kind kind = Kind::Bare;
  std::string text;  ///< the item as read (without quotes)
  bool boolean = false;

  bool operator==(const ListValue&) const = default;
};

struct ListLine {
  std::string key;
  ListValue value;

  bool operator==(const ListLine&) const = default;
};

/// Reads a key and a value. A quoted item ends at the next double quote (or
/// the end of the line when none follows) and whatever stands between that
/// quote and the next comma is ignored. nullopt when the line is not exactly
/// two items.
std::optional<ListLine> ParseListLine(std::string_view line);

/// The value as text: quoted and bare items as read, a number as written,
/// a Boolean as "True" or "False".
std::string ValueAsText(const ListValue& value);

/// The value as a Boolean: #TRUE#/#FALSE#, a number (non-zero is true), the
/// words True/False, or an empty item (false). nullopt otherwise.
std::optional<bool> ValueAsBoolean(const ListValue& value);

/// The value as a whole number in 16-bit range: a number or a quoted or bare
/// item that reads as one. nullopt otherwise.
std::optional<int> ValueAsInteger(const ListValue& value);

/// The line for a key and a value, without the line end.
std::string FormatListLine(std::string_view key, std::string_view text);
std::string FormatListLine(std::string_view key, bool value);
std::string FormatListLine(std::string_view key, int value);
// A string literal is text, not a Boolean.
inline std::string FormatListLine(std::string_view key, const char* text) {
  return FormatListLine(key, std::string_view(text));
}

}  // namespace sheafwork
