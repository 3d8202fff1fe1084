#include "dxfgen/large_drawing.h"

#include <string>
#include <vector>

#include "dxfgen/entities.h"

namespace sheafwork::dxfgen {

namespace {

// SplitMix64: a small generator whose output is the same on every platform.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  std::uint64_t Next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }
  /// A value in [lo, hi), rounded to hundredths as drawings usually are.
  double Uniform(double lo, double hi) {
    const double unit = static_cast<double>(Next() >> 11) / 9007199254740992.0;
    return static_cast<double>(static_cast<long long>((lo + unit * (hi - lo)) * 100)) / 100;
  }
  int Below(int n) { return static_cast<int>(Next() % static_cast<std::uint64_t>(n)); }

 private:
  std::uint64_t state_;
};

constexpr int kLayers = 16;
constexpr double kSize = 100000;  // the drawing covers 100 m × 100 m
constexpr int kLongestRun = 40;   // entities drawn in a row on one layer
constexpr double kSpot = 5000;    // ... around one spot, 10 m across

double Clamp(double v) { return v < 0 ? 0 : (v > kSize ? kSize : v); }

}  // namespace

Document LargeDrawing(std::size_t entityCount, std::uint64_t seed) {
  Random r(seed);
  Document doc;
  for (int i = 0; i < kLayers; ++i) {
    doc.layers.push_back({"CALQUE-" + std::to_string(i), 1 + i % 9, "Continuous", -3, true});
  }
  doc.limMin = {0, 0};
  doc.limMax = {kSize, kSize};
  for (int b = 0; b < 4; ++b) {
    BlockDef block;
    block.name = "SYMBOLE-" + std::to_string(b);
    const Props zero{"0", "", 256, -1};
    block.entities = {Circle(zero, {0, 0}, 300 + 100 * b), Line(zero, {-400, 0}, {400, 0}),
                      Line(zero, {0, -400}, {0, 400}),
                      Text(zero, {0, -600}, 150, "S" + std::to_string(b))};
    doc.blocks.push_back(std::move(block));
  }

  doc.model.reserve(entityCount);
  // As a drafter works: runs of entities on one layer around one spot of
  // the plan, most of them in the layer's colour.
  int runLeft = 0;
  std::string layer;
  P2 spot{0, 0};
  for (std::size_t i = 0; i < entityCount; ++i) {
    if (runLeft == 0) {
      runLeft = 1 + r.Below(kLongestRun);
      layer = "CALQUE-" + std::to_string(r.Below(kLayers));
      spot = {r.Uniform(0, kSize), r.Uniform(0, kSize)};
    }
    --runLeft;
    const Props props{layer, "", r.Below(16) == 0 ? 1 + r.Below(255) : 256, -1};
    const P2 at{Clamp(spot.x + r.Uniform(-kSpot, kSpot)), Clamp(spot.y + r.Uniform(-kSpot, kSpot))};
    switch (i % 8) {
      case 0:
      case 1:
        doc.model.push_back(
            Line(props, at, {at.x + r.Uniform(-2000, 2000), at.y + r.Uniform(-2000, 2000)}));
        break;
      case 2:
        doc.model.push_back(
            Arc(props, at, r.Uniform(50, 1500), r.Uniform(0, 360), r.Uniform(0, 360)));
        break;
      case 3:
        doc.model.push_back(Circle(props, at, r.Uniform(50, 1500)));
        break;
      case 4: {
        std::vector<Vertex> vertices;
        P2 p = at;
        const int n = 4 + r.Below(8);
        for (int v = 0; v < n; ++v) {
          vertices.push_back({p, r.Below(3) == 0 ? r.Uniform(-1, 1) : 0});
          p = {p.x + r.Uniform(-1500, 1500), p.y + r.Uniform(-1500, 1500)};
        }
        doc.model.push_back(LwPolyline(props, vertices, r.Below(2) == 0));
        break;
      }
      case 5:
        doc.model.push_back(
            Text(props, at, r.Uniform(100, 500),
                 "Repère " + std::to_string(i) + " - niveau " + std::to_string(r.Below(5)),
                 {"Standard", r.Uniform(0, 360), 0, 0}));
        break;
      case 6:
        doc.model.push_back(Insert(props, "SYMBOLE-" + std::to_string(r.Below(4)), at,
                                   r.Uniform(0.5, 2), r.Uniform(0, 360)));
        break;
      default: {
        const double w = r.Uniform(100, 2000);
        const double h = r.Uniform(100, 2000);
        doc.model.push_back(SolidHatch(
            props, {{{at}, {{at.x + w, at.y}}, {{at.x + w, at.y + h}}, {{at.x, at.y + h}}}}));
        break;
      }
    }
  }

  LayoutDef layout;
  layout.name = "Présentation1";
  layout.settings.paperWidth = 841;
  layout.settings.paperHeight = 594;
  layout.entities = {
      Viewport({"Defpoints", "", 256, -1}, {415.5, 292}, 841, 594, 1, {{415.5, 292}, 1}),
      Viewport({"Defpoints", "", 256, -1}, {415.5, 292}, 800, 560, 2,
               {{kSize / 2, kSize / 2}, 560.0 / kSize})};
  doc.layouts = {layout};
  doc.activeLayout = 0;
  doc.modelSettings.flags |= kModelTypeFlag;
  doc.modelSettings.plotType = 1;
  doc.modelSettings.standardScale = 0;
  return doc;
}

}  // namespace sheafwork::dxfgen
