#pragma once

#include "platform/clock.h"

namespace support {

/// A clock that stands still until a test sets it.
class FakeClock final : public platform::Clock {
 public:
  double now() const override { return now_; }
  void set(double now) { now_ = now; }
  void advance(double seconds) { now_ += seconds; }

 private:
  double now_ = 100;
};

}  // namespace support
