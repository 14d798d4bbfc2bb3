#include "render/coverage.h"

#include <algorithm>
#include <cstring>

#include "render/distance_field.h"
#include "render/paint_tile.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/coverage.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"
#include "render/curve_distance-inl.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

using D = F;
using V = Floats;
constexpr int kCells = 64;
// Half a square's diagonal: borders farther from a cell's centre leave it whole.
constexpr float kHalfDiagonal = 0.7072f;
// The squared slope of the depth, 1 at a lone border, where borders meet at 25 degrees or more.
constexpr float kMeetingSlope2 = 0.95f;

HWY_INLINE void storeShare(D d, V share, std::int16_t full, std::int16_t* coverage) {
  const hn::Rebind<std::int32_t, D> di;
  const hn::Rebind<std::int16_t, D> ds;
  const V scaled = hn::Mul(share, hn::Set(d, static_cast<float>(full)));
  hn::StoreU(hn::DemoteTo(ds, hn::ConvertTo(di, hn::Add(scaled, hn::Set(d, 0.5f)))), ds, coverage);
}

void ramp(const float* depths, std::int16_t full, std::int16_t* coverage) {
  const D d;
  const V zero = hn::Zero(d), one = hn::Set(d, 1.0f), half = hn::Set(d, 0.5f);
  for (int x = 0; x < kCells; x += static_cast<int>(hn::Lanes(d))) {
    const V share = hn::Min(hn::Max(hn::Add(hn::Load(d, depths + x), half), zero), one);
    storeShare(d, share, full, coverage + x);
  }
}

/// Where `mask` is true, the first lane in the lowest bit.
template <class Tag>
HWY_INLINE std::uint64_t bitsOf(Tag d, hn::Mask<Tag> mask) {
  std::uint8_t bytes[8] = {};
  hn::StoreMaskBits(d, mask, bytes);
  std::uint64_t bits = 0;
  std::memcpy(&bits, bytes, sizeof bits);
  return bits;
}

std::uint64_t edgeRow(const float* above, const float* depths, const float* below,
                      std::int16_t full, std::int16_t* coverage) {
  const D d;
  const int lanes = static_cast<int>(hn::Lanes(d));
  const V zero = hn::Zero(d), one = hn::Set(d, 1.0f), half = hn::Set(d, 0.5f);
  const V tiny = hn::Set(d, 1e-4f);
  std::uint64_t meetings = 0;
  for (int x = 0; x < kCells; x += lanes) {
    const V depth = hn::LoadU(d, depths + x);
    const V inside = hn::IfThenElseZero(hn::Gt(depth, zero), one);
    const auto isBorder = hn::Lt(hn::Abs(depth), hn::Set(d, kHalfDiagonal));
    if (hn::AllFalse(d, isBorder)) {
      storeShare(d, inside, full, coverage + x);
      continue;
    }
    const V across =
        hn::Mul(half, hn::Sub(hn::LoadU(d, depths + x + 1), hn::LoadU(d, depths + x - 1)));
    const V down = hn::Mul(half, hn::Sub(hn::LoadU(d, below + x), hn::LoadU(d, above + x)));
    const V slope2 = hn::Add(hn::Mul(across, across), hn::Mul(down, down));
    const V slope = hn::Sqrt(hn::Max(slope2, tiny));
    const V a = hn::Div(hn::Abs(across), slope), b = hn::Div(hn::Abs(down), slope);
    const V share = squareShare(depth, hn::Max(hn::Max(a, b), tiny), hn::Max(hn::Min(a, b), tiny));
    storeShare(d, hn::IfThenElse(isBorder, share, inside), full, coverage + x);
    const auto meets = hn::And(isBorder, hn::Lt(slope2, hn::Set(d, kMeetingSlope2)));
    if (hn::AllFalse(d, meets)) continue;
    meetings |= bitsOf(d, meets) << x;
  }
  return meetings;
}

void edges(const float* depths, int first, int end, std::int16_t full, std::int16_t* coverage,
           std::uint64_t* meetings) {
  constexpr int kStride = DistanceField::stride();
  for (int y = first; y < end; ++y) {
    const float* row = depths + y * kStride;
    meetings[y] = edgeRow(row - kStride, row, row + kStride, full, coverage + y * kCells);
  }
}

void join(const std::int16_t* others, int first, int end, std::int16_t* shares,
          std::uint64_t* meetings) {
  const hn::CappedTag<std::int16_t, 32> d;
  const auto zero = hn::Zero(d), full = hn::Set(d, kFull);
  const auto isPartial = [=](auto share) {
    return hn::And(hn::Gt(share, zero), hn::Lt(share, full));
  };
  for (int y = first; y < end; ++y) {
    for (int x = 0; x < kCells; x += static_cast<int>(hn::Lanes(d))) {
      const int place = y * kCells + x;
      const auto other = hn::Load(d, others + place);
      if (hn::AllTrue(d, hn::Eq(other, zero))) continue;
      const auto share = hn::Load(d, shares + place);
      hn::Store(hn::Max(share, other), d, shares + place);
      const auto meets = hn::And(isPartial(share), isPartial(other));
      if (!hn::AllFalse(d, meets)) meetings[y] |= bitsOf(d, meets) << x;
    }
  }
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(ramp);
HWY_EXPORT(edges);
HWY_EXPORT(join);

void rampRow(const float* depths, std::int16_t full, std::int16_t* coverage) {
  HWY_DYNAMIC_DISPATCH(ramp)(depths, full, coverage);
}

void edgeRows(const float* depths, int first, int end, std::int16_t full, std::int16_t* coverage,
              std::uint64_t* meetings) {
  HWY_DYNAMIC_DISPATCH(edges)(depths, first, end, full, coverage, meetings);
}

void joinRows(const std::int16_t* others, int first, int end, std::int16_t* shares,
              std::uint64_t* meetings) {
  HWY_DYNAMIC_DISPATCH(join)(others, first, end, shares, meetings);
}

}  // namespace render
#endif
