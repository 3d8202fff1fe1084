#pragma once
// A row's plot area and plot scale: the codes the list file holds, the
// readable words the command line takes and shows for them, and the host's
// standard scales.
//
//   PlotArea   ""  keep the layout's   "#E" extents   "#D" display
//              "#L" limits   "#O" layout   "#W<x1>,<y1>,<x2>,<y2>" a window
//              in drawing units   any other text: a saved view
//   PlotScale  ""  keep the layout's   "S#<n>" standard scale n (0: fit)
//              "<plotted>#<drawing units>" with ScaleCustom

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sheafwork {

/// A standard scale of the host: the string-table id of its name and the
/// host's standard-scale number. The metric scales first, then the imperial
/// ones.
struct StandardScale {
  int nameId;
  int number;
};
const std::vector<StandardScale>& StandardScales();

/// The highest standard-scale number the host knows (0 scales to fit).
inline constexpr int kLastStandardScale = 32;

/// A number of a custom scale or a window corner: the whole text a finite
/// decimal number, with "." or "," as the decimal separator.
std::optional<double> ParseScaleNumber(std::string_view text);

/// The corners of a window code "#W<x1>,<y1>,<x2>,<y2>" (decimal points),
/// as written; nullopt for any other text. A window with no width or no
/// height is not a window.
std::optional<std::array<double, 4>> ParseWindowCode(std::string_view code);

/// A PlotScale with its ScaleCustom flag.
struct ScaleCode {
  std::string plotScale;
  bool custom = false;
};

/// The list file's PlotArea for a value given on the command line: a
/// readable word (extents, display, limits, layout, view:NAME,
/// window:X1,Y1,X2,Y2) or a code ("#E", "#D", "#L", "#O", "#W...", empty).
/// Nullopt for anything else, a bare view name included.
std::optional<std::string> PlotAreaCode(std::string_view value);

/// The list file's PlotScale for a value given on the command line. Without
/// `custom`: "fit", a standard scale by its name ("1:50", `1/4" = 1'0"`,
/// spaces and letter case aside) or a code "S#<n>" / "0#..."; with `custom`:
/// "N:M" or the code "N#M", both numbers above zero. Empty keeps the
/// layout's scale. Nullopt for anything else.
std::optional<ScaleCode> PlotScaleCode(std::string_view value, bool custom);

/// True when a row's PlotScale and ScaleCustom make a scale the plot run
/// applies without falling back (empty counts).
bool IsUsableScale(std::string_view plotScale, bool custom);

/// The readable word of a PlotArea code ("extents", "view:Nord",
/// "window:0,0,420,297"); empty for an empty code.
std::string PlotAreaName(std::string_view code);

/// The readable name of a row's scale ("fit", "1:50", "1:48" for a custom
/// one); empty when there is none or the code makes no scale.
std::string PlotScaleName(std::string_view plotScale, bool custom);

/// The values PlotAreaCode and PlotScaleCode take, for messages and help.
std::string AcceptedPlotAreas();
std::string AcceptedPlotScales();

}  // namespace sheafwork
