#pragma once
// The plain text of TEXT and MTEXT entities: special "%%" codes replaced,
// MTEXT formatting removed.

#include <string>
#include <string_view>

namespace sheafwork::embedded {

/// Appends `text` to `out` with %%d (°), %%c (Ø), %%p (±) and %%% replaced
/// and the underline, overline and strike-through toggles removed.
void AppendWithSpecialCodes(std::string_view text, std::string& out);

/// Appends the plain text of MTEXT contents: \P and \N become '\n', \~ a
/// space, \\ \{ \} their character, \U+XXXX its character, stacked text
/// "a/b"; font, height, colour and other formatting codes and the grouping
/// braces disappear; then special codes as above.
void AppendMTextPlain(std::string_view text, std::string& out);

}  // namespace sheafwork::embedded
