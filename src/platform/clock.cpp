#include "platform/clock.h"

#include <ctime>

namespace sheafwork {

LocalTime LocalTimeNow() {
  const std::time_t now = std::time(nullptr);
  // localtime_r, unlike localtime, need not look at TZ again; a change of
  // zone during a long run should still show in the journal.
  std::tm parts{};
#ifdef _WIN32
  if (localtime_s(&parts, &now) != 0) return {};
#else
  tzset();
  if (!localtime_r(&now, &parts)) return {};
#endif
  LocalTime t;
  t.year = parts.tm_year + 1900;
  t.month = parts.tm_mon + 1;
  t.day = parts.tm_mday;
  t.hour = parts.tm_hour;
  t.minute = parts.tm_min;
  // A leap second reads as :60; the rest of the program counts 0 to 59.
  t.second = parts.tm_sec > 59 ? 59 : parts.tm_sec;
  return t;
}

}  // namespace sheafwork
