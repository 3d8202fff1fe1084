// How fast the DXF reader goes: the tokenizer alone and the whole reader, on
// a large drawing made by our generator (about 50 MB) and on a small example
// plan. Two peers run on the same bytes in the same process, so that the
// figures can be read as ratios on any machine: splitting the file into
// lines with memchr (what any reader must at least do) and a plain
// getline/strtol tag loop (what a simple reader does).

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>

#include "dxfgen/document.h"
#include "dxfgen/house.h"
#include "dxfgen/large_drawing.h"
#include "embedded/dxf/reader.h"
#include "embedded/dxf/tokenizer.h"

namespace {

// About 195 bytes per entity: 255 000 entities make some 50 MB.
constexpr std::size_t kLargeEntities = 255000;

const std::string& LargeDrawing() {
  static const std::string bytes =
      sheafwork::dxfgen::WriteDxf(sheafwork::dxfgen::LargeDrawing(kLargeEntities));
  return bytes;
}

const std::string& SmallDrawing() {
  static const std::string bytes = sheafwork::dxfgen::WriteDxf(sheafwork::dxfgen::GroundFloor());
  return bytes;
}

const std::string& Input(int which) { return which == 0 ? LargeDrawing() : SmallDrawing(); }

void Label(benchmark::State& state, const std::string& bytes) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(bytes.size()));
  state.SetLabel(state.range(0) == 0 ? "grand dessin" : "petit plan");
  state.counters["Mo"] = static_cast<double>(bytes.size()) / 1e6;
}

void Tokenizer(benchmark::State& state) {
  const std::string& bytes = Input(static_cast<int>(state.range(0)));
  std::size_t tags = 0;
  for (auto _ : state) {
    sheafwork::embedded::Tokenizer tokenizer(bytes, "bench.dxf");
    sheafwork::embedded::Tag tag;
    tags = 0;
    while (tokenizer.Next(tag)) ++tags;
    benchmark::DoNotOptimize(tags);
  }
  Label(state, bytes);
  state.counters["tags"] = static_cast<double>(tags);
}

void Reader(benchmark::State& state) {
  const std::string& bytes = Input(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    sheafwork::embedded::Drawing drawing = sheafwork::embedded::ReadDxf(bytes, "bench.dxf");
    benchmark::DoNotOptimize(drawing);
  }
  Label(state, bytes);
}

// Peer: the lines of the file, found with memchr.
void PeerLines(benchmark::State& state) {
  const std::string& bytes = Input(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::size_t lines = 0;
    const char* p = bytes.data();
    const char* end = p + bytes.size();
    while (const void* nl = std::memchr(p, '\n', static_cast<std::size_t>(end - p))) {
      p = static_cast<const char*>(nl) + 1;
      ++lines;
    }
    benchmark::DoNotOptimize(lines);
  }
  Label(state, bytes);
}

// Peer: a simple reader's tag loop, two getline calls and a strtol per tag.
void PeerGetline(benchmark::State& state) {
  const std::string& bytes = Input(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::istringstream in(bytes);
    std::string code;
    std::string value;
    long sum = 0;
    while (std::getline(in, code) && std::getline(in, value)) {
      sum += std::strtol(code.c_str(), nullptr, 10);
    }
    benchmark::DoNotOptimize(sum);
  }
  Label(state, bytes);
}

BENCHMARK(Tokenizer)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Reader)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(PeerLines)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(PeerGetline)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
