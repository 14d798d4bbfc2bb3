#include "render/glow_layer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>
#include <utility>

#include "hwy/cache_control.h"
#include "render/spline.h"
#include "render/strip_painting.h"

namespace render {

namespace {

constexpr int kTile = PaintTile::kSide;
// In sigmas; splines between coarser samples of a Gaussian would show.
constexpr double kCoarsest = 0.67;
// A border's antialiasing is painted this far outside of the stroke, in pixels.
constexpr int kPaintMarginPx = 2;
// More cells than are wanted that expandCells() reads.
constexpr int kReadBeyond = 5;
constexpr std::uint8_t kBothHalves = 3;

int cellFor(double sigma) {
  int cell = 1;
  while (cell < kTile && 2 * cell <= kCoarsest * sigma) cell *= 2;
  return cell;
}

/// What is left to blur when painting the mask in cells, drawing splines between them and one
/// pixel's own width are taken off.
double sigmaInCells(double sigma, int cell) {
  const double c2 = static_cast<double>(cell) * cell;
  const double filters = cell == 1 ? 0 : c2 / 12 + c2 / 3 - 1.0 / 12;
  return std::max(std::sqrt(std::max(sigma * sigma - filters, 0.0) / c2), 0.05);
}

/// The kernel for `sigma` cells. Strokes in a row want the same two.
const GaussianKernel& kernelFor(double sigma) {
  struct Kept {
    double sigma = 0;
    std::optional<GaussianKernel> kernel;
  };
  thread_local Kept kept[2];
  thread_local int oldest = 0;
  for (const Kept& known : kept) {
    if (known.kernel && known.sigma == sigma) return *known.kernel;
  }
  Kept& place = kept[oldest];
  oldest = 1 - oldest;
  place = {sigma, GaussianKernel(sigma)};
  return *place.kernel;
}

int floorDiv(int a, int b) {
  return a >= 0 ? a / b : -((-a + b - 1) / b);
}

/// The cells that hold these pixels.
PixelRect cellsAround(const PixelRect& pixels, int cell) {
  if (pixels.isEmpty()) return {};
  return {floorDiv(pixels.left, cell), floorDiv(pixels.top, cell),
          floorDiv(pixels.right - 1, cell) + 1, floorDiv(pixels.bottom - 1, cell) + 1};
}

}  // namespace

double GlowLayer::reach(double sigma) {
  const int cell = cellFor(sigma);
  return (kernelFor(sigmaInCells(sigma, cell)).radius() + 3) * cell;
}

/// Makes room for the glow of a stroke that paints within `paint`, all dark.
void GlowLayer::start(const PixelRect& paint, double sigma, const PixelRect& area) {
  cellPx_ = cellFor(sigma);
  const GaussianKernel& kernel = kernelFor(sigmaInCells(sigma, cellPx_));
  const int reachPx = (kernel.radius() + 3) * cellPx_;
  mask_.reset(0, 0, 0);
  const PixelRect box = paint.grownBy(reachPx).intersected(area.grownBy(reachPx));
  if (paint.isEmpty() || box.isEmpty()) return;
  const PixelRect cells = cellsAround(box, cellPx_);
  left_ = cells.left;
  top_ = cells.top;
  mask_.reset(cells.width(), cells.height(), blurMargin(kernel));
}

/// Takes in the stroke, painted in cells of this size from cell (left, top) on, and blurs it.
void GlowLayer::takeIn(const GlowMask& painted, int left, int top, double sigma) {
  const PixelRect common =
      PixelRect{left, top, left + painted.width(), top + painted.height()}.intersected(
          {left_, top_, left_ + mask_.width(), top_ + mask_.height()});
  if (common.isEmpty()) return;
  for (int y = common.top; y < common.bottom; ++y) {
    std::copy_n(painted.row(y - top) + common.left - left, common.width(),
                mask_.row(y - top_) + common.left - left_);
  }
  thread_local GlowMask scratch;
  blur(mask_, common.top - top_, common.bottom - top_, kernelFor(sigmaInCells(sigma, cellPx_)),
       scratch);
}

void buildGlows(std::span<const CurvePiece> pieces, std::span<const Strip> strips, double wideSigma,
                double narrowSigma, const PixelRect& area, GlowLayer& wide, GlowLayer& narrow) {
  PixelRect paint;
  for (const CurvePiece& piece : pieces) paint = paint.united(piece.box(kPaintMarginPx));
  wide.start(paint, wideSigma, area);
  narrow.start(paint, narrowSigma, area);
  if (wide.mask_.height() == 0) return;

  // Cells that are halved until they are the wide glow's must start where those do.
  const int cell = wide.cellPx_, fineCell = narrow.cellPx_;
  const auto reachPx = static_cast<int>(GlowLayer::reach(wideSigma));
  const PixelRect cells = cellsAround(paint.intersected(area.grownBy(reachPx)), cell);
  if (cells.isEmpty()) return;
  thread_local GlowMask painted, halved;
  int scale = cell / fineCell;  // Painted cells along the side of a wide glow's cell.
  painted.reset(scale * cells.width(), scale * cells.height(), CellMask::kPaintedTogether);
  const CellMask target{painted.row(0),  painted.stride(), scale * cells.left, scale * cells.top,
                        painted.width(), painted.height(), kGlowFull};
  paintPieces(strips, static_cast<float>(fineCell), target, nullptr);
  narrow.takeIn(painted, scale * cells.left, scale * cells.top, narrowSigma);
  while (scale > 1) {
    scale /= 2;
    halved.reset(scale * cells.width(), scale * cells.height(), CellMask::kPaintedTogether);
    halve(painted, halved);
    std::swap(painted, halved);
  }
  wide.takeIn(painted, cells.left, cells.top, wideSigma);
}

void GlowLayer::prefetch(int tileX, int tileY) const {
  const int cells = kTile / cellPx_;
  const int x = std::clamp(tileX * cells - 2 - left_, 0, std::max(mask_.width() - 1, 0));
  const int first = std::clamp(tileY * cells - 2 - top_, 0, mask_.height());
  const int end = std::clamp(tileY * cells + cells + 2 - top_, first, mask_.height());
  for (int y = first; y < end; ++y) hwy::Prefetch(mask_.row(y) + x);
}

/// Expands a row of cells some of which, or of those that are read with them, the mask has not.
void GlowTile::expandEdge(const GlowLayer& layer, int firstCell, int firstRow, int row) {
  const GlowMask& mask = layer.mask_;
  const int count = kTile / layer.cellPx_ + 4;
  std::int16_t cells[kTile + 2 * kReadBeyond] = {};
  const int from = std::clamp(-firstCell, 0, count);
  const int to = std::clamp(mask.width() - firstCell, from, count);
  const std::int16_t* source = mask.row(firstRow + row) + firstCell;
  std::copy(source + from, source + to, cells + from);
  expandCells(cells, 0, 1, layer.cellPx_, rows_ + row, isDark_ + row);
}

/// Where every cell is a pixel.
void GlowTile::copyRow(const GlowLayer& layer, int firstCell, int firstRow, int row) {
  const GlowMask& mask = layer.mask_;
  const int from = std::clamp(-firstCell, 0, kTile);
  const int to = std::clamp(mask.width() - firstCell, from, kTile);
  std::fill_n(rows_[row], kTile, std::int16_t{0});
  const std::int16_t* source = mask.row(firstRow + row) + firstCell;
  std::copy(source + from, source + to, rows_[row] + from);
  isDark_[row] = 0;
}

GlowRows GlowTile::open(const GlowLayer& layer, int tileX, int tileY) {
  const GlowMask& mask = layer.mask_;
  const int cells = kTile / layer.cellPx_, count = cells + 4;
  const int firstRow = tileY * cells - 2 - layer.top_;
  const bool isFine = layer.cellPx_ == 1;
  const int firstCell = tileX * cells - (isFine ? 0 : 2) - layer.left_;
  // The rows of the mask among those wanted; the others are dark.
  const int from = std::clamp(-firstRow, 0, count);
  const int to = std::clamp(mask.height() - firstRow, from, count);
  for (int row = 0; row < count; ++row) {
    if (row >= from && row < to) continue;
    std::fill_n(rows_[row], kTile, std::int16_t{0});
    isDark_[row] = kBothHalves;
  }
  const bool isInside = -firstCell <= mask.margin() &&
                        firstCell + count + kReadBeyond <= mask.width() + mask.margin();
  if (isInside && !isFine && from < to) {
    expandCells(mask.row(firstRow + from) + firstCell, mask.stride(), to - from, layer.cellPx_,
                rows_ + from, isDark_ + from);
  } else {
    for (int row = from; row < to; ++row) {
      isFine ? copyRow(layer, firstCell, firstRow, row)
             : expandEdge(layer, firstCell, firstRow, row);
    }
  }
  // Without splines between them, rows of cells are rows of pixels.
  static constexpr SplineWeights kItself{{0, 32767, 0, 0}};
  return {rows_, isDark_, isFine ? &kItself : &splineWeights(layer.cellPx_, 0),
          std::countr_zero(static_cast<unsigned>(layer.cellPx_))};
}

}  // namespace render
