#pragma once
// The 256 indexed colours of a drawing, as they plot on white paper.

#include <cstdint>

namespace sheafwork::embedded {

/// 0xRRGGBB of colour number `index` (1 to 255) on white paper: colour 7
/// plots black. Numbers outside 1..255 give black.
std::uint32_t AciToRgb(int index);

}  // namespace sheafwork::embedded
