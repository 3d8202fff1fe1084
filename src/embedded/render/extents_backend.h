#pragma once
// A backend that only measures: the box around everything drawn, text
// estimated from its character count, each clip taken as its box.

#include <vector>

#include "embedded/render/backend.h"
#include "embedded/render/box.h"
#include "embedded/render/text_layout.h"

namespace sheafwork::embedded {

class ExtentsBackend final : public Backend {
 public:
  void DrawLines(std::span<const Vec2> pairs, const Style& style) override;
  void DrawPolyline(std::span<const Vec2> points, bool closed, const Style& style) override;
  /// Exactly, where the default would flatten the arc.
  void DrawArc(Vec2 center, double radius, double start, double sweep, const Style& style) override;
  void FillLoops(std::span<const Vec2> points, std::span<const int> loopSizes,
                 const Style& style) override;
  void DrawPoint(Vec2 at, const Style& style) override;
  void DrawText(const TextRun& text, const Style& style) override;
  void PushClip(std::span<const Vec2> polygon) override;
  void PopClip() override;

  const Box2& Extents() const { return box_; }

 private:
  void Add(std::span<const Vec2> points);
  /// Adds `box`, cut to the clip in force.
  void Include(const Box2& box);

  Box2 box_;
  std::vector<Box2> clips_;
  std::vector<double> widths_;
  std::vector<LinePlacement> lines_;
};

}  // namespace sheafwork::embedded
