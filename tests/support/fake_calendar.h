#pragma once

#include <ctime>

#include "platform/calendar.h"

namespace support {

/// Always the 3rd of February 2026, 07:08:09.
class FakeCalendar final : public platform::Calendar {
 public:
  std::tm localTime() const override {
    std::tm time{};
    time.tm_year = 126;  // Since 1900.
    time.tm_mon = 1;     // Since January.
    time.tm_mday = 3;
    time.tm_hour = 7;
    time.tm_min = 8;
    time.tm_sec = 9;
    return time;
  }
};

}  // namespace support
