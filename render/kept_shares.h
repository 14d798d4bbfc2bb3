#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "render/compositing.h"
#include "render/paint_tile.h"

namespace render {

/// What a stroke does to one tile, kept for all the frames in which it fades: then it only has to
/// be faded, coloured and laid. Holds the painted rows of each half of the tile.
class KeptShares {
 public:
  void keep(const StrokeShares& shares);

  /// Lays the stroke, fading by `alpha`, 0 to 1, over what is painted in the tile.
  void lay(const StrokeColors& colors, double alpha, PaintTile& tile) const;

  std::size_t bytesHeld() const { return rows_.capacity() * sizeof(Row); }

 private:
  struct alignas(64) Row {
    std::int16_t share[StrokeShares::kHalf];
  };
  struct Rows {
    std::uint8_t first = 0;
    std::uint8_t end = 0;
    std::uint16_t start = 0;  // Of the first, in rows_.
  };

  std::vector<Row> rows_;
  Rows body_[2];
  Rows core_[2];
};

}  // namespace render
