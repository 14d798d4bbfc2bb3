#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "render/curve_piece.h"
#include "render/pixel_rect.h"

namespace render {

/// Which pieces of a stroke paint in which tile of the canvas.
class PieceIndex {
 public:
  /// Finds the tiles that are reached. `bounds`: the pixels that count; `reach`: how far the
  /// stroke's light reaches beyond its paint.
  void findReached(std::span<const CurvePiece> pieces, const PixelRect& bounds, double reach);

  /// Sorts the same pieces into those tiles, for piecesIn().
  void sortPieces(std::span<const CurvePiece> pieces);

  /// The tiles around the bounds.
  const PixelRect& tiles() const { return tiles_; }

  /// Whether any light can fall into the tile.
  bool isReached(int tileX, int tileY) const {
    const bool isWithin = tileX >= tiles_.left && tileX < tiles_.right && tileY >= tiles_.top &&
                          tileY < tiles_.bottom;
    return isWithin && reached_[slot(tileX, tileY)] != 0;
  }

  std::size_t bytesHeld() const {
    return reached_.capacity() + (starts_.capacity() + numbers_.capacity()) * sizeof(int);
  }

  /// The numbers of the pieces whose paint, or its border, can be in the tile.
  std::span<const int> piecesIn(int tileX, int tileY) const;

 private:
  std::size_t slot(int tileX, int tileY) const {
    return static_cast<std::size_t>(tileY - tiles_.top) * static_cast<std::size_t>(tiles_.width()) +
           static_cast<std::size_t>(tileX - tiles_.left);
  }

  PixelRect tiles_;  // In tiles.
  std::vector<std::uint8_t> reached_;
  std::vector<int> starts_;  // Into numbers_, one for each tile and one for the end.
  std::vector<int> numbers_;
};

}  // namespace render
