#pragma once
// The local date and time, to the second.

#include <functional>

namespace sheafwork {

struct LocalTime {
  int year = 0;
  int month = 0;  ///< 1 to 12
  int day = 0;    ///< 1 to 31
  int hour = 0;   ///< 0 to 23
  int minute = 0;
  int second = 0;
};

/// Where a run takes the time from; tests set their own.
using Clock = std::function<LocalTime()>;

/// The system's local time now.
LocalTime LocalTimeNow();

}  // namespace sheafwork
