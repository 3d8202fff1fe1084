#include "text/decimal.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace sheafwork {

void AppendDecimal(std::string& out, double value, int decimals) {
  if (!std::isfinite(value)) {
    out += '0';
    return;
  }
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed,
                                    std::clamp(decimals, 0, 10));
  if (result.ec != std::errc()) {  // far beyond any page: written whole
    AppendInteger(out, value < 0 ? INT64_MIN : INT64_MAX);
    return;
  }
  char* end = result.ptr;
  if (std::find(buffer, end, '.') != end) {
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
  }
  if (end - buffer == 2 && buffer[0] == '-' && buffer[1] == '0') {
    out += '0';
    return;
  }
  out.append(buffer, end);
}

}  // namespace sheafwork
