#pragma once

#include "pixels/surface.h"

namespace sample_clip {

/// The empty room: a wall with light from the right, a window, a shelf with books.
pixels::Surface room(int width, int height);

/// Puts a picture with premultiplied transparency over `ground`, which is as large.
void putOver(const pixels::Surface& picture, pixels::Surface& ground);

}  // namespace sample_clip
