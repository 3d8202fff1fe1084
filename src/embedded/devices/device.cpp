#include "embedded/devices/device.h"

#include <filesystem>

#include "log/paths.h"
#include "log/wide_path.h"
#include "text/strings.h"

namespace sheafwork::embedded {

namespace fs = std::filesystem;

std::string PlotDevice::PrinterName() const {
  if (WritesFiles()) return {};
  return config.printer.empty() ? name : config.printer;
}

std::optional<PlotDevice> FindPlotDevice(const std::string& name,
                                         const std::string& printerConfigPath,
                                         const std::vector<PrinterInfo>& printers) {
  return FindPlotDevice(name, printerConfigPath,
                        [&]() -> const std::vector<PrinterInfo>& { return printers; });
}

std::optional<PlotDevice> FindPlotDevice(
    const std::string& name, const std::string& printerConfigPath,
    const std::function<const std::vector<PrinterInfo>&()>& printers) {
  if (name.empty()) return std::nullopt;
  if (EndsWithIgnoreCase(name, ".pc3")) {
    const fs::path given = FsPath(name);
    std::string found;
    if (given.has_parent_path()) {
      if (IsRegularFile(given)) found = name;
    } else {
      for (const std::string& folder : SplitSearchPath(printerConfigPath)) {
        const fs::path candidate = FsPath(folder) / given;
        if (IsRegularFile(candidate)) {
          found = PathText(candidate);
          break;
        }
      }
    }
    if (found.empty()) return std::nullopt;
    return PlotDevice{name, found, ReadPlotterConfigFile(found)};
  }
  for (const PrinterInfo& printer : printers()) {
    if (printer.name != name) continue;
    PlotDevice device{name, {}, {}};
    device.config.driver = DeviceDriver::Printer;
    device.config.description = printer.driver;
    device.config.printer = printer.name;
    device.config.papers = StandardPrinterPapers();
    device.config.defaultPaper = device.config.papers.front().name;
    device.config.extension = "pdf";
    return device;
  }
  return std::nullopt;
}

}  // namespace sheafwork::embedded
