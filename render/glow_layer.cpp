#include "render/glow_layer.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "render/compositing.h"
#include "render/distance_field.h"

namespace render {

namespace {

constexpr int kTile = PaintTile::kSide;
// A straight line between samples of a Gaussian this far apart is off by less than a third of a
// grey level.
constexpr double kCoarsest = 0.3;

int cellFor(double sigma) {
  int cell = 1;
  while (cell < kTile && 2 * cell <= kCoarsest * sigma) cell *= 2;
  return cell;
}

/// What is left to blur when painting the mask in cells, drawing it between their centres and one
/// pixel's own width are taken off.
double sigmaInCells(double sigma, int cell) {
  const double c2 = static_cast<double>(cell) * cell;
  const double filters = cell == 1 ? 0 : c2 / 12 + c2 / 6 - 1.0 / 12;
  return std::max(std::sqrt(std::max(sigma * sigma - filters, 0.0) / c2), 0.05);
}

int floorDiv(int a, int b) {
  return a >= 0 ? a / b : -((-a + b - 1) / b);
}

PixelRect boxOf(const CurvePiece& p, double margin) {
  const auto [left, right] = std::minmax({p.x0, p.x1, p.x2});
  const auto [top, bottom] = std::minmax({p.y0, p.y1, p.y2});
  const double m = p.bodyHalf + margin;
  return {static_cast<int>(std::floor(left - m)), static_cast<int>(std::floor(top - m)),
          static_cast<int>(std::ceil(right + m)), static_cast<int>(std::ceil(bottom + m))};
}

}  // namespace

double GlowLayer::reach(double sigma) {
  const int cell = cellFor(sigma);
  return (GaussianKernel(sigmaInCells(sigma, cell)).radius() + 2) * cell;
}

void GlowLayer::build(std::span<const CurvePiece> pieces, double sigma, const PixelRect& area) {
  cellPx_ = cellFor(sigma);
  const GaussianKernel kernel(sigmaInCells(sigma, cellPx_));
  const int reachPx = (kernel.radius() + 2) * cellPx_;
  PixelRect box;
  for (const CurvePiece& piece : pieces) box = box.united(boxOf(piece, reachPx));
  box = box.intersected(area.grownBy(reachPx));
  left_ = top_ = 0;
  mask_.reset(0, 0, 0);
  if (box.isEmpty()) return;
  left_ = floorDiv(box.left, cellPx_);
  top_ = floorDiv(box.top, cellPx_);
  const int right = floorDiv(box.right - 1, cellPx_) + 1;
  const int bottom = floorDiv(box.bottom - 1, cellPx_) + 1;
  mask_.reset(right - left_, bottom - top_, blurMargin(kernel));
  paintMask(pieces);
  blur(mask_, kernel, scratch_);
}

void GlowLayer::paintMask(std::span<const CurvePiece> pieces) {
  constexpr int kBlock = DistanceField::kSide;
  const auto field = std::make_unique<DistanceField>();
  std::int16_t values[kBlock];
  for (int y0 = 0; y0 < mask_.height(); y0 += kBlock) {
    for (int x0 = 0; x0 < mask_.width(); x0 += kBlock) {
      const int leftPx = (left_ + x0) * cellPx_, topPx = (top_ + y0) * cellPx_;
      const PixelRect block{leftPx, topPx, leftPx + kBlock * cellPx_, topPx + kBlock * cellPx_};
      field->reset(leftPx, topPx, cellPx_, false);
      for (const CurvePiece& piece : pieces) {
        if (!boxOf(piece, cellPx_).intersected(block).isEmpty()) field->spread(piece);
      }
      const int count = std::min(kBlock, mask_.width() - x0);
      const int end = std::min(field->endRow(), mask_.height() - y0);
      for (int y = field->firstRow(); y < end; ++y) {
        field->bodyCoverage(y, kGlowFull, values);
        std::copy_n(values, count, mask_.row(y0 + y) + x0);
      }
    }
  }
}

void GlowLayer::expandRow(int cellY, int firstCellX, std::int16_t* values) const {
  const int y = cellY - top_;
  if (y < 0 || y >= mask_.height()) {
    std::fill_n(values, kTile, std::int16_t{0});
    return;
  }
  const std::int16_t* row = mask_.row(y);
  const auto cellAt = [&](int cellX) {
    const int x = cellX - left_;
    return x < 0 || x >= mask_.width() ? 0 : row[x];
  };
  if (cellPx_ == 1) {
    for (int i = 0; i < kTile; ++i) values[i] = static_cast<std::int16_t>(cellAt(firstCellX + i));
    return;
  }
  // From each cell's centre to the next one's.
  int before = cellAt(firstCellX - 1);
  for (int cell = 0, x = -cellPx_ / 2; x < kTile; ++cell, x += cellPx_) {
    const int after = cellAt(firstCellX + cell);
    for (int i = 0; i < cellPx_; ++i) {
      if (x + i < 0 || x + i >= kTile) continue;
      const int way = (after - before) * (2 * i + 1);
      values[x + i] = static_cast<std::int16_t>(before + way / (2 * cellPx_));
    }
    before = after;
  }
}

bool GlowLayer::openTile(int tileX, int tileY) {
  const int cells = kTile / cellPx_;
  const int firstX = tileX * cells, firstY = tileY * cells;
  const bool apart = firstX > left_ + mask_.width() || firstX + cells < left_ ||
                     firstY > top_ + mask_.height() || firstY + cells < top_;
  if (apart || mask_.width() == 0) return false;
  for (int i = 0; i < cells + 2; ++i) expandRow(firstY - 1 + i, firstX, rows_[i]);
  return true;
}

void GlowLayer::rowOfTile(int y, std::int16_t* values) const {
  if (cellPx_ == 1) {
    std::copy_n(rows_[y + 1], kTile, values);
    return;
  }
  const int fromFirstCentre = 2 * y + 1 + cellPx_;  // In half pixels, from the row above's centre.
  const int above = fromFirstCentre / (2 * cellPx_);
  const int way = fromFirstCentre % (2 * cellPx_);
  mixRows(rows_[above], rows_[above + 1], static_cast<std::int16_t>(way * (16384 / cellPx_)),
          values);
}

}  // namespace render
