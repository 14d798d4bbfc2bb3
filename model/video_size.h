#pragma once

namespace model {

/// Pixels across every video.
inline constexpr int kVideoWidth = 1280;

/// The height of a video of a canvas of this aspect (width divided by height): the nearest whole
/// number, the next higher one when that is odd, because the format knows no odd heights.
int videoHeight(double canvasAspect);

}  // namespace model
