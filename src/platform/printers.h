#pragma once
// The printers the operating system knows.

#include <memory>
#include <string>
#include <vector>

namespace sheafwork {

/// One installed printer: the device name the system reports, its driver
/// (on CUPS the make and model) and its port (on CUPS the device URI, without
/// any user name or password in it).
struct PrinterInfo {
  std::string name;
  std::string driver;
  std::string port;
};

class PrinterCatalog {
 public:
  virtual ~PrinterCatalog() = default;
  /// The installed printers, in the order the system reports them; empty when
  /// the system has none or its print service does not answer.
  virtual std::vector<PrinterInfo> Printers() = 0;
};

/// The system's own catalogue (CUPS on POSIX).
std::unique_ptr<PrinterCatalog> SystemPrinterCatalog();

}  // namespace sheafwork
