#pragma once
// Numbers written into files that are read by machines (PDF page content,
// HP-GL/2 plots): as short as they can be, in the C locale whatever the
// user's.

#include <charconv>
#include <cstdint>
#include <string>

namespace sheafwork {

/// Appends `value` in decimal.
inline void AppendInteger(std::string& out, std::int64_t value) {
  char buffer[24];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
  out.append(buffer, end);
}

/// Appends `value` with at most `decimals` (0 to 10) digits after the point,
/// trailing zeros left out ("0.5", "12", never "-0"); 0 for a value that is
/// not finite, the largest integer of its sign for one too large to write.
void AppendDecimal(std::string& out, double value, int decimals);

}  // namespace sheafwork
