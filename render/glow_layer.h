#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "render/curve_piece.h"
#include "render/glow_blur.h"
#include "render/paint_tile.h"
#include "render/pixel_rect.h"
#include "render/spline.h"
#include "render/strip.h"

namespace render {

/// The blurred mask of a stroke at a reduced resolution: as coarse as a Gaussian of its width can
/// be and still be interpolated unseen, with cubic B-splines. A pixel's value does not depend on
/// the area that was asked for.
class GlowLayer {
 public:
  /// How far the glow of `sigma` pixels reaches beyond the stroke's edge, in pixels.
  static double reach(double sigma);

  /// Brings a tile's cells near the processor, ahead of opening it.
  void prefetch(int tileX, int tileY) const;

  std::size_t bytesHeld() const { return mask_.bytesHeld(); }

 private:
  friend class GlowTile;
  friend void buildGlows(std::span<const CurvePiece>, std::span<const Strip>, double, double,
                         const PixelRect&, GlowLayer&, GlowLayer&);

  void start(const PixelRect& paint, double sigma, const PixelRect& area);
  void takeIn(const GlowMask& painted, int left, int top, double sigma);

  int cellPx_ = 1;  // A power of two, at most a tile's side.
  int left_ = 0;    // Of the mask's first cell, in cells.
  int top_ = 0;
  GlowMask mask_;
};

/// Blurs the stroke made of `pieces`, the same as `strips`, by two Gaussians of these sigmas, in
/// pixels, > 0; right for every pixel of `area`. Both come from one painting of the stroke.
void buildGlows(std::span<const CurvePiece> pieces, std::span<const Strip> strips, double wideSigma,
                double narrowSigma, const PixelRect& area, GlowLayer& wide, GlowLayer& narrow);

/// The glow of a tile: rows of cells at full width. A row of pixels lies between four of them.
struct GlowRows {
  const std::int16_t (*rows)[PaintTile::kSide];  ///< From two cells above the tile.
  const std::uint8_t* isDark;                    ///< For each row, as expandCells() says.
  const SplineWeights* weights;                  ///< For each row of pixels in a cell.
  int cellShift;                                 ///< A cell is 1 << cellShift pixels high.
};

/// Room for the glow of one tile.
class GlowTile {
 public:
  /// The glow in a tile; valid until the next one is opened.
  GlowRows open(const GlowLayer& layer, int tileX, int tileY);

 private:
  void expandEdge(const GlowLayer& layer, int firstCell, int firstRow, int row);
  void copyRow(const GlowLayer& layer, int firstCell, int firstRow, int row);

  alignas(64) std::int16_t rows_[PaintTile::kSide + 4][PaintTile::kSide];
  std::uint8_t isDark_[PaintTile::kSide + 4];
};

}  // namespace render
