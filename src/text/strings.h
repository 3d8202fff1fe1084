#pragma once
// Small string routines the whole program shares: trimming as the list file
// and the path helpers need it, letter-case-blind comparison, hexadecimal
// digits.

#include <string>
#include <string_view>

namespace sheafwork {

/// The value of a hexadecimal digit (either letter case), -1 for any other
/// character.
int HexDigitValue(char c);

/// Removes leading and trailing spaces (only the space character, not tabs).
std::string_view TrimSpaces(std::string_view s);

/// `s` (UTF-8) without its last `n` characters; all of `s` when it has fewer.
/// A malformed byte counts as a character of its own.
std::string_view DropLastChars(std::string_view s, std::size_t n);

/// The last `n` characters of `s` (UTF-8); all of `s` when it has fewer.
std::string_view LastChars(std::string_view s, std::size_t n);

/// Folds the letter case of one character of the Windows-1252 repertoire:
/// ASCII letters, the accented Latin-1 letters, Š Œ Ž Ÿ. Others are unchanged.
char32_t FoldCase(char32_t c);

/// Compares two UTF-8 texts ignoring letter case (see FoldCase). Malformed
/// bytes compare as themselves.
bool EqualsIgnoreCase(std::string_view a, std::string_view b);

/// True when `s` starts with `prefix`, ignoring letter case.
bool StartsWithIgnoreCase(std::string_view s, std::string_view prefix);

/// True when `s` ends with `suffix`, ignoring letter case.
bool EndsWithIgnoreCase(std::string_view s, std::string_view suffix);

}  // namespace sheafwork
