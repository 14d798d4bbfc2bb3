#include "render/sampled_share.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/sampled_share.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"
#include "render/strip_distance-inl.h"

#ifndef RENDER_SAMPLED_SHARE_COMMON
#define RENDER_SAMPLED_SHARE_COMMON
namespace render {

// Along each side of a pixel.
inline constexpr int kSamplesAlong = 4;
inline constexpr int kSamples = kSamplesAlong * kSamplesAlong;
// Boxes that are looked at together at most.
inline constexpr int kMostBoxes = 16;

}  // namespace render
#endif

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

constexpr float kNowhere = -1e9f;

/// How deep the samples, `qx` and `qy` from the strip's start, lie between its borders.
template <bool kBent>
HWY_INLINE Floats depthBeside(const Strip& p, float half, Floats qx, Floats qy) {
  const F f;
  const Floats alongX = hn::Set(f, p.alongX), alongY = hn::Set(f, p.alongY);
  const Floats s = hn::Add(hn::Mul(qx, alongX), hn::Mul(qy, alongY));
  const Floats v = hn::Sub(hn::Mul(qy, alongX), hn::Mul(qx, alongY));
  const ByStrip place = byStrip<kBent>(p, cosineOfTilt(p), s, v);
  const Floats depth = hn::Sub(hn::Set(f, half), sunkDistance(place, 0.5f / half));
  return hn::IfThenElse(place.counts, depth, hn::Set(f, kNowhere));
}

HWY_INLINE Floats depthInDisc(float half, Floats qx, Floats qy) {
  return hn::Sub(hn::Set(F(), half), hn::Sqrt(hn::Add(hn::Mul(qx, qx), hn::Mul(qy, qy))));
}

/// How deep the samples lie inside the strip, round ends included.
HWY_INLINE Floats depthIn(const Strip& p, float half, Floats x, Floats y) {
  const F f;
  const Floats qx = hn::Sub(x, hn::Set(f, p.startX)), qy = hn::Sub(y, hn::Set(f, p.startY));
  Floats depth = hn::Set(f, kNowhere);
  if (p.length > 0)
    depth = p.bend == 0 ? depthBeside<false>(p, half, qx, qy) : depthBeside<true>(p, half, qx, qy);
  if (p.startsRound) depth = hn::Max(depth, depthInDisc(half, qx, qy));
  if (!p.endsRound || p.length == 0) return depth;
  const Floats toEndX = hn::Sub(x, hn::Set(f, p.endX)), toEndY = hn::Sub(y, hn::Set(f, p.endY));
  return hn::Max(depth, depthInDisc(half, toEndX, toEndY));
}

/// Of the boxes from `first` on, as many as a vector has lanes: those that hold (x, y), the first
/// in the lowest bit.
HWY_INLINE std::uint32_t boxesAround(const SampledStrips::Lists& lists, std::size_t first, Floats x,
                                     Floats y) {
  const F f;
  const auto isWithin = [f, first](const std::vector<float>& low, const std::vector<float>& high,
                                   Floats at) {
    return hn::And(hn::Ge(at, hn::LoadU(f, low.data() + first)),
                   hn::Le(at, hn::LoadU(f, high.data() + first)));
  };
  const auto holds =
      hn::And(isWithin(lists.left, lists.right, x), isWithin(lists.top, lists.bottom, y));
  if (hn::AllFalse(f, holds)) return 0;
  std::uint8_t bytes[8] = {};
  hn::StoreMaskBits(f, holds, bytes);
  std::uint32_t bits = 0;
  std::memcpy(&bits, bytes, sizeof bits);
  return bits;
}

int sumOfSamples(const SampledStrips::Lists& lists, int column, int row, bool ofCore,
                 std::int16_t full) {
  const F f;
  const hn::Rebind<std::int32_t, F> i32;
  const int lanes = static_cast<int>(hn::Lanes(f));
  const float centreX = static_cast<float>(column), centreY = static_cast<float>(row);
  alignas(64) float xs[kSamples], ys[kSamples], depths[kSamples];
  alignas(64) std::int32_t shares[kSamples];
  for (int i = 0; i < kSamples; ++i) {
    const auto fromCentre = [](int k) {
      return (static_cast<float>(k) + 0.5f) / kSamplesAlong - 0.5f;
    };
    xs[i] = centreX + fromCentre(i % kSamplesAlong);
    ys[i] = centreY + fromCentre(i / kSamplesAlong);
    depths[i] = kNowhere;
  }
  const auto spread = [&](const Strip& p) {
    const float half = ofCore ? p.coreHalf : p.bodyHalf;
    for (int i = 0; i < kSamples; i += lanes) {
      const Floats depth = depthIn(p, half, hn::Load(f, xs + i), hn::Load(f, ys + i));
      hn::Store(hn::Max(hn::Load(f, depths + i), depth), f, depths + i);
    }
  };
  const Floats x = hn::Set(f, centreX), y = hn::Set(f, centreY);
  for (std::size_t k = 0; k < lists.strips.size(); k += static_cast<std::size_t>(lanes)) {
    for (std::uint32_t near = boxesAround(lists, k, x, y); near != 0; near &= near - 1)
      spread(lists.strips[k + static_cast<std::size_t>(std::countr_zero(near))]);
  }
  const Floats half = hn::Set(f, 0.5f), most = hn::Set(f, static_cast<float>(full));
  for (int i = 0; i < kSamples; i += lanes) {
    // A border is as soft as a sample is wide.
    const Floats inSamples = hn::Mul(hn::Load(f, depths + i), hn::Set(f, kSamplesAlong));
    const Floats depth = hn::Add(inSamples, half);
    const Floats share = hn::Min(hn::Max(depth, hn::Zero(f)), hn::Set(f, 1.0f));
    hn::Store(hn::ConvertTo(i32, hn::Add(hn::Mul(share, most), half)), i32, shares + i);
  }
  int sum = 0;
  for (const std::int32_t share : shares) sum += share;
  return sum;
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(sumOfSamples);

namespace {

// Farther from a pixel's centre a border does not touch it.
constexpr float kReachPx = 1;
constexpr float kEmpty = 1e9f;

}  // namespace

void SampledStrips::take(std::span<const Strip> strips, std::span<const int> numbers) {
  auto& [taken, left, right, top, bottom] = lists_;
  taken.clear();
  const std::size_t room = numbers.size() + kMostBoxes;
  for (std::vector<float>* low : {&left, &top}) low->assign(room, kEmpty);
  for (std::vector<float>* high : {&right, &bottom}) high->assign(room, -kEmpty);
  for (const int number : numbers) {
    const std::size_t place = taken.size();
    const Strip& p = taken.emplace_back(strips[static_cast<std::size_t>(number)]);
    const float bulge = std::abs(p.bend) * p.length * p.length * 0.25f;
    const float reach = p.bodyHalf + bulge + std::max(p.startExtra, p.endExtra) + kReachPx;
    left[place] = std::min(p.startX, p.endX) - reach;
    right[place] = std::max(p.startX, p.endX) + reach;
    top[place] = std::min(p.startY, p.endY) - reach;
    bottom[place] = std::max(p.startY, p.endY) + reach;
  }
}

std::int16_t SampledStrips::share(int x, int y, bool ofCore, std::int16_t full) const {
  return static_cast<std::int16_t>(HWY_DYNAMIC_DISPATCH(sumOfSamples)(lists_, x, y, ofCore, full) /
                                   kSamples);
}

}  // namespace render
#endif
