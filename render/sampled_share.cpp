#include "render/sampled_share.h"

#include <algorithm>
#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/sampled_share.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"
#include "render/curve_distance-inl.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

constexpr int kSamples = kSamplesAlong * kSamplesAlong;
constexpr float kNowhere = -1e9f;
// Beyond half a piece's width, in samples, and more than the samples lie apart.
constexpr float kReach = kSamplesAlong + 2;

/// Whether a piece can touch any of the samples from (x, y) on.
HWY_INLINE bool comesNear(const LocalPiece& p, float x, float y) {
  const float reach = p.bodyHalf + p.bulge + kReach;
  const auto isBeside = [reach](float at, float from, float way) {
    const float low = way < 0 ? from + way : from, high = way < 0 ? from : from + way;
    return at < low - reach || at > high + reach;
  };
  return !isBeside(x, p.startX, p.chordX) && !isBeside(y, p.startY, p.chordY);
}

/// How deep the samples lie inside the piece, as far as its ends let it count for them.
template <bool kBent>
HWY_INLINE Floats depthIn(const LocalPiece& p, float half, Floats x, Floats y) {
  const F f;
  const auto along = [f](Floats ax, Floats ay, float directionX, float directionY) {
    return hn::Add(hn::Mul(ax, hn::Set(f, directionX)), hn::Mul(ay, hn::Set(f, directionY)));
  };
  const Floats qx = hn::Sub(x, hn::Set(f, p.startX)), qy = hn::Sub(y, hn::Set(f, p.startY));
  const Floats fromEndX = hn::Sub(qx, hn::Set(f, p.chordX));
  const Floats fromEndY = hn::Sub(qy, hn::Set(f, p.chordY));
  const Floats before = hn::Neg(along(qx, qy, p.startDirectionX, p.startDirectionY));
  const Floats beyond = along(fromEndX, fromEndY, p.endDirectionX, p.endDirectionY);
  const auto counts =
      hn::And(hn::Le(before, hn::Set(f, p.startExtra)), hn::Le(beyond, hn::Set(f, p.endExtra)));
  const Floats depth = hn::Sub(hn::Set(f, half), distanceTo<kBent>(p, qx, qy));
  return hn::IfThenElse(counts, depth, hn::Set(f, kNowhere));
}

int sumOfSamples(const LocalPiece* pieces, std::size_t count, int left, int top, bool ofCore,
                 std::int16_t full) {
  const F f;
  const hn::Rebind<std::int32_t, F> i32;
  const int lanes = static_cast<int>(hn::Lanes(f));
  const float firstX = static_cast<float>(left), firstY = static_cast<float>(top);
  alignas(64) float columns[kSamples], rows[kSamples], depths[kSamples];
  alignas(64) std::int32_t shares[kSamples];
  for (int i = 0; i < kSamples; ++i) {
    const int column = i % kSamplesAlong, row = i / kSamplesAlong;
    columns[i] = firstX + static_cast<float>(column);
    rows[i] = firstY + static_cast<float>(row);
    depths[i] = kNowhere;
  }
  for (std::size_t k = 0; k < count; ++k) {
    const LocalPiece& p = pieces[k];
    if (!comesNear(p, firstX, firstY)) continue;
    const float half = ofCore ? p.coreHalf : p.bodyHalf;
    for (int i = 0; i < kSamples; i += lanes) {
      const Floats x = hn::Load(f, columns + i), y = hn::Load(f, rows + i);
      const Floats depth =
          p.isStraight ? depthIn<false>(p, half, x, y) : depthIn<true>(p, half, x, y);
      hn::Store(hn::Max(hn::Load(f, depths + i), depth), f, depths + i);
    }
  }
  const Floats half = hn::Set(f, 0.5f), most = hn::Set(f, static_cast<float>(full));
  for (int i = 0; i < kSamples; i += lanes) {
    const Floats depth = hn::Add(hn::Load(f, depths + i), half);
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

std::int16_t sampledShare(std::span<const LocalPiece> pieces, int x, int y, bool ofCore,
                          std::int16_t full) {
  const int sum = HWY_DYNAMIC_DISPATCH(sumOfSamples)(
      pieces.data(), pieces.size(), x * kSamplesAlong, y * kSamplesAlong, ofCore, full);
  return static_cast<std::int16_t>(sum / (kSamplesAlong * kSamplesAlong));
}

}  // namespace render
#endif
