#pragma once

#include <opencv2/core.hpp>

#include "pixels/image.h"
#include "platform/handpose/hand_crop.h"
#include "platform/handpose/letterbox.h"

namespace platform::handpose {

/// What a network sees of a hand: `pixels` x `pixels` of BGRA (the fourth byte means nothing).
/// Beyond the picture its border is repeated. Reads only the part of the picture it needs.
cv::Mat sample(const pixels::Image& picture, const HandCrop& crop, int pixels);

/// What a network of `width` x `height` pixels sees of a region of the picture, put in as Letterbox
/// says; grey where there is no picture. BGRA.
cv::Mat sample(const pixels::Image& picture, const Region& region, int width, int height);

}  // namespace platform::handpose
