#pragma once

#include <QObject>

#include "platform/main_queue.h"

namespace platform::qt {

/// The event loop of the thread that makes this, which is the main thread.
class MainQueue final : public platform::MainQueue {
 public:
  void post(std::function<void()> work) override;

 private:
  QObject context_;  // Takes the work still waiting with it when it goes.
};

}  // namespace platform::qt
