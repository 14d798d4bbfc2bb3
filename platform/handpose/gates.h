#pragma once

#include "pixels/image.h"
#include "platform/handpose/hand_vision.h"

namespace platform::handpose {

/// How good a reading is, 0 to 1: how surely there is a hand, and how surely its joints lie there.
double scoreOf(const HandReading& reading);

/// Whether both networks together are as sure as it takes to call something a hand. `found`: the
/// candidate's score; `read`: the reading's.
bool agreeOnHand(double found, double read);

/// Whether a reading is to be believed, of a hand that is followed already.
bool keepsOn(const HandReading& reading, const pixels::Image& picture);

/// The same of a new hand: a stricter question, because most of a room is not a hand. Both networks
/// must agree: `candidate` made one look, `reading` is what was seen there.
bool isNewHand(const HandCandidate& candidate, const HandReading& reading,
               const pixels::Image& picture);

}  // namespace platform::handpose
