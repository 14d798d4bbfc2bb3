#include "render/sampled_share.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/sampled_share.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"
#include "render/curve_distance-inl.h"

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
  if (hn::AllFalse(f, counts)) return hn::Set(f, kNowhere);
  const Floats depth = hn::Sub(hn::Set(f, half), distanceTo<kBent>(p, qx, qy));
  return hn::IfThenElse(counts, depth, hn::Set(f, kNowhere));
}

/// Of the boxes from `first` on, as many as a vector has lanes: those that hold (x, y), the first
/// in the lowest bit.
HWY_INLINE std::uint32_t boxesAround(const SampledPieces::Lists& lists, std::size_t first, Floats x,
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

int sumOfSamples(const SampledPieces::Lists& lists, int left, int top, bool ofCore,
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
  const auto spread = [&](const LocalPiece& p) {
    const float half = ofCore ? p.coreHalf : p.bodyHalf;
    for (int i = 0; i < kSamples; i += lanes) {
      const Floats x = hn::Load(f, columns + i), y = hn::Load(f, rows + i);
      const Floats depth =
          p.isStraight ? depthIn<false>(p, half, x, y) : depthIn<true>(p, half, x, y);
      hn::Store(hn::Max(hn::Load(f, depths + i), depth), f, depths + i);
    }
  };
  const Floats x = hn::Set(f, firstX), y = hn::Set(f, firstY);
  for (std::size_t k = 0; k < lists.pieces.size(); k += static_cast<std::size_t>(lanes)) {
    for (std::uint32_t near = boxesAround(lists, k, x, y); near != 0; near &= near - 1)
      spread(lists.pieces[k + static_cast<std::size_t>(std::countr_zero(near))]);
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

namespace {

// Beyond half a piece's width, in samples, and more than the samples of a pixel lie apart.
constexpr float kReach = kSamplesAlong + 2;
constexpr float kEmpty = 1e9f;

}  // namespace

void SampledPieces::take(std::span<const CurvePiece> pieces, std::span<const int> numbers) {
  auto& [locals, left, right, top, bottom] = lists_;
  locals.clear();
  const std::size_t room = numbers.size() + kMostBoxes;
  for (std::vector<float>* low : {&left, &top}) low->assign(room, kEmpty);
  for (std::vector<float>* high : {&right, &bottom}) high->assign(room, -kEmpty);
  for (const int number : numbers) {
    const std::size_t place = locals.size();
    const LocalPiece& p = locals.emplace_back(
        localPiece(pieces[static_cast<std::size_t>(number)], 1.0 / kSamplesAlong));
    const float reach = p.bodyHalf + p.bulge + kReach;
    left[place] = p.startX + std::min(p.chordX, 0.0f) - reach;
    right[place] = p.startX + std::max(p.chordX, 0.0f) + reach;
    top[place] = p.startY + std::min(p.chordY, 0.0f) - reach;
    bottom[place] = p.startY + std::max(p.chordY, 0.0f) + reach;
  }
}

std::int16_t SampledPieces::share(int x, int y, bool ofCore, std::int16_t full) const {
  const int sum = HWY_DYNAMIC_DISPATCH(sumOfSamples)(lists_, x * kSamplesAlong, y * kSamplesAlong,
                                                     ofCore, full);
  return static_cast<std::int16_t>(sum / kSamples);
}

}  // namespace render
#endif
