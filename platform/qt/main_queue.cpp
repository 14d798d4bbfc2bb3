#include "platform/qt/main_queue.h"

#include <utility>

namespace platform::qt {

void MainQueue::post(std::function<void()> work) {
  QMetaObject::invokeMethod(&context_, std::move(work), Qt::QueuedConnection);
}

}  // namespace platform::qt
