#include "model/whole_number.h"

#include <cstdlib>

namespace model {

std::int64_t wholeNumber(double value) {
  constexpr double kEnd = 9223372036854775808.0;  // 2 to the power of 63.
  if (!(value >= -kEnd && value < kEnd)) std::abort();
  return static_cast<std::int64_t>(value);
}

}  // namespace model
