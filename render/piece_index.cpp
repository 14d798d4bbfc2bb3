#include "render/piece_index.h"

#include <algorithm>

#include "render/paint_tile.h"

namespace render {

namespace {

// A pixel that the border crosses has its centre no farther outside the paint.
constexpr double kBorderPx = 1;

template <typename Visit>
void forEachTile(const PixelRect& tiles, Visit visit) {
  for (int y = tiles.top; y < tiles.bottom; ++y) {
    for (int x = tiles.left; x < tiles.right; ++x) visit(x, y);
  }
}

}  // namespace

void PieceIndex::findReached(std::span<const CurvePiece> pieces, const PixelRect& bounds,
                             double reach) {
  tiles_ = tilesAround(bounds);
  reached_.assign(
      static_cast<std::size_t>(tiles_.width()) * static_cast<std::size_t>(tiles_.height()), 0);
  PixelRect before;
  for (const CurvePiece& piece : pieces) {
    const PixelRect reached = tilesAround(piece.box(reach)).intersected(tiles_);
    if (reached == before) continue;  // Pieces are much shorter than tiles.
    before = reached;
    forEachTile(reached, [&](int x, int y) { reached_[slot(x, y)] = 1; });
  }
}

void PieceIndex::sortPieces(std::span<const CurvePiece> pieces) {
  starts_.assign(reached_.size() + 1, 0);
  for (const CurvePiece& piece : pieces) {
    forEachTile(tilesAround(piece.box(kBorderPx)).intersected(tiles_),
                [&](int x, int y) { ++starts_[slot(x, y)]; });
  }
  // From counts to the ends of each tile's share, which the filling below moves to their starts.
  int end = 0;
  for (int& start : starts_) start = end += start;
  numbers_.resize(static_cast<std::size_t>(end));
  for (std::size_t i = pieces.size(); i-- > 0;) {
    forEachTile(tilesAround(pieces[i].box(kBorderPx)).intersected(tiles_), [&](int x, int y) {
      numbers_[static_cast<std::size_t>(--starts_[slot(x, y)])] = static_cast<int>(i);
    });
  }
}

std::span<const int> PieceIndex::piecesIn(int tileX, int tileY) const {
  const auto first = static_cast<std::size_t>(starts_[slot(tileX, tileY)]);
  const auto end = static_cast<std::size_t>(starts_[slot(tileX, tileY) + 1]);
  return std::span(numbers_).subspan(first, end - first);
}

}  // namespace render
