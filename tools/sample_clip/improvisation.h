#pragma once

#include <cstdint>

#include "tools/sample_clip/performance.h"

namespace sample_clip {

/// Somebody paints for about `seconds`: words, shapes and dots in their own hand, at their own
/// distance; changes the colour; moves the open hand about, and the other one for other reasons.
Performance improvise(std::uint64_t seed, double seconds);

}  // namespace sample_clip
