#pragma once

#include "platform/clock.h"

namespace platform {

/// The machine's monotonic clock.
class UptimeClock final : public Clock {
 public:
  double now() const override;
};

}  // namespace platform
