#pragma once
// The plain text of TEXT entities: special "%%" codes replaced.

#include <string>
#include <string_view>

namespace sheafwork::embedded {

/// Appends `text` to `out` with %%d (°), %%c (Ø), %%p (±) and %%% replaced
/// and the underline, overline and strike-through toggles removed.
void AppendWithSpecialCodes(std::string_view text, std::string& out);

}  // namespace sheafwork::embedded
