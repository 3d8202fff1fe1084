#pragma once
// The backend that writes an HP-GL/2 plot: absolute plotter units (40 per
// millimetre), origin at the sheet's lower-left corner, y up. Each colour
// gets a pen; its width is set with the pen and changed where a line needs
// another one. Fills are polygons, clips input windows. Text is left to the
// base class.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/render/backend.h"

namespace sheafwork::embedded {

class HpglBackend final : public Backend {
 public:
  static constexpr double kUnitsPerMm = 40;  // 1016 per inch
  /// Pens 1 to this many; more colours share the pen of the nearest one.
  static constexpr int kMaxPens = 255;

  /// A sheet of `widthMm` × `heightMm`; `title` names the plot in the file.
  HpglBackend(double widthMm, double heightMm, std::string_view title);

  void DrawLines(std::span<const Vec2> pairs, const Style& style) override;
  void DrawPolyline(std::span<const Vec2> points, bool closed, const Style& style) override;
  void DrawArc(Vec2 center, double radius, double start, double sweep, const Style& style) override;
  void FillLoops(std::span<const Vec2> points, std::span<const int> loopSizes,
                 const Style& style) override;
  void DrawPoint(Vec2 at, const Style& style) override;
  /// Non-rectangular clips are widened to their bounding box: the plot may
  /// show a little more than the polygon, never less.
  void PushClip(std::span<const Vec2> polygon) override;
  void PopClip() override;

  /// The whole plot file: the set-up with the pen table, what was drawn and
  /// the end of the page. Called once, when everything is drawn.
  std::string Finish();

  /// The colour (0xRRGGBB) of pen i + 1.
  const std::vector<std::uint32_t>& PenColors() const { return penColors_; }

 private:
  struct Point {
    std::int64_t x = 0;
    std::int64_t y = 0;
    bool operator==(const Point&) const = default;
  };
  struct Pen {
    std::uint32_t rgb = 0;
    double firstWidthMm = 0;  ///< set up with the pen table
    double widthMm = 0;       ///< in force now
  };
  struct Window {
    Point min, max;
    bool empty = false;
  };

  int PenFor(std::uint32_t rgb, double widthMm);
  void UsePen(const Style& style, bool stroke);
  void Stroke(Vec2 from, Vec2 to);
  void MoveTo(Point p);
  void LineTo(Point p);
  void EndCommand();
  void Command(std::string_view mnemonic);
  void Number(std::int64_t value);
  void Number(double value, int decimals);
  void SetWindow();
  bool Hidden() const { return !windows_.empty() && windows_.back().empty; }

  double widthMm_;
  double heightMm_;
  std::string title_;
  std::string body_;
  std::vector<Pen> pens_;
  std::vector<std::uint32_t> penColors_;
  std::vector<Window> windows_;
  int pen_ = 0;  ///< selected; 0 before the first
  Point at_;     ///< where the pen is, when `atKnown_`
  bool atKnown_ = false;
  bool inPenDown_ = false;  ///< a PD command is open for more points
  int pointsInCommand_ = 0;
};

}  // namespace sheafwork::embedded
