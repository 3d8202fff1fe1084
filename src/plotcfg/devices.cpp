#include "plotcfg/devices.h"

#include "log/paths.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"

namespace sheafwork {

bool IsDefaultDevice(const std::string& device) {
  return EqualsIgnoreCase(device, CachedText<ids::kDefault>());
}

bool IsPlotterConfigFile(const std::string& device) {
  return EndsWithIgnoreCase(TrimSpaces(device), ".pc3");
}

bool FindFileWithExtendedPaths(const std::string& fileName, const std::string& searchPath) {
  if (TrimSpaces(searchPath).empty() || TrimSpaces(fileName).empty()) return false;
  // The separator is always inserted, even after a folder that ends in one.
  for (const std::string& folder : SplitSearchPath(searchPath)) {
    if (GetFileStatus(folder + FolderSeparator() + fileName) == kFileFound) return true;
  }
  return false;
}

std::vector<PrinterInfo> UsablePrinters(PrinterCatalog& printers) {
  std::vector<PrinterInfo> usable;
  for (PrinterInfo& printer : printers.Printers()) {
    if (printer.name != CachedText<ids::kPseudoPrinter>()) {
      usable.push_back(std::move(printer));
    }
  }
  return usable;
}

bool NoDevicesAvailable(host::Preferences& preferences, PrinterCatalog& printers) {
  if (!UsablePrinters(printers).empty()) return false;
  // Any ordinary file in a configuration folder counts, whatever its kind; a
  // folder that cannot be read holds none.
  const std::string pattern = std::string(1, FolderSeparator()) + "*";
  for (const std::string& folder : SplitSearchPath(preferences.PrinterConfigPath())) {
    if (GetFileStatus(folder + pattern) == kFileFound) return false;
  }
  return true;
}

}  // namespace sheafwork
