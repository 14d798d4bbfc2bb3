#include "capture/busy_flag.h"

namespace capture {

bool BusyFlag::tryClaim() {
  const std::lock_guard guard(lock_);
  if (busy_) return false;
  busy_ = true;
  return true;
}

void BusyFlag::release() {
  const std::lock_guard guard(lock_);
  busy_ = false;
}

}  // namespace capture
