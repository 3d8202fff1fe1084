#pragma once
// Printers and fonts of the test's choosing in place of the system's.

#include <string_view>
#include <vector>

#include "platform/fonts.h"
#include "platform/printers.h"

namespace sheafwork::testing {

class ListedPrinters : public PrinterCatalog {
 public:
  std::vector<PrinterInfo> Printers() override { return printers; }
  std::vector<PrinterInfo> printers;
};

/// Every font file asked for is there.
class AllFonts : public FontFolders {
 public:
  bool HasFontFile(std::string_view) override { return true; }
};

}  // namespace sheafwork::testing
