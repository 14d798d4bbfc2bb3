#pragma once

#include <functional>

namespace platform {

/// Tells when the person comes back to the program. Main thread only.
class Activation {
 public:
  virtual ~Activation() = default;
  /// Calls `handler` each time that the program becomes the active one; replaces what was set
  /// before, an empty one ends it.
  virtual void setOnBecameActive(std::function<void()> handler) = 0;
};

}  // namespace platform
