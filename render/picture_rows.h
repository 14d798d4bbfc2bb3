#pragma once

#include <cstdint>
#include <vector>

#include "pixels/image.h"
#include "render/resampling.h"

namespace render {

/// A camera picture mirrored, stretched to a canvas and dimmed, row by row from the top.
/// The same on every instruction set.
class PictureRows {
 public:
  /// `width`, `height`: of the canvas in device pixels, > 0; `dim`: 0 to 1. Only the canvas's first
  /// `columns` of `rows` are wanted.
  PictureRows(const pixels::Image& picture, double width, double height, double dim, int columns,
              int rows);

  /// Pixels of a row.
  int width() const { return across_.length(); }

  /// Writes row `y`, opaque BGRA.
  void fetch(int y, std::uint8_t* pixels);

 private:
  const std::int16_t* stretched(int pictureRow);
  void stretchByPairs(const std::uint8_t* source, std::int16_t* row) const;
  void stretchByTaps(const std::uint8_t* source, std::int16_t* row) const;

  pixels::Image picture_;
  Resampling across_;
  Resampling down_;
  std::int16_t light_;
  // For two taps, as when a picture grows: the weights of the left and of the right pixel for each
  // channel but the fourth.
  std::vector<std::int16_t> leftWeights_;
  std::vector<std::int16_t> rightWeights_;
  // The picture's rows at full width, 0 to 255 in 1/128, as many as a row of the canvas takes.
  std::vector<std::vector<std::int16_t>> rows_;
  std::vector<int> rowNumbers_;
  std::vector<const std::int16_t*> rowsWanted_;
};

}  // namespace render
