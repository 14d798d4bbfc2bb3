#include "render/glow_blur.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/glow_blur.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using D = hn::CappedTag<std::int16_t, 32>;

/// out[x] = the sum over k of (before[k][x] + after[k][x]) * weights[k], k = 0 counting once.
void weighRows(const std::int16_t* const* before, const std::int16_t* const* after,
               const std::int16_t* weights, int radius, int width, std::int16_t* out) {
  const D d;
  for (int x = 0; x < width; x += static_cast<int>(hn::Lanes(d))) {
    auto sum = hn::MulFixedPoint15(hn::LoadU(d, before[0] + x), hn::Set(d, weights[0]));
    for (int k = 1; k <= radius; ++k) {
      const auto pair = hn::Add(hn::LoadU(d, before[k] + x), hn::LoadU(d, after[k] + x));
      sum = hn::Add(sum, hn::MulFixedPoint15(pair, hn::Set(d, weights[k])));
    }
    // Rounding can lift a fully painted neighbourhood above full.
    hn::StoreU(hn::Min(sum, hn::Set(d, kGlowFull)), d, out + x);
  }
}

/// Four neighbouring cells to one; `width`: of the result.
void halveRow(const std::int16_t* above, const std::int16_t* below, int width,
              std::int16_t* result) {
  int done = 0;
#if HWY_TARGET != HWY_SCALAR
  const hn::CappedTag<std::uint32_t, 16> pairs;
  const hn::Repartition<std::int16_t, decltype(pairs)> cells;
  const hn::RebindToSigned<decltype(pairs)> sums;
  const hn::Rebind<std::int16_t, decltype(sums)> halves;
  const int together = static_cast<int>(hn::Lanes(pairs));
  for (int x = 0; width >= together && x < width; x += together) {
    x = std::min(x, width - together);  // The last ones are done once more.
    // Two cells of at most kGlowFull each do not overflow.
    const auto column = hn::BitCast(
        pairs, hn::Add(hn::LoadU(cells, above + 2 * x), hn::LoadU(cells, below + 2 * x)));
    const auto sum = hn::Add(hn::And(column, hn::Set(pairs, 0xFFFFu)), hn::ShiftRight<16>(column));
    const auto mean = hn::ShiftRight<2>(hn::Add(sum, hn::Set(pairs, 2u)));
    hn::StoreU(hn::DemoteTo(halves, hn::BitCast(sums, mean)), halves, result + x);
    done = x + together;
  }
#endif
  for (int x = done; x < width; ++x)
    result[x] = static_cast<std::int16_t>(
        (above[2 * x] + above[2 * x + 1] + below[2 * x] + below[2 * x + 1] + 2) >> 2);
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(weighRows);
HWY_EXPORT(halveRow);

namespace {

constexpr double kCutSigmas = 3.25;
constexpr int kMostLanes = 32;

double varianceOf(double sigma, int radius) {
  double sum = 1, spread = 0;
  for (int k = 1; k <= radius; ++k) {
    const double w = std::exp(-0.5 * k * k / (sigma * sigma));
    sum += 2 * w;
    spread += 2 * w * k * k;
  }
  return spread / sum;
}

/// The width of the bell whose cut, sampled form has the spread of an uncut one of `sigma`.
double widthFor(double sigma, int radius) {
  double low = sigma * 0.5, high = sigma * 1.5;
  for (int i = 0; i < 40; ++i) {
    const double mid = (low + high) / 2;
    (varianceOf(mid, radius) < sigma * sigma ? low : high) = mid;
  }
  return low;
}

}  // namespace

GaussianKernel::GaussianKernel(double sigma) {
  const int radius = std::max(1, static_cast<int>(std::ceil(kCutSigmas * sigma)));
  const double width = widthFor(sigma, radius);
  std::vector<double> bell;
  double sum = 0;
  for (int k = 0; k <= radius; ++k) {
    bell.push_back(std::exp(-0.5 * k * k / (width * width)));
    sum += (k == 0 ? 1 : 2) * bell.back();
  }
  int rest = 32768;
  for (int k = radius; k >= 1; --k) {
    const auto weight =
        static_cast<int>(std::lround(bell[static_cast<std::size_t>(k)] / sum * 32768));
    bell[static_cast<std::size_t>(k)] = weight;
    rest -= 2 * weight;
  }
  bell[0] = std::min(rest, 32767);
  for (const double weight : bell) weights_.push_back(static_cast<std::int16_t>(weight));
}

void GlowMask::reset(int width, int height, int margin) {
  width_ = width;
  height_ = height;
  margin_ = margin;
  stride_ = width + 2 * margin;
  cells_.assign(static_cast<std::size_t>(stride_) * static_cast<std::size_t>(height), 0);
}

int blurMargin(const GaussianKernel& kernel) {
  return kernel.radius() + kMostLanes;
}

void blur(GlowMask& mask, int first, int end, const GaussianKernel& kernel, GlowMask& scratch) {
  const int radius = kernel.radius();
  const auto taps = static_cast<std::size_t>(radius) + 1;
  const int width = mask.width(), height = mask.height();
  scratch.reset(width, height, blurMargin(kernel));
  std::vector<std::int16_t> weights(taps);
  for (int k = 0; k <= radius; ++k) weights[static_cast<std::size_t>(k)] = kernel.weight(k);
  std::vector<const std::int16_t*> before(taps), after(taps);
  std::vector<std::int16_t> nothing(static_cast<std::size_t>(width + kMostLanes));
  std::vector<std::int16_t> out(nothing.size());
  for (int y = first; y < end; ++y) {
    for (int k = 0; k <= radius; ++k) {
      before[static_cast<std::size_t>(k)] = mask.row(y) - k;
      after[static_cast<std::size_t>(k)] = mask.row(y) + k;
    }
    HWY_DYNAMIC_DISPATCH(weighRows)
    (before.data(), after.data(), weights.data(), radius, width, out.data());
    std::copy_n(out.begin(), width, scratch.row(y));
  }
  for (int y = std::max(first - radius, 0); y < std::min(end + radius, height); ++y) {
    for (int k = 0; k <= radius; ++k) {
      before[static_cast<std::size_t>(k)] = y - k >= 0 ? scratch.row(y - k) : nothing.data();
      after[static_cast<std::size_t>(k)] = y + k < height ? scratch.row(y + k) : nothing.data();
    }
    HWY_DYNAMIC_DISPATCH(weighRows)
    (before.data(), after.data(), weights.data(), radius, width, out.data());
    std::copy_n(out.begin(), width, mask.row(y));
  }
}

void halve(const GlowMask& mask, GlowMask& half) {
  const auto halveOne = HWY_DYNAMIC_DISPATCH(halveRow);
  for (int y = 0; y < half.height(); ++y)
    halveOne(mask.row(2 * y), mask.row(2 * y + 1), half.width(), half.row(y));
}

}  // namespace render
#endif
