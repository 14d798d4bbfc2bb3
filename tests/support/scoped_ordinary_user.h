#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

namespace support {

/// Permissions do not hold the superuser back: acts as nobody until the end of the scope.
class ScopedOrdinaryUser {
 public:
  ScopedOrdinaryUser() {
    if (geteuid() == 0) wasRoot_ = seteuid(65534) == 0;
  }
  ~ScopedOrdinaryUser() {
    if (wasRoot_) {
      EXPECT_EQ(seteuid(0), 0);
    }
  }
  ScopedOrdinaryUser(const ScopedOrdinaryUser&) = delete;
  ScopedOrdinaryUser& operator=(const ScopedOrdinaryUser&) = delete;

 private:
  bool wasRoot_ = false;
};

}  // namespace support
