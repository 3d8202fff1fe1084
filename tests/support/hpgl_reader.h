#pragma once
// Reading back the HP-GL/2 plots the engine writes, as a plotter would draw
// them: strokes and filled polygons in sheet millimetres.

#include <QImage>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/model/geometry.h"
#include "embedded/render/box.h"

namespace sheafwork::embedded::testing {

struct HpglPlot {
  struct Stroke {
    int pen = 0;
    double widthMm = 0;
    std::vector<Vec2> points;  ///< one point: a dot
    Box2 window;               ///< IW in effect; empty: none
  };
  struct Fill {
    int pen = 0;
    std::vector<std::vector<Vec2>> loops;
    Box2 window;
  };
  std::vector<std::string> commands;       ///< as written, without the ';'
  Vec2 plotSizeMm;                         ///< PS
  std::map<int, std::uint32_t> penColors;  ///< PC, 0xRRGGBB
  std::vector<Stroke> strokes;             ///< PD runs, arcs and circles as chords
  std::vector<Fill> fills;                 ///< PM polygons filled with FP

  /// The box of everything inked, pen widths included.
  Box2 InkExtents() const;
  /// The commands with this mnemonic, as written.
  std::vector<std::string> All(std::string_view mnemonic) const;
};

/// Reads a plot: IN PS NP PC PW SP PU PD AA CI PM FP IW; others are kept in
/// `commands` only.
HpglPlot ReadHpgl(std::string_view text);

/// Paints the plot on a white image of the plot size, `pixelsPerMm`, y up:
/// the fills, then the strokes, each clipped to its window.
QImage RenderHpgl(const HpglPlot& plot, double pixelsPerMm);

}  // namespace sheafwork::embedded::testing
