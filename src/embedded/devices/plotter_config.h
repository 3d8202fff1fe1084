#pragma once
// Plotter configurations: the embedded host's ".pc3" files.
//
// A configuration is a UTF-8 text file (a byte-order mark is allowed) of
// "key = value" lines. Blank lines and lines whose first non-blank character
// is "#" or ";" are comments. Keys are lower case; blanks around keys and
// values are dropped. Lines may end in LF or CR LF.
//
//   # Sheafwork plotter configuration
//   driver        = pdf                      pdf, png, svg, hpgl or printer (required)
//   description   = PDF vectoriel            free text
//   resolution    = 1200                     dots per inch, 1 to 9600 (default 300)
//   extension     = pdf                      of the files written (default per driver)
//   output-folder =                          empty: the drawing's folder
//   printer       = Bureau-HP                the system printer, for driver printer
//   default-paper = ISO A3 (420.00 x 297.00 mm)
//   paper = ISO A4 (210.00 x 297.00 mm) | 210 x 297 | 5 5 5 5
//
// "paper" may be repeated; its value is the paper's name, its width and
// height in millimetres, and optionally its unprintable margins in
// millimetres (left bottom right top, all four; 0 when left out), separated
// by "|". Every key but "paper" appears at most once. A file driver needs at
// least one paper; a printer without papers offers the standard sizes. The
// default paper must be one of the papers; without one it is the first.

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace sheafwork::embedded {

/// A bad configuration file. The message names the file and the line.
class DeviceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class DeviceDriver { Pdf, Png, Svg, Hpgl, Printer };

/// A paper size a device offers, in millimetres, unrotated.
struct Paper {
  std::string name;
  double width = 0;
  double height = 0;
  double marginLeft = 0;
  double marginBottom = 0;
  double marginRight = 0;
  double marginTop = 0;

  bool operator==(const Paper&) const = default;
};

struct PlotterConfig {
  DeviceDriver driver = DeviceDriver::Pdf;
  std::string description;
  std::vector<Paper> papers;
  std::string defaultPaper;
  int resolutionDpi = 300;
  std::string outputFolder;  ///< empty: the drawing's folder
  std::string extension;     ///< without the dot
  std::string printer;       ///< the system printer of a printer driver

  /// The paper called `name` (exact), or null.
  const Paper* FindPaper(std::string_view name) const;
  /// The paper a drawing's stored paper stands for: by exact name, by the
  /// same paper name written otherwise (SamePaperName), then by a size within
  /// 0.5 mm of `width` x `height`, as given and then turned a quarter;
  /// null when none. A size that is not positive matches nothing.
  const Paper* MatchPaper(std::string_view name, double width, double height) const;
  /// The default paper; null only for a configuration without papers.
  const Paper* DefaultPaper() const;
};

/// The driver's name as the file writes it ("pdf" ...).
std::string_view DriverName(DeviceDriver driver);

/// Reads a configuration from `text`; `fileName` names it in error messages.
/// Throws DeviceError.
PlotterConfig ParsePlotterConfig(std::string_view text, const std::string& fileName);

/// Reads the configuration file at `path`. Throws DeviceError, also when the
/// file cannot be read.
PlotterConfig ReadPlotterConfigFile(const std::string& path);

/// The paper sizes a system printer offers: ISO A4 and A3, ANSI A and B,
/// Legal, in both orientations, with 5 mm margins.
std::vector<Paper> StandardPrinterPapers();

}  // namespace sheafwork::embedded
