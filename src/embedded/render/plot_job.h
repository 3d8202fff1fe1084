#pragma once
// One plot of one layout to one output: what the host hands the plot engine.

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "embedded/model/drawing.h"
#include "embedded/plotstyle/plot_style_table.h"

namespace sheafwork::embedded {

/// Where the sheet goes.
enum class OutputKind {
  Pdf,      ///< a vector PDF file at `outputPath`
  Printer,  ///< the system printer `printerName`
  Png,      ///< a raster PNG file of the whole sheet at `resolutionDpi`
  Svg,      ///< a vector SVG file at the sheet's size in millimetres
  Hpgl,     ///< an HP-GL/2 plot file, 40 plotter units per millimetre
};

/// How many entities the plot of one sheet may draw by default: far more
/// than any real drawing needs, few enough to end a runaway one.
inline constexpr std::uint64_t kDefaultSheetEntityLimit = 50'000'000;

/// What bounds the plot of one sheet; past either, the plot throws PlotError.
struct SheetWork {
  /// Entities drawn at most, each entity of a block once per reference to
  /// it, per walk over the sheet.
  std::uint64_t entityLimit = kDefaultSheetEntityLimit;
  /// Asked about every 50 ms while the sheet is drawn; true stops the plot.
  /// Empty: never.
  std::function<bool()> cancelled;
};

struct PlotJob {
  const Drawing* drawing = nullptr;  ///< layer states as they are to be plotted
  const Layout* layout = nullptr;
  /// The layout's settings as they stand at plot time (the row may have
  /// changed them); the sheet is paperWidth × paperHeight mm.
  PlotSettings settings;
  OutputKind output = OutputKind::Pdf;
  std::string outputPath;
  std::string printerName;
  int resolutionDpi = 1200;
  std::string title;  ///< document title: drawing and layout
  /// The drawing's file name and the layout's name as the user knows them
  /// (the model's by its tab), for a combined PDF's outline.
  std::string drawingName;
  std::string layoutName;
  /// The table the settings name (styleSheet), applied when they plot with
  /// plot styles; none when null.
  std::shared_ptr<const PlotStyleTable> plotStyles;
  int copies = 1;  ///< printers: the number of copies the printer makes
  /// The ";"-separated folders shape font files are looked for in (the
  /// host's support path).
  std::string fontSearchPath;
  SheetWork work;
};

/// The plot could not be made; the message says why, in French, for the
/// host's log.
class PlotError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Plots `job`. Throws PlotError.
void RunPlotJob(const PlotJob& job);

}  // namespace sheafwork::embedded
