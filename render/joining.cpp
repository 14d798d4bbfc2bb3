#include "render/joining.h"

#include <cstring>

#include "render/paint_tile.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/joining.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
constexpr int kCells = PaintTile::kSide;

/// Where `mask` is true, the first lane in the lowest bit.
template <class Tag>
HWY_INLINE std::uint64_t bitsOf(Tag d, hn::Mask<Tag> mask) {
  std::uint8_t bytes[8] = {};
  hn::StoreMaskBits(d, mask, bytes);
  std::uint64_t bits = 0;
  std::memcpy(&bits, bytes, sizeof bits);
  return bits;
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

HWY_EXPORT(join);

void joinRows(const std::int16_t* others, int first, int end, std::int16_t* shares,
              std::uint64_t* meetings) {
  HWY_DYNAMIC_DISPATCH(join)(others, first, end, shares, meetings);
}

}  // namespace render
#endif
