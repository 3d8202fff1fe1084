// The memory a long text takes while it is drawn, measured by the counting
// operator new below, kept apart from the other tests of the plot engine.

#include <gtest/gtest.h>
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "embedded/render/extents_backend.h"
#include "embedded/render/frontend.h"
#include "embedded/render/render_test_support.h"

namespace {

// Bytes held on the heap now, and at most since the last AllocationMeter.
std::atomic<std::size_t> held{0};
std::atomic<std::size_t> peak{0};

}  // namespace

// The array and nothrow forms call these.
void* operator new(std::size_t size) {
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  const std::size_t now = held += malloc_usable_size(block);
  std::size_t highest = peak.load();
  while (now > highest && !peak.compare_exchange_weak(highest, now)) {
  }
  return block;
}

void operator delete(void* block) noexcept {
  if (block == nullptr) return;
  held -= malloc_usable_size(block);
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

namespace sheafwork::embedded {
namespace {

// From construction, the highest number of bytes held beyond those held
// then (blocks from operator new, at their usable size).
class AllocationMeter {
 public:
  AllocationMeter() : start_(held.load()) { peak = start_; }
  std::size_t PeakBytes() const { return peak.load() - start_; }

 private:
  std::size_t start_;
};

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
    const AllocationMeter meter;
    frontend.DrawLayout(testing::ModelOf(drawing), Affine2{});
    EXPECT_LT(meter.PeakBytes(), c.bytesPerChar * kChars);
    EXPECT_FALSE(backend.Extents().Empty());
  }
}

}  // namespace
}  // namespace sheafwork::embedded
