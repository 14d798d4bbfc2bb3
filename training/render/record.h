#pragma once

#include <cstdint>
#include <ostream>
#include <vector>

namespace training::render {

/// One hand of a picture; `rendered.py` reads the same layout (little-endian, no padding).
struct HandLabel {
  float valid = 0;           ///< 1 a hand to find, 0.5 hardly to be seen, 0 none.
  float right = 0;           ///< 1 right hand, 0 left hand.
  float joints[21][2] = {};  ///< Pixels, y down; the first pixel's centre is 0.5.
  float visible[21] =
      {};  ///< 1 seen, 0.5 behind the same hand, 0 behind something else or outside.
};
static_assert(sizeof(HandLabel) == 65 * sizeof(float));

/// A picture with its labels.
struct Record {
  std::vector<uint8_t> pixels;  ///< Premultiplied BGRA; alpha is what was rendered.
  HandLabel hands[2];           ///< In crops the one in the middle first.
  float gesture = -1;
};

inline void write(const Record& record, std::ostream& out) {
  out.write(reinterpret_cast<const char*>(record.pixels.data()),
            static_cast<std::streamsize>(record.pixels.size()));
  out.write(reinterpret_cast<const char*>(record.hands), sizeof record.hands);
  out.write(reinterpret_cast<const char*>(&record.gesture), sizeof record.gesture);
}

}  // namespace training::render
