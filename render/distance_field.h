#pragma once

#include <cstdint>

#include "render/curve_piece.h"

namespace render {

/// A square of 64 x 64 cells that knows, for each cell's centre, how deep it lies inside a stroke:
/// half the width minus the distance to the centre line, in cells, the deepest of all pieces spread
/// so far. The same on every instruction set, bit for bit.
class DistanceField {
 public:
  static constexpr int kSide = 64;

  /// Starts over with every cell outside. `left`, `top`: the first cell's corner in device pixels;
  /// `step`: device pixels per cell; `withCore`: keep the depths inside the light core as well.
  void reset(double left, double top, double step, bool withCore);

  /// Takes in one piece, round ends included.
  void spread(const CurvePiece& piece);

  /// The rows that a piece has reached; nothing is painted in the others.
  int firstRow() const { return firstRow_; }
  int endRow() const { return endRow_; }

  /// The share of each of the row's 64 cells that is painted, by a filter one cell wide, from 0 to
  /// `full`. `y` in [firstRow(), endRow()).
  void bodyCoverage(int y, std::int16_t full, std::int16_t* coverage) const;
  void coreCoverage(int y, std::int16_t full, std::int16_t* coverage) const;

 private:
  void openRows(int first, int end);

  alignas(64) float body_[kSide * kSide];
  alignas(64) float core_[kSide * kSide];
  double left_ = 0;
  double top_ = 0;
  double step_ = 1;
  bool withCore_ = false;
  int firstRow_ = 0;
  int endRow_ = 0;
};

}  // namespace render
