#pragma once

#include <gst/gst.h>

#include <memory>
#include <string>

#include "platform/gstreamer/gst_handle.h"

namespace platform::gstreamer {

/// A camera that is or was connected. Copies stand for the same one.
class Camera {
 public:
  explicit Camera(Handle<GstDevice> device) : device_(std::move(device)) {}

  std::string displayName() const;
  /// What it delivers.
  Handle<GstCaps> formats() const;
  /// A new source element for it, owned by the caller; null when its plug-in is missing.
  GstElement* makeSource() const;
  /// Whether both are the same connection; a camera that was unplugged comes back as another.
  bool is(const GstDevice* device) const { return device_.get() == device; }

 private:
  std::shared_ptr<GstDevice> device_;
};

}  // namespace platform::gstreamer
