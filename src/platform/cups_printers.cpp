#include <cups/cups.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/device_uri.h"
#include "platform/printers.h"
#include "platform/shared_library.h"

namespace sheafwork {

namespace {

bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool IsSchemeChar(char c) {
  return IsAsciiLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

// RFC 3986: ALPHA *( ALPHA / DIGIT / "+" / "-" / "." )
bool IsScheme(std::string_view s) {
  if (s.empty() || !IsAsciiLetter(s.front())) return false;
  for (char c : s) {
    if (!IsSchemeChar(c)) return false;
  }
  return true;
}

// libcups is opened the first time printers are listed, not when the
// program starts: it brings TLS, Kerberos and service discovery with it,
// which cost every run a few milliseconds (a fifth of a small plot) even
// when nothing prints. It stays open for the rest of the program.
struct CupsLibrary {
  decltype(&cupsGetDests) getDests = nullptr;
  decltype(&cupsFreeDests) freeDests = nullptr;
  decltype(&cupsGetOption) getOption = nullptr;

  bool Usable() const { return getDests && freeDests && getOption; }
};

const CupsLibrary& Cups() {
  static const CupsLibrary cups = [] {
    CupsLibrary found;
    void* library = OpenSharedLibrary("libcups.so.2");
    if (library == nullptr) return found;  // no CUPS here: no printers
    FindFunction(library, "cupsGetDests", found.getDests);
    FindFunction(library, "cupsFreeDests", found.freeDests);
    FindFunction(library, "cupsGetOption", found.getOption);
    return found;
  }();
  return cups;
}

// cupsFreeDests needs the count along with the array.
struct DestsDeleter {
  int count = 0;
  void operator()(cups_dest_t* dests) const { Cups().freeDests(count, dests); }
};
using DestsPtr = std::unique_ptr<cups_dest_t, DestsDeleter>;

std::string Option(const cups_dest_t& dest, const char* name) {
  const char* value = Cups().getOption(name, dest.num_options, dest.options);
  return value ? value : "";
}

class CupsPrinterCatalog final : public PrinterCatalog {
 public:
  std::vector<PrinterInfo> Printers() override {
    // When the scheduler does not answer, cupsGetDests returns no
    // destination and leaves the reason in cupsLastError; it writes nothing
    // to stderr, so there is nothing to report here.
    std::vector<PrinterInfo> printers;
    if (!Cups().Usable()) return printers;
    cups_dest_t* raw = nullptr;
    const int count = Cups().getDests(&raw);
    const DestsPtr dests(raw, DestsDeleter{count});
    if (!dests || count <= 0) return printers;
    printers.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
      const cups_dest_t& dest = dests.get()[i];
      if (!dest.name) continue;
      PrinterInfo info;
      info.name = dest.name;
      if (dest.instance && *dest.instance) {
        info.name += '/';
        info.name += dest.instance;
      }
      info.driver = Option(dest, "printer-make-and-model");
      info.port = StripUserInfo(Option(dest, "device-uri"));
      printers.push_back(std::move(info));
    }
    return printers;
  }
};

}  // namespace

std::string StripUserInfo(std::string_view uri) {
  const auto colon = uri.find(':');
  if (colon == std::string_view::npos || !IsScheme(uri.substr(0, colon)) ||
      uri.substr(colon + 1, 2) != "//") {
    return std::string(uri);
  }
  const auto authorityStart = colon + 3;
  auto authorityEnd = uri.find_first_of("/?#", authorityStart);
  if (authorityEnd == std::string_view::npos) authorityEnd = uri.size();
  const auto at = uri.substr(authorityStart, authorityEnd - authorityStart).rfind('@');
  if (at == std::string_view::npos) return std::string(uri);
  std::string stripped(uri.substr(0, authorityStart));
  stripped += uri.substr(authorityStart + at + 1);
  return stripped;
}

std::unique_ptr<PrinterCatalog> SystemPrinterCatalog() {
  return std::make_unique<CupsPrinterCatalog>();
}

}  // namespace sheafwork
