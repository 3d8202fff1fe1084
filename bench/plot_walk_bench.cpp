// How fast a plot goes without its output: reading a large generated drawing,
// and the frontend's walk over each of its layouts into a backend that only
// counts what it is handed. The two figures are what a plot costs before
// any PDF, raster or printer output is made.
//
// The drawings are made by our generator in memory (20 000 and 200 000
// entities); SHEAFWORK_PLOT_BENCH_DXF names a DXF file to measure instead.
// Run a Release build:
//
//   plot_walk_bench [Google Benchmark options...]

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>

#include "dxfgen/document.h"
#include "dxfgen/large_drawing.h"
#include "embedded/dxf/reader.h"
#include "embedded/render/backend.h"
#include "embedded/render/frontend.h"
#include "embedded/render/paint_sheet.h"
#include "embedded/render/plot_job.h"

namespace {

using namespace sheafwork::embedded;

/// Counts primitives and points; draws nothing.
class CountingBackend final : public Backend {
 public:
  void DrawLines(std::span<const Vec2> pairs, const Style&) override { Count(pairs.size()); }
  void DrawPolyline(std::span<const Vec2> points, bool, const Style&) override {
    Count(points.size());
  }
  void DrawArc(Vec2, double, double, double, const Style&) override { Count(1); }
  void FillLoops(std::span<const Vec2> points, std::span<const int>, const Style&) override {
    Count(points.size());
  }
  void DrawPoint(Vec2, const Style&) override { Count(1); }
  void DrawText(const TextRun& run, const Style&) override { Count(run.text.size()); }

  std::int64_t primitives = 0;
  std::int64_t points = 0;

 private:
  void Count(std::size_t n) {
    ++primitives;
    points += static_cast<std::int64_t>(n);
  }
};

/// The bytes measured for `entities` (0: the file named by the environment).
const std::string& Bytes(std::int64_t entities) {
  static std::map<std::int64_t, std::string> cache;
  auto it = cache.find(entities);
  if (it != cache.end()) return it->second;
  std::string bytes;
  if (const char* file = std::getenv("SHEAFWORK_PLOT_BENCH_DXF"); file != nullptr && *file) {
    std::ifstream in(file, std::ios::binary);
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  } else {
    bytes = sheafwork::dxfgen::WriteDxf(
        sheafwork::dxfgen::LargeDrawing(static_cast<std::size_t>(entities)));
  }
  return cache.emplace(entities, std::move(bytes)).first->second;
}

const Drawing& DrawingOf(std::int64_t entities) {
  static std::map<std::int64_t, std::unique_ptr<Drawing>> cache;
  auto it = cache.find(entities);
  if (it != cache.end()) return *it->second;
  auto drawing = std::make_unique<Drawing>(ReadDxf(Bytes(entities), "bench.dxf"));
  return *cache.emplace(entities, std::move(drawing)).first->second;
}

std::int64_t EntitiesArg(const benchmark::State& state) {
  const char* file = std::getenv("SHEAFWORK_PLOT_BENCH_DXF");
  return file != nullptr && *file ? 0 : state.range(0);
}

void Read(benchmark::State& state) {
  const std::string& bytes = Bytes(EntitiesArg(state));
  for (auto _ : state) {
    Drawing drawing = ReadDxf(bytes, "bench.dxf");
    benchmark::DoNotOptimize(drawing);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(bytes.size()));
}

// range(1): 0 the model layout, 1 the first paper layout.
void Draw(benchmark::State& state) {
  const Drawing& drawing = DrawingOf(EntitiesArg(state));
  const Layout* layout = nullptr;
  for (const Layout& l : drawing.layouts) {
    if (l.IsModel() == (state.range(1) == 0)) {
      layout = &l;
      break;
    }
  }
  if (layout == nullptr) {
    state.SkipWithError("no such layout");
    return;
  }
  PlotJob job;
  job.drawing = &drawing;
  job.layout = layout;
  job.settings = layout->settings;
  const SheetLayout sheet = PlanSheet(job);
  const Box2 cull = Box2::Of({0, 0}, {sheet.frame.width, sheet.frame.height});
  const FrontendOptions options = SheetFrontendOptions(job, sheet, cull, 600 / 25.4);
  CountingBackend backend;
  for (auto _ : state) {
    backend = CountingBackend();
    Frontend frontend(drawing, backend, options);
    frontend.DrawLayout(*layout, sheet.drawingToSheet);
    benchmark::DoNotOptimize(backend.points);
  }
  state.SetLabel(layout->name);
  state.counters["primitives"] = static_cast<double>(backend.primitives);
  state.counters["points"] = static_cast<double>(backend.points);
}

BENCHMARK(Read)->Arg(20000)->Arg(200000)->Unit(benchmark::kMillisecond);
BENCHMARK(Draw)->ArgsProduct({{20000, 200000}, {0, 1}})->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
