#pragma once

#include "platform/calendar.h"

namespace platform {

/// The machine's clock in the time zone of the session.
class SystemCalendar final : public Calendar {
 public:
  std::tm localTime() const override;
};

}  // namespace platform
