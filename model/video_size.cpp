#include "model/video_size.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "model/whole_number.h"

namespace model {

int videoHeight(double canvasAspect) {
  const std::int64_t nearest = wholeNumber(std::round(kVideoWidth / canvasAspect));
  if (nearest < 0 || nearest >= std::numeric_limits<int>::max()) std::abort();
  return static_cast<int>(nearest + nearest % 2);
}

}  // namespace model
