#include "render/spline.h"

#include <array>
#include <bit>
#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/spline.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using D = hn::CappedTag<std::int16_t, 32>;

/// shares[k]: the weights of cell k for all 64 pixels.
void expand(const std::int16_t* cells, int cellPx, const std::int16_t (*shares)[PaintTile::kSide],
            std::int16_t* pixels) {
  const D d;
  const int lanes = static_cast<int>(hn::Lanes(d));
  for (int x = 0; x < PaintTile::kSide; x += lanes) {
    auto sum = hn::Zero(d);
    const int last = (x + lanes - 1) / cellPx + 4;
    for (int k = x / cellPx; k <= last; ++k)
      sum = hn::Add(sum, hn::MulFixedPoint15(hn::Set(d, cells[k]), hn::Load(d, shares[k] + x)));
    hn::Store(sum, d, pixels + x);
  }
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(expand);

namespace {

/// Of a cubic B-spline, `t` of the way from the second to the third of four cells.
SplineWeights weightsAt(double t) {
  const double shares[4] = {(1 - t) * (1 - t) * (1 - t) / 6, (3 * t * t * t - 6 * t * t + 4) / 6,
                            (-3 * t * t * t + 3 * t * t + 3 * t + 1) / 6, t * t * t / 6};
  SplineWeights result{};
  int rest = 32768;
  for (int i = 0; i < 4; ++i) {
    result.weight[i] = static_cast<std::int16_t>(std::lround(shares[i] * 32768));
    rest -= result.weight[i];
  }
  result.weight[1] = static_cast<std::int16_t>(result.weight[1] + rest);
  return result;
}

/// Cells of 2, 4, 8 ... pixels one after the other: cell c starts at c - 2.
std::array<SplineWeights, 126> allWeights() {
  std::array<SplineWeights, 126> all{};
  for (int cell = 2; cell <= PaintTile::kSide; cell *= 2) {
    for (int i = 0; i < cell; ++i) {
      const double fromCentre = (i + 0.5) / cell - 0.5;
      all[static_cast<std::size_t>(cell - 2 + i)] =
          weightsAt(fromCentre < 0 ? fromCentre + 1 : fromCentre);
    }
  }
  return all;
}

/// For each cell of a tile's row, two before and two after it: its weight for each pixel.
struct CellShares {
  alignas(64) std::int16_t of[PaintTile::kSide / 2 + 4][PaintTile::kSide];
};

CellShares sharesOf(int cellPx) {
  CellShares shares{};
  for (int x = 0; x < PaintTile::kSide; ++x) {
    const int first = x / cellPx + 2 + firstSplineCell(cellPx, x % cellPx);
    for (int k = 0; k < 4; ++k)
      shares.of[first + k][x] = splineWeights(cellPx, x % cellPx).weight[k];
  }
  return shares;
}

/// For cells of 2, 4, 8 ... 64 pixels.
const CellShares& cellShares(int cellPx) {
  static const std::array<CellShares, 6> all{sharesOf(2),  sharesOf(4),  sharesOf(8),
                                             sharesOf(16), sharesOf(32), sharesOf(64)};
  return all[static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(cellPx)) - 1)];
}

}  // namespace

const SplineWeights& splineWeights(int cellPx, int i) {
  static const std::array<SplineWeights, 126> all = allWeights();
  return all[static_cast<std::size_t>(cellPx - 2 + i)];
}

void expandCells(const std::int16_t* cells, int cellPx, std::int16_t* pixels) {
  HWY_DYNAMIC_DISPATCH(expand)(cells, cellPx, cellShares(cellPx).of, pixels);
}

}  // namespace render
#endif
