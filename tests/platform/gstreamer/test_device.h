#pragma once

#include <gst/gst.h>

#include <string>

#include "platform/gstreamer/camera.h"

namespace platform::gstreamer {

/// How a device introduces itself; what is empty it leaves out.
struct Introduction {
  std::string name;  ///< Also its source, in GStreamer's notation.
  std::string path = {};
  std::string role = {};
  std::string priority = {};
};

/// A camera that is no hardware, as a floating reference. `formats`: in GStreamer's notation.
GstDevice* newTestDevice(const Introduction& introduction, const char* formats);

/// The same, for whoever needs no GstDevice. `source`: in GStreamer's notation.
Camera testCamera(const std::string& source, const char* formats);

}  // namespace platform::gstreamer
