#include "platform/std/thread_queue_factory.h"

#include "platform/std/thread_queue.h"

namespace platform {

std::unique_ptr<SerialQueue> ThreadQueueFactory::make(const std::string& label) {
  return std::make_unique<ThreadQueue>(label);
}

}  // namespace platform
