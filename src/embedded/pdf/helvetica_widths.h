#pragma once
// The advance widths of the standard Helvetica, which every PDF reader has
// without it being embedded.

#include <string_view>

namespace sheafwork::embedded::pdf {

/// The width of `text` (bytes in the Windows code page, as the
/// WinAnsiEncoding reads them) in Helvetica of size 1. Control bytes count
/// as nothing; the few codes the code page leaves undefined as a digit.
double HelveticaWidth(std::string_view text);

/// The width of code `code` of WinAnsiEncoding in thousandths of the em;
/// 0 for control codes.
int HelveticaCodeWidth(unsigned char code);

}  // namespace sheafwork::embedded::pdf
