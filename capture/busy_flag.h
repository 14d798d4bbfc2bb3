#pragma once

#include <mutex>

namespace capture {

/// Lets one frame at a time into the analysis of hands. Any thread.
class BusyFlag {
 public:
  /// True when the flag was free and is now the caller's, who releases it.
  bool tryClaim();
  void release();

 private:
  std::mutex lock_;
  bool busy_ = false;
};

}  // namespace capture
