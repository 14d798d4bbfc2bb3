#include "platform/gstreamer/return_watch.h"

#include <algorithm>

namespace platform::gstreamer {

void ReturnWatch::lose(bool connected) {
  lost_ = true;
  wait_ = 0;
  if (!connected) return;
  wait_ = kFirstWait;
  for (int i = 0; i < failures_ && wait_ < kLongestWait; ++i) wait_ *= 2;
  wait_ = std::min(wait_, kLongestWait);
  ++failures_;
}

bool ReturnWatch::look(bool connected) {
  if (!lost_) return false;
  if (!connected) {
    // Whatever is connected next has just come.
    wait_ = 0;
    failures_ = 0;
    return false;
  }
  if (wait_ > 0) {
    --wait_;
    return false;
  }
  lost_ = false;
  return true;
}

}  // namespace platform::gstreamer
