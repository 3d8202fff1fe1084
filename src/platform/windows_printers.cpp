// The installed printers as Windows lists them (EnumPrinters, level 2:
// printer name, driver name, port name).
#include "platform/printers.h"

#include <windows.h>
#include <winspool.h>

#include "platform/windows_text.h"

namespace sheafwork {

namespace {

class WindowsPrinterCatalog final : public PrinterCatalog {
 public:
  std::vector<PrinterInfo> Printers() override {
    constexpr DWORD kFlags = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
    DWORD needed = 0;
    DWORD count = 0;
    EnumPrintersW(kFlags, nullptr, 2, nullptr, 0, &needed, &count);
    std::vector<PrinterInfo> printers;
    if (needed == 0) return printers;
    // PRINTER_INFO_2 records followed by their strings, aligned for the records.
    std::vector<PRINTER_INFO_2W> buffer(needed / sizeof(PRINTER_INFO_2W) + 1);
    if (!EnumPrintersW(kFlags, nullptr, 2, reinterpret_cast<BYTE*>(buffer.data()),
                       static_cast<DWORD>(buffer.size() * sizeof(PRINTER_INFO_2W)), &needed,
                       &count)) {
      return printers;
    }
    for (DWORD i = 0; i < count; ++i) {
      const PRINTER_INFO_2W& p = buffer[i];
      printers.push_back(
          {Utf8FromWide(p.pPrinterName), Utf8FromWide(p.pDriverName), Utf8FromWide(p.pPortName)});
    }
    return printers;
  }
};

}  // namespace

std::unique_ptr<PrinterCatalog> SystemPrinterCatalog() {
  return std::make_unique<WindowsPrinterCatalog>();
}

}  // namespace sheafwork
