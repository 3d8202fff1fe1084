#pragma once
// A colour-dependent plot style table: for each of the 255 colour numbers,
// the pen a plot uses for objects of that colour (colour, screening,
// lineweight), with the table's other fields kept as read so that a table
// written back says what it said.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sheafwork::embedded {

/// The number of entries: colour numbers 1 to 255.
inline constexpr int kPlotStyleCount = 255;

/// Encodings of an entry's colour (a signed 32-bit value whose top byte is
/// a kind and whose low three bytes are red, green, blue).
inline constexpr std::int32_t kPlotStyleObjectColor = -1;
/// The other "use object colour" value some tables hold.
inline constexpr std::int32_t kPlotStyleObjectColor2 = -1006632961;
inline constexpr std::uint8_t kColorKindByLayer = 0xC0;
inline constexpr std::uint8_t kColorKindByBlock = 0xC1;
inline constexpr std::uint8_t kColorKindRgb = 0xC2;
inline constexpr std::uint8_t kColorKindIndex = 0xC3;

/// The entry's lineweight index that means "use object lineweight": past
/// the end of any lineweight table.
inline constexpr int kPlotStyleObjectLineweight = 255;
/// color_policy bits.
inline constexpr int kPolicyDithering = 1;
inline constexpr int kPolicyGrayscale = 2;

/// `kind` and 0xRRGGBB as the file stores them.
std::int32_t EncodePlotStyleColor(std::uint32_t rgb, std::uint8_t kind = kColorKindRgb);

/// The pen of one colour number, fields as the file names them.
struct PlotStyleEntry {
  std::string name;  ///< "Color_<n>"
  std::string localizedName;
  std::string description;
  std::int32_t color = kPlotStyleObjectColor;
  std::optional<std::int32_t> modeColor;  ///< absent when the colour is the object's
  int colorPolicy = kPolicyDithering;
  int physicalPenNumber = 0;  ///< 0: automatic
  int virtualPenNumber = 0;
  int screen = 100;  ///< percent of the colour's ink, 100 full
  double linepatternSize = 0.5;
  int linetype = 31;  ///< 31: the object's
  bool adaptiveLinetype = true;
  int lineweight = kPlotStyleObjectLineweight;  ///< index in the lineweight table
  int fillStyle = 73;                           ///< 73: the object's
  int endStyle = 4;                             ///< 4: the object's
  int joinStyle = 5;                            ///< 5: the object's

  /// The pen colour 0xRRGGBB, nullopt when the object keeps its own.
  std::optional<std::uint32_t> PenRgb() const;
};

/// What the table makes of one object's colour and lineweight.
struct PlotStylePen {
  std::uint32_t rgb = 0;
  double lineweightMm = 0.25;
};

struct PlotStyleTable {
  std::string description;
  bool aciTableAvailable = true;
  double scaleFactor = 1;
  bool applyFactor = false;
  int customLineweightDisplayUnits = 0;  ///< 0 mm, 1 inches (display only)
  /// entries[n - 1] is colour number n.
  std::array<PlotStyleEntry, kPlotStyleCount> entries;
  /// Lineweights in mm, indexed by PlotStyleEntry::lineweight.
  std::vector<double> lineweights;

  /// Every entry keeps the object's colour and lineweight, full screening,
  /// the usual lineweight table.
  PlotStyleTable();

  /// The entry's lineweight in mm, nullopt when the object keeps its own
  /// (an index past the table, or a weight of 0 in it).
  std::optional<double> EntryLineweightMm(const PlotStyleEntry& entry) const;

  /// The pen for an object of colour number `aci` (1 to 255; any other
  /// number plots as the object is) whose own colour is `rgb` and
  /// lineweight `lineweightMm`.
  PlotStylePen Apply(int aci, std::uint32_t rgb, double lineweightMm) const;
};

/// The usual lineweights of a table, in mm.
std::vector<double> StandardPlotStyleLineweights();

/// Our monochrome table: every colour plots black, objects keep their
/// lineweights, full screening.
PlotStyleTable MonochromePlotStyleTable();

/// `rgb` faded toward white: `screen` percent of its ink (clamped to 0..100).
std::uint32_t ScreenedRgb(std::uint32_t rgb, int screen);
/// `rgb` as a grey of the same lightness.
std::uint32_t GrayRgb(std::uint32_t rgb);

}  // namespace sheafwork::embedded
