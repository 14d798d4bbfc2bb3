#include "render/spline.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/spline.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using D = hn::CappedTag<std::int16_t, 32>;

/// shares[k]: the weights of cell k for all 64 pixels.
template <int kCellPx>
void expandBy(const std::int16_t* cells, std::ptrdiff_t stride, int rows,
              const std::int16_t (*shares)[PaintTile::kSide],
              std::int16_t (*pixels)[PaintTile::kSide], std::uint8_t* isDark) {
  const D d;
  constexpr int kHalf = PaintTile::kSide / 2, kLanes = hn::MaxLanes(D());
  for (int y = 0; y < rows; ++y, cells += stride) {
    isDark[y] = 0;
    for (int left = 0; left < PaintTile::kSide; left += kHalf) {
      std::uint64_t any = 0;
      for (int k = left / kCellPx; k <= (left + kHalf - 1) / kCellPx + 4; k += 4) {
        std::uint64_t four = 0;
        std::memcpy(&four, cells + k, sizeof four);
        any |= four;
      }
      if (any == 0) isDark[y] |= left == 0 ? 1 : 2;
      for (int x = left; x < left + kHalf; x += static_cast<int>(hn::Lanes(d))) {
        auto sum = hn::Zero(d);
        // So many cells whatever x is, that the compiler may unroll it.
        constexpr int kTaps = (kLanes - 1) / kCellPx + 5;
        const int first = x / kCellPx;
        for (int k = first; any != 0 && k < first + kTaps; ++k)
          sum = hn::Add(sum, hn::MulFixedPoint15(hn::Set(d, cells[k]), hn::Load(d, shares[k] + x)));
        hn::Store(sum, d, pixels[y] + x);
      }
    }
  }
}

void expand(const std::int16_t* cells, std::ptrdiff_t stride, int rows, int cellPx,
            const std::int16_t (*shares)[PaintTile::kSide],
            std::int16_t (*pixels)[PaintTile::kSide], std::uint8_t* isDark) {
  const auto expandRows = cellPx == 2    ? expandBy<2>
                          : cellPx == 4  ? expandBy<4>
                          : cellPx == 8  ? expandBy<8>
                          : cellPx == 16 ? expandBy<16>
                          : cellPx == 32 ? expandBy<32>
                                         : expandBy<64>;
  expandRows(cells, stride, rows, shares, pixels, isDark);
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

void expandCells(const std::int16_t* cells, std::ptrdiff_t stride, int rows, int cellPx,
                 std::int16_t (*pixels)[PaintTile::kSide], std::uint8_t* isDark) {
  HWY_DYNAMIC_DISPATCH(expand)
  (cells, stride, rows, cellPx, cellShares(cellPx).of, pixels, isDark);
}

}  // namespace render
#endif
