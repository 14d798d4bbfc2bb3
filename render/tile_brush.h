#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "render/compositing.h"
#include "render/glow_layer.h"
#include "render/paint_tile.h"
#include "render/stroke_shape.h"
#include "render/tile_coverage.h"

namespace render {

/// The sharp masks of a stroke in a tile, kept because painting them takes longest.
class KeptMasks {
 public:
  bool isEmpty() const { return !isThere_; }
  /// A copy; no core where `masks` has none.
  void keep(const SharpMasks& masks);
  SharpMasks masks() const;
  std::size_t bytesHeld() const { return rows_.capacity() * sizeof(Row); }

 private:
  struct alignas(64) Row {
    std::int16_t share[PaintTile::kSide];
  };

  std::vector<Row> rows_;  // The body's, then the core's.
  int firstRow_ = 0;
  int endRow_ = 0;
  bool hasCore_ = false;
  bool isThere_ = false;
};

/// Lays strokes over tiles. Holds nothing but room to work in; one for each thread.
class TileBrush {
 public:
  /// Lays the part of `shape` that falls into tile (tileX, tileY), fading by `alpha`, 0 to 1, over
  /// what is painted there. `kept`: the masks from the last time, if they are there; then they are.
  void lay(const StrokeShape& shape, const StrokeColors& colors, double alpha, int tileX, int tileY,
           PaintTile& tile, KeptMasks* kept = nullptr);

 private:
  SharpMasks sharpMasks(const StrokeShape& shape, int tileX, int tileY, KeptMasks* kept);

  GlowTile wide_;
  GlowTile narrow_;
  TileCoverage coverage_;
};

}  // namespace render
