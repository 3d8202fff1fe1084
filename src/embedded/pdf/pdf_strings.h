#pragma once
// PDF strings: bytes as a literal string, UTF-8 text as a text string, and
// dates.

#include <ctime>
#include <string>
#include <string_view>

namespace sheafwork::embedded::pdf {

/// `bytes` as a literal string, parentheses included: ( ) and \ escaped,
/// bytes outside printable ASCII in octal.
std::string LiteralString(std::string_view bytes);

/// UTF-8 `text` as a text string for the document's information: literal
/// when plain printable ASCII, else UTF-16BE with its byte order mark, in
/// hexadecimal. Malformed UTF-8 bytes become U+FFFD.
std::string TextString(std::string_view text);

/// The UTF-8 text of a text string's bytes (as read, escapes undone):
/// UTF-16BE after its byte order mark, else one byte a character (Latin-1,
/// which covers the plain ASCII TextString writes). Unpaired surrogates
/// become U+FFFD.
std::string TextStringToUtf8(std::string_view bytes);

/// Appends `c` in UTF-16BE as hexadecimal digits: four, or eight for a
/// surrogate pair.
void AppendUtf16Hex(std::string& out, char32_t c);

/// `when` as a date string's content, in UTC: D:YYYYMMDDHHmmSSZ.
std::string DateString(std::time_t when);

}  // namespace sheafwork::embedded::pdf
