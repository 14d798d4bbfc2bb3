#pragma once

#include <gst/gst.h>

#include "pixels/pixel_buffer.h"
#include "platform/gstreamer/gst_handle.h"

namespace platform::gstreamer {

enum class SampleMemory {
  ours,      ///< Made by a converter; the frame shares it.
  borrowed,  ///< The camera needs it back; the frame is a copy.
};

/// The frame in a BGRA sample; without an image when the sample cannot be read. `time` becomes the
/// frame's.
pixels::PixelBuffer frameOf(Handle<GstSample> sample, SampleMemory memory, double time);

}  // namespace platform::gstreamer
