#pragma once
// The plain text of TEXT entities: special "%%" codes replaced.

#include <optional>
#include <string>
#include <string_view>

namespace sheafwork::embedded {

/// Appends `text` to `out` with %%d (°), %%c (Ø), %%p (±) and %%% replaced,
/// the underline, overline and strike-through toggles removed, and the
/// control characters that DXF writes in caret notation decoded: "^I" (a
/// tab) becomes a blank, "^ " a caret, and the others ("^J", "^M" ...),
/// which a single line cannot show, are left out.
void AppendWithSpecialCodes(std::string_view text, std::string& out);

/// The character that '^' followed by `next` stands for in DXF text: "^@"
/// to "^_" are the control characters 0 to 31, "^ " is the caret itself.
/// Nullopt when the pair is not caret notation (a lone caret).
std::optional<char> CaretCharacter(char next);

}  // namespace sheafwork::embedded
