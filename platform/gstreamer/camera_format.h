#pragma once

#include <gst/gst.h>

#include "platform/gstreamer/gst_handle.h"

namespace platform::gstreamer {

/// What a camera should be asked for, given what it offers.
namespace CameraFormat {

/// Whether the camera has pictures of that size which we can read.
bool offers(const GstCaps* offered, int width, int height);

/// The format that comes nearest to 30 pictures a second: of exactly 1280x720 with
/// `highDefinition`, otherwise in the camera's first readable entry the size nearest to that. At
/// the same rate raw pictures win over JPEG ones, and earlier entries over later ones. Null when
/// nothing is readable.
Handle<GstCaps> choose(const GstCaps* offered, bool highDefinition);

/// Whether pictures of this format have to be decoded first.
bool isJpeg(const GstCaps* format);

}  // namespace CameraFormat

}  // namespace platform::gstreamer
