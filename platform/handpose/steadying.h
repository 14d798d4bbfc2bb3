#pragma once

#include "platform/handpose/landmarks.h"

namespace platform::handpose {

/// The joints of a hand that is followed: what was known of them and what is seen now. A joint that
/// is seen surely is where it is seen, at once. An unsure one goes only part of the way from where
/// it was on the hand, which itself moves freely, and what was sure is not doubted at once: else
/// one bad look would part a pinch. A hand that is elsewhere is begun anew.
Landmarks steadied(const Landmarks& before, const Landmarks& seen);

}  // namespace platform::handpose
