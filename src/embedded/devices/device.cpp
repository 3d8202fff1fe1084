#include "embedded/devices/device.h"

#include <filesystem>
#include <system_error>

#include "log/paths.h"
#include "text/strings.h"

namespace sheafwork::embedded {

namespace fs = std::filesystem;

namespace {

bool IsFile(const fs::path& path) {
  std::error_code ec;
  return fs::is_regular_file(path, ec);
}

}  // namespace

std::string PlotDevice::PrinterName() const {
  if (WritesFiles()) return {};
  return config.printer.empty() ? name : config.printer;
}

std::optional<PlotDevice> FindPlotDevice(const std::string& name,
                                         const std::string& printerConfigPath,
                                         const std::vector<PrinterInfo>& printers) {
  if (name.empty()) return std::nullopt;
  if (EndsWithIgnoreCase(name, ".pc3")) {
    const fs::path given(name);
    std::string found;
    if (given.has_parent_path()) {
      if (IsFile(given)) found = name;
    } else {
      for (const std::string& folder : SplitSearchPath(printerConfigPath)) {
        const fs::path candidate = fs::path(folder) / given;
        if (IsFile(candidate)) {
          found = candidate.string();
          break;
        }
      }
    }
    if (found.empty()) return std::nullopt;
    return PlotDevice{name, found, ReadPlotterConfigFile(found)};
  }
  for (const PrinterInfo& printer : printers) {
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
