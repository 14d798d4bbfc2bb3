#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "pixels/image.h"
#include "render/resampling.h"

namespace render {

/// A camera picture mirrored, stretched to a canvas and dimmed, row by row from the top.
/// The same on every instruction set.
class PictureRows {
 public:
  /// For pictures of `pictureWidth` by `pictureHeight` pixels. `width`, `height`: of the canvas in
  /// device pixels, > 0. Only the canvas's first `columns` of `rows` are wanted.
  PictureRows(int pictureWidth, int pictureHeight, double width, double height, int columns,
              int rows);

  /// The picture to fetch rows of, and its dimming, 0 to 1.
  void show(const pixels::Image& picture, double dim);

  /// Whether pictures of this size on such a canvas are what these rows are for.
  bool isFor(const pixels::Image& picture, double width, double height, int columns,
             int rows) const;

  /// Writes the pixels from `left` up to `right` of row `y`, opaque BGRA. Cheapest when `y` grows.
  void fetch(int y, int left, int right, std::uint8_t* pixels);

 private:
  const std::int16_t* stretched(int pictureRow);

  int pictureWidth_, pictureHeight_;
  double width_, height_;
  Resampling across_;
  Resampling down_;
  std::optional<pixels::Image> picture_;
  int light_ = 0;  // What dimming leaves, of 32768.
  // For two taps, as when a picture grows: the right pixel's weight, for each channel.
  std::vector<std::int16_t> rightWeights_;
  // The picture's rows at full width, 0 to 255 in 1/128, as many as a row of the canvas takes.
  std::vector<std::vector<std::int16_t>> rows_;
  std::vector<int> rowNumbers_;
  std::vector<const std::int16_t*> rowsWanted_;
  std::vector<std::int16_t> weightsWanted_;
};

}  // namespace render
