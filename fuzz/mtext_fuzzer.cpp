// Feeds arbitrary bytes to the MTEXT reader and lays the result out, half
// in a TrueType face measured by character count and half in the stroke
// font, wrapped at a narrow column. Nothing may crash, and every run and
// line must come out with finite coordinates.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "embedded/render/mtext_format.h"
#include "embedded/render/stroke_font.h"
#include "embedded/render/text_shaper.h"

namespace {

using namespace sheafwork::embedded;

class CountingMeasure final : public TextMeasure {
 public:
  double Advance(const FontFace&, std::string_view text) override {
    return 0.6 * static_cast<double>(text.size());
  }
};

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "mtext_fuzzer: %s\n", what);
  std::abort();
}

void CheckFinite(Vec2 p) {
  if (!std::isfinite(p.x) || !std::isfinite(p.y)) Fail("a coordinate that is not finite");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CountingMeasure measure;
  for (const bool stroke : {false, true}) {
    MTextFormat base;
    base.height = 2.5;
    base.strokeFont = stroke;
    const std::vector<MTextPiece> pieces = ParseMText(text, base);
    TextBlock block;
    block.columnWidth = 20;
    block.attachment = static_cast<int>(size % 9) + 1;
    const ShapedText shaped = ShapeText(pieces, block, measure);
    std::vector<Vec2> points;
    std::vector<int> sizes;
    for (const ShapedRun& run : shaped.runs) {
      CheckFinite(run.origin);
      if (run.stroke) StrokeFont::Get().AppendStrokes(run.text, run.format.tracking, points, sizes);
    }
    for (const ShapedLine& line : shaped.lines) {
      CheckFinite(line.from);
      CheckFinite(line.to);
    }
  }
  return 0;
}
