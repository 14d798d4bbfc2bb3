#pragma once

#include <cstdint>

namespace model {

/// `value` without its fraction. Ends the program when that is no number of 64 bits, which no
/// arithmetic of ours yields unless it is broken.
std::int64_t wholeNumber(double value);

}  // namespace model
