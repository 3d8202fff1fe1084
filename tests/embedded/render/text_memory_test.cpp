// The memory a long text takes while it is drawn, measured by the counting
// operator new of this test binary (allocation_meter.cpp), kept apart from
// the other tests of the plot engine.

#include <gtest/gtest.h>

#include "embedded/render/allocation_meter.h"
#include "embedded/render/extents_backend.h"
#include "embedded/render/frontend.h"
#include "embedded/render/render_test_support.h"

namespace sheafwork::embedded {
namespace {

// Long text takes about its own size while it is drawn, not a hundred
// bytes a character: a 1 MB TEXT in a shape font and in a TrueType face
// (whose glyphs are shaped first: a few dozen bytes each), and an MTEXT of
// 500 000 paragraph breaks.
TEST(TextMemoryTest, LongTextTakesMemoryNearItsSize) {
  constexpr std::size_t kChars = 1'000'000;
  struct Case {
    const char* name;
    Geometry text;
    const char* fontFile;
    std::size_t bytesPerChar;
  };
  Text text;
  text.text.assign(kChars, 'A');
  text.height = 2.5;
  MText breaks;
  for (std::size_t i = 0; i < kChars / 2; ++i) breaks.text += "\\P";
  breaks.text += "fin";
  breaks.height = 2.5;
  const Case cases[] = {{"TEXT", text, "txt", 4},
                        {"TEXT TrueType", text, "arial.ttf", 100},
                        {"MTEXT", breaks, "txt", 4}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Drawing drawing = testing::MakeDrawing();
    TextStyle standard;
    standard.name = "Standard";
    standard.fontFile = c.fontFile;
    drawing.textStyles.push_back(standard);
    testing::ModelSpace(drawing).entities.push_back(testing::MakeEntity(c.text));
    drawing.Reindex();
    ExtentsBackend backend;
    Frontend frontend(drawing, backend, FrontendOptions{});
    const testing::AllocationMeter meter;
    frontend.DrawLayout(testing::ModelOf(drawing), Affine2{});
    EXPECT_LT(meter.PeakBytes(), c.bytesPerChar * kChars);
    EXPECT_FALSE(backend.Extents().Empty());
  }
}

}  // namespace
}  // namespace sheafwork::embedded
