#pragma once
// The embedded host: our own CAD host behind the host automation interface.
// It opens DXF drawings (DWG through a converter run as its own process), keeps each open
// document's drawing as a copy that the program may change, and plots
// layouts through plotter configurations (.pc3) or system printers.
//
//   EmbeddedHostOptions options;            // every member may stay empty
//   options.progress = myQtProgressDialog;  // the GUI's display
//   registry.Register("embarque", [options] { return MakeEmbeddedHost(options); }, true);

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "embedded/automation/progress_display.h"
#include "embedded/model/drawing.h"
#include "embedded/model/xrefs.h"
#include "embedded/render/plot_job.h"
#include "host/automation.h"
#include "platform/printers.h"

namespace sheafwork::embedded {

/// Reads the DXF file at a path. Throws DxfError for a malformed or
/// unreadable file.
using DrawingReader = std::function<Drawing(const std::string& path)>;

/// Makes one plot. Throws PlotError when it cannot.
using Plotter = std::function<void(const PlotJob& job)>;

/// A sheet of the combined PDF written as a file of its own: where, and how
/// the combined PDF's outline files it (the drawing it comes from, by its
/// path, and the drawing's and the layout's names).
struct CombinedPage {
  std::string path;
  std::string drawingKey;
  std::string drawingName;
  std::string layoutName;
};

struct EmbeddedHostOptions {
  /// The host's installation folder (Path()), holding "plotters/",
  /// "plotstyles/", "support/" and "fonts/" (shape fonts). Empty: the
  /// program's data folder (ProgramDataFolder()).
  std::string dataFolder;
  /// The per-user folder: the host's log folder and a second "plotters/",
  /// "plotstyles/" and "fonts/".
  /// Empty: the per-user data folder.
  std::string userFolder;
  /// The system printers. Null: the system's catalogue, read once.
  std::shared_ptr<PrinterCatalog> printers;
  /// Shown by StartBatchMode. Null: the console display on stderr.
  std::shared_ptr<ProgressDisplay> progress;
  /// Empty: the DXF reader.
  DrawingReader reader;
  /// Empty: the plot engine.
  Plotter plotter;
  /// The DWG converter; nullopt: the environment variable
  /// SHEAFWORK_DWG_CONVERTER, or when it is unset or empty the program's own
  /// (BundledDwgConverter) when the data folder holds it.
  std::optional<std::string> dwgConverter;
  /// How long one conversion may take; zero: DefaultDwgTimeLimit().
  std::chrono::milliseconds dwgTimeLimit{0};
  /// The device that plots a layout whose own device is "Aucun" or missing
  /// from this machine; nullopt: the environment variable
  /// SHEAFWORK_FALLBACK_DEVICE, else "PDF.pc3".
  std::optional<std::string> fallbackDevice;
  /// A PDF file that also receives every sheet the host plots, one page
  /// each in plot order, written when the batch ends or the host quits.
  /// Empty: none. The host cannot start when the file cannot be created.
  std::string combinedPdf;
  /// Told once the combined PDF is closed: its page count and why it could
  /// not be written (empty when it was). A run that plotted nothing writes
  /// no file.
  std::function<void(int pages, const std::string& error)> combinedPdfClosed;
  /// How far the external references of a drawing opened are followed.
  XrefLimits xrefLimits;
  /// How many entities the plot of one sheet may draw (each entity of a
  /// block once per reference to it); zero: the environment variable
  /// SHEAFWORK_SHEET_LIMIT, else kDefaultSheetEntityLimit.
  std::uint64_t sheetEntityLimit = 0;
  /// A folder that receives every sheet written to a file, as
  /// "<drawing>-<layout>.<extension>" whatever file the plot names; a name a
  /// sheet of this host already took gets "-2", "-3"... before its
  /// extension. Empty: each plot writes where its file or device says.
  std::string outputFolder;
  /// With `outputFolder`: the file a sheet is written to, given the name the
  /// folder would give it before any "-2" (`base` + `extension`, the
  /// extension with its dot). Empty: the host takes the names itself.
  std::function<std::string(const std::string& base, const std::string& extension)> outputName;
  /// Instead of `combinedPdf`: a folder of this host's own where each sheet
  /// the combined PDF would receive is written as a PDF file of its own
  /// ("1.pdf", "2.pdf"...), told to `combinedPageWritten`. Another process
  /// puts the pages together.
  std::string combinedPageFolder;
  std::function<void(const CombinedPage& page)> combinedPageWritten;
  /// A folder where the drawings converted from DWG are kept for the
  /// processes of one parallel run, which share it (DwgConversions::
  /// ShareThrough). Empty: each host converts for itself.
  std::string conversionFolder;
};

/// Starts an embedded host with one untitled, empty document active.
std::shared_ptr<host::Application> MakeEmbeddedHost(EmbeddedHostOptions options = {});

/// The embedded host's preferences, with the members only it has. Reach them
/// with std::dynamic_pointer_cast on Application::GetPreferences().
class EmbeddedPreferences : public host::Preferences {
 public:
  virtual void SetPrinterConfigPath(const std::string& path) = 0;
  /// Folders, separated by ";", in which the host looks for plot style
  /// tables: the data folder's "plotstyles/", then the per-user one.
  virtual std::string PlotStylePath() = 0;
  virtual void SetPlotStylePath(const std::string& path) = 0;
  virtual void SetSupportPath(const std::string& path) = 0;
  /// The program that converts a DWG drawing to DXF, run as
  /// `<converter> <drawing> <output.dxf>` without a shell; empty for none.
  virtual std::string DwgConverter() = 0;
  virtual void SetDwgConverter(const std::string& converter) = 0;
  /// The device that plots a layout whose own device is "Aucun" or that
  /// this machine does not have, on the same paper ("PDF.pc3" unless set).
  virtual std::string FallbackDevice() = 0;
  virtual void SetFallbackDevice(const std::string& device) = 0;
};

}  // namespace sheafwork::embedded
