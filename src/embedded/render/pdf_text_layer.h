#pragma once
// Text on a PDF page that is never seen: the run's lines in the standard
// Helvetica with text render mode 3 (neither filled nor stroked), each on
// the baseline and as wide as the line drawn there, so that a reader finds,
// selects and copies the text where it shows.

#include <string_view>

#include "embedded/pdf/content_stream.h"
#include "embedded/render/backend.h"
#include "embedded/render/box.h"

namespace sheafwork::embedded {

/// Writes `run`'s lines as invisible text. `font` is the page's Helvetica
/// resource in WinAnsiEncoding (characters the code page lacks become '?');
/// `unitsPerMm` maps sheet millimetres to the page's units. A line whose box
/// lies wholly outside `visible` (sheet mm, the clip in force) is left out:
/// what cannot be seen should not be found. Needs the Qt fonts that lay out
/// the drawn text, and creates the Qt application.
void WriteTextLayer(pdf::ContentStream& out, std::string_view font, const TextRun& run,
                    double unitsPerMm, const Box2& visible);

}  // namespace sheafwork::embedded
