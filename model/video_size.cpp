#include "model/video_size.h"

#include <cmath>

#include "model/whole_number.h"

namespace model {

int videoHeight(double canvasAspect) {
  const auto nearest = static_cast<int>(wholeNumber(std::round(kVideoWidth / canvasAspect)));
  return nearest + nearest % 2;
}

}  // namespace model
