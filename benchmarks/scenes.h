#pragma once

#include "pixels/image.h"
#include "pixels/size.h"
#include "render/render_scene.h"

namespace bench {

/// A painting to measure with: strokes wander over the canvas like a hand does, wide and narrow, in
/// all colours. The same numbers always give the same painting.
render::RenderScene painting(int strokes, int pointsPerStroke, bool glow);

/// A camera picture of 1280 x 720 with something to see everywhere.
pixels::Image cameraPicture();

/// A camera picture in which no pixel has to do with any other.
pixels::Image noisyPicture(int seed);

inline constexpr pixels::Size k720p{1280, 720};
inline constexpr pixels::Size k1080p{1920, 1080};
inline constexpr pixels::Size k2160p{3840, 2160};

}  // namespace bench
