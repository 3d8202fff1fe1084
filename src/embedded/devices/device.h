#pragma once
// Plot devices by name: a plotter configuration file or a system printer.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "embedded/devices/plotter_config.h"
#include "platform/printers.h"

namespace sheafwork::embedded {

struct PlotDevice {
  /// The name as the layout or the caller gave it.
  std::string name;
  /// The configuration file's full path; empty for a system printer.
  std::string configPath;
  PlotterConfig config;

  /// True when the device writes files (every driver but printer).
  bool WritesFiles() const { return config.driver != DeviceDriver::Printer; }
  /// The system printer the device prints on; empty for a file device.
  std::string PrinterName() const;
};

/// Finds the device called `name`:
/// - a name ending in ".pc3" (letter case ignored) is read as it stands when
///   it has a folder, else from the first folder of `printerConfigPath`
///   (";"-separated) that holds a file of that name;
/// - any other name is a printer of `printers`, which offers the standard
///   paper sizes.
/// Nullopt when there is no such device. Throws DeviceError when the
/// configuration file is malformed.
std::optional<PlotDevice> FindPlotDevice(const std::string& name,
                                         const std::string& printerConfigPath,
                                         const std::vector<PrinterInfo>& printers);
/// The same, asking `printers` for the system's printers only when `name`
/// is not a configuration file: listing them starts the print system.
std::optional<PlotDevice> FindPlotDevice(
    const std::string& name, const std::string& printerConfigPath,
    const std::function<const std::vector<PrinterInfo>&()>& printers);

}  // namespace sheafwork::embedded
