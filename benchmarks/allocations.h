#pragma once

#include <cstddef>

namespace bench {

/// All bytes that this program has ever asked for with new.
std::size_t allocatedBytes();

/// How often it has asked.
std::size_t allocationCount();

}  // namespace bench
