#pragma once
// One plot of one layout to one output: what the host hands the plot engine.

#include <stdexcept>
#include <string>

#include "embedded/model/drawing.h"

namespace sheafwork::embedded {

/// Where the sheet goes.
enum class OutputKind {
  Pdf,      ///< a vector PDF file at `outputPath`
  Printer,  ///< the system printer `printerName`
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
  int copies = 1;     ///< printers: the number of copies the printer makes
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
