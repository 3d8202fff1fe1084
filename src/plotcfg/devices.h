#pragma once
// Plot devices: system printers and plotter configuration files found along
// the host's search path.

#include <string>
#include <vector>

#include "host/automation.h"
#include "log/paths.h"  // SplitSearchPath
#include "platform/printers.h"

namespace sheafwork {

/// True when `device` is "Par défaut", letter case ignored.
bool IsDefaultDevice(const std::string& device);

/// True when `device` ends in ".pc3" (trimmed, letter case ignored).
bool IsPlotterConfigFile(const std::string& device);

/// Whether `fileName` exists in one of the folders of `searchPath`.
bool FindFileWithExtendedPaths(const std::string& fileName, const std::string& searchPath);

/// The printers that count as devices: all but the system's pseudo-printer.
std::vector<PrinterInfo> UsablePrinters(PrinterCatalog& printers);

/// True when there is no printer (the pseudo-printer aside) and no file at
/// all in the folders of the host's printer-configuration search path.
/// Throws host::Error when the preferences cannot be read.
bool NoDevicesAvailable(host::Preferences& preferences, PrinterCatalog& printers);

}  // namespace sheafwork
