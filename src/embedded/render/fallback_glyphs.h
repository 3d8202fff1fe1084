#pragma once
// Characters that neither a shape font nor our stroke font has (Greek,
// Cyrillic, symbols ...) are drawn with the glyphs of the fallback
// TrueType face, the one text gets when the font it asks for is missing.

#include "embedded/render/stroke_font.h"

namespace sheafwork::embedded {

/// The glyph of `code` in the fallback face as filled loops, in cap heights
/// of that face, read once per process; nullptr when the system has no font
/// or the face lacks the character.
const StrokeGlyph* FallbackGlyph(char32_t code);

}  // namespace sheafwork::embedded
