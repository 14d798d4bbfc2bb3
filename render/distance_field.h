#pragma once

#include "render/local_piece.h"

namespace render {

/// A square of 64 x 64 cells that knows, for each cell's centre, how deep it lies inside a stroke:
/// half the width minus the distance to the centre line, in cells, the deepest of all pieces spread
/// so far. The same on every instruction set, bit for bit.
class DistanceField {
 public:
  /// Cells from one row to the next.
  static constexpr int stride() { return kStride; }

  static constexpr int kSide = 64;
  /// A border cell (0.71 of its centre) and its neighbours.
  static constexpr float kDepthKept = 1.75f;

  /// Starts over with every cell outside. `left`, `top`: the first cell, counted in cells from the
  /// canvas's top left corner; `withCore`: keep the depths inside the light core as well.
  void reset(int left, int top, bool withCore);

  /// Takes in one piece, round ends included, given in cells of this field's step.
  void spread(const LocalPiece& piece);

  /// The rows that a piece has reached; nothing is painted in the others.
  int firstRow() const { return firstRow_; }
  int endRow() const { return endRow_; }

  /// The depths of row `y`, in [firstRow(), endRow()): exact within kDepthKept of the border, at
  /// least that far to the right side of it elsewhere.
  const float* bodyRow(int y) const { return body_ + place(y); }
  const float* coreRow(int y) const { return core_ + place(y); }

  /// Makes the cells around the field, one row or column beyond each side, continue it as planes
  /// would. They may be read then.
  void continueOutwards();

 private:
  static constexpr int kPad = 16;  // Cells beside each row, so that rows stay aligned.
  static constexpr int kStride = kSide + 2 * kPad;
  static constexpr int kCells = kStride * (kSide + 2);
  static int place(int y) { return (y + 1) * kStride + kPad; }

  void openRows(int first, int end);
  void continueOutwards(float* depths) const;

  alignas(64) float body_[kCells];
  alignas(64) float core_[kCells];
  int left_ = 0;
  int top_ = 0;
  bool withCore_ = false;
  int firstRow_ = 0;
  int endRow_ = 0;
};

}  // namespace render
