#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace render {

/// The largest value of the masks that are blurred.
inline constexpr std::int16_t kGlowFull = 16383;

/// A Gaussian of integer weights, cut where it no longer counts and corrected so that its spread
/// is exact nevertheless.
class GaussianKernel {
 public:
  /// `sigma` in cells, > 0.
  explicit GaussianKernel(double sigma);

  /// Cells to each side.
  int radius() const { return static_cast<int>(weights_.size()) - 1; }
  /// Of the cell `distance` away, in 1/32768.
  std::int16_t weight(int distance) const { return weights_[static_cast<std::size_t>(distance)]; }

 private:
  std::vector<std::int16_t> weights_;
};

/// A mask of cells, 0 to kGlowFull, with zeroes around it so that a blur may read past its sides.
class GlowMask {
 public:
  /// All zero. `margin`: readable cells to the left and right of each row.
  void reset(int width, int height, int margin);

  int width() const { return width_; }
  int height() const { return height_; }
  /// Readable cells to the left and right of each row.
  int margin() const { return margin_; }
  std::size_t bytesHeld() const { return cells_.capacity() * sizeof(std::int16_t); }
  /// Cells from one row to the next.
  int stride() const { return stride_; }
  std::int16_t* row(int y) { return cells_.data() + offset(y); }
  const std::int16_t* row(int y) const { return cells_.data() + offset(y); }

 private:
  std::size_t offset(int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(stride_) +
           static_cast<std::size_t>(margin_);
  }

  std::vector<std::int16_t> cells_;
  int width_ = 0;
  int height_ = 0;
  int margin_ = 0;
  int stride_ = 0;
};

/// The margin a mask needs for a blur with `kernel`.
int blurMargin(const GaussianKernel& kernel);

/// Blurs `mask`, all zero but for the rows from `first` up to `end`, in place, in both directions;
/// `scratch` is any mask, its contents are lost. What lies outside the mask counts as zero.
void blur(GlowMask& mask, int first, int end, const GaussianKernel& kernel, GlowMask& scratch);

/// Each cell of `half` becomes the mean of two by two cells of `mask`.
void halve(const GlowMask& mask, GlowMask& half);

}  // namespace render
