#pragma once

#include <functional>
#include <utility>

#include "platform/activation.h"

namespace support {

/// The person comes back to the program when the test says so.
class FakeActivation final : public platform::Activation {
 public:
  void setOnBecameActive(std::function<void()> handler) override { handler_ = std::move(handler); }
  void becomeActive() {
    if (handler_) handler_();
  }

 private:
  std::function<void()> handler_;
};

}  // namespace support
