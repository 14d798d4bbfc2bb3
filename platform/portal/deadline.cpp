#include "platform/portal/deadline.h"

#include <condition_variable>
#include <mutex>
#include <stop_token>

namespace platform::portal {

Deadline::Deadline(GCancellable* other, std::chrono::milliseconds patience)
    : cancellable_(g_cancellable_new()), other_(other) {
  const auto follow = +[](GCancellable*, GCancellable* ours) { g_cancellable_cancel(ours); };
  connection_ = g_cancellable_connect(other_, G_CALLBACK(follow), cancellable_.get(), nullptr);
  timer_ = std::jthread([this, patience](const std::stop_token& stop) {
    std::mutex waiting;
    std::condition_variable_any wake;
    std::unique_lock wait(waiting);
    wake.wait_for(wait, stop, patience, [] { return false; });
    if (!stop.stop_requested()) g_cancellable_cancel(cancellable_.get());
  });
}

Deadline::~Deadline() {
  g_cancellable_disconnect(other_, connection_);
}

}  // namespace platform::portal
