#pragma once

#include "platform/serial_queue.h"

namespace platform {

/// Makes serial queues with a thread each.
class ThreadQueueFactory final : public SerialQueueFactory {
 public:
  std::unique_ptr<SerialQueue> make(const std::string& label) override;
};

}  // namespace platform
