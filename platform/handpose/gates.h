#pragma once

#include "pixels/image.h"
#include "platform/handpose/hand_vision.h"

namespace platform::handpose {

/// Whether a reading is to be believed, of a hand that is followed already.
bool keepsOn(const HandReading& reading, const pixels::Image& picture);

/// The same of a new hand: a stricter question, because most of a room is not a hand.
bool isNewHand(const HandReading& reading, const pixels::Image& picture);

}  // namespace platform::handpose
