#include "render/picture_rows.h"

#include <algorithm>
#include <cmath>

#include "render/paint_tile.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/picture_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"

#ifndef RENDER_PICTURE_ROWS_FULL_LIGHT
#define RENDER_PICTURE_ROWS_FULL_LIGHT
namespace render {
// A full channel, 255, in steps of 1/128.
inline constexpr std::int16_t kFullLight = 255 * 128;
}  // namespace render
#endif

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Two neighbouring pixels of `source` for each new one, weighted. `firsts`: the left ones.
/// An even `count`; the fourth channel becomes full.
void stretchPairs(const std::uint8_t* source, const int* firsts, const std::int16_t* leftWeights,
                  const std::int16_t* rightWeights, int count, std::int16_t* row) {
#if HWY_TARGET == HWY_SCALAR
  const hn::ScalableTag<std::int16_t> d;
  for (int i = 0; i < 4 * count; ++i) {
    const std::uint8_t* pair = source + 4 * firsts[i / 4] + i % 4;
    const auto part = [d](int value, std::int16_t weight) {
      return hn::GetLane(hn::MulFixedPoint15(hn::Set(d, static_cast<std::int16_t>(value << 7)),
                                             hn::Set(d, weight)));
    };
    row[i] =
        static_cast<std::int16_t>(part(pair[0], leftWeights[i]) + part(pair[4], rightWeights[i]) +
                                  (i % 4 == 3 ? kFullLight : 0));
  }
#else
  const hn::FixedTag<std::int16_t, 8> d;
  const hn::FixedTag<std::uint8_t, 8> d8;
  alignas(16) static constexpr std::int16_t kOpaque[8] = {0, 0, 0, kFullLight, 0, 0, 0, kFullLight};
  const auto opaque = hn::Load(d, kOpaque);
  const auto pairAt = [&](int x) {
    return hn::ShiftLeft<7>(hn::PromoteTo(d, hn::LoadU(d8, source + 4 * firsts[x])));
  };
  for (int x = 0; x < count; x += 2) {
    const auto one = pairAt(x), other = pairAt(x + 1);
    const auto left =
        hn::MulFixedPoint15(hn::ConcatLowerLower(d, other, one), hn::LoadU(d, leftWeights + 4 * x));
    const auto right = hn::MulFixedPoint15(hn::ConcatUpperUpper(d, other, one),
                                           hn::LoadU(d, rightWeights + 4 * x));
    hn::StoreU(hn::Add(hn::Add(left, right), opaque), d, row + 4 * x);
  }
#endif
}

/// `taps` neighbouring pixels of `source` for each new one, weighted. The fourth channel becomes
/// full.
void stretchTaps(const std::uint8_t* source, const int* firsts, const std::int16_t* weights,
                 int taps, int count, std::int16_t* row) {
  for (int x = 0; x < count; ++x, row += 4, weights += taps) {
    const std::uint8_t* pixel = source + 4 * firsts[x];
#if HWY_TARGET == HWY_SCALAR
    for (int c = 0; c < 3; ++c) {
      int sum = 128;
      for (int k = 0; k < taps; ++k) sum += pixel[4 * k + c] * weights[k];
      row[c] = static_cast<std::int16_t>(sum >> 8);
    }
#else
    const hn::FixedTag<std::int32_t, 4> d;
    const hn::Rebind<std::uint8_t, decltype(d)> d8;
    const hn::Rebind<std::int16_t, decltype(d)> d16;
    auto sum = hn::Set(d, 128);
    for (int k = 0; k < taps; ++k) {
      sum = hn::Add(
          sum, hn::Mul(hn::PromoteTo(d, hn::LoadU(d8, pixel + 4 * k)), hn::Set(d, weights[k])));
    }
    hn::StoreU(hn::DemoteTo(d16, hn::ShiftRight<8>(sum)), d16, row);
#endif
    row[3] = kFullLight;
  }
}

/// The weighted sum of rows, dimmed: `end` channels, a multiple of the vector's length. `light`:
/// for each channel, repeating.
void sumRows(const std::int16_t* const* rows, const std::int16_t* weights, int taps,
             const std::int16_t* light, int end, std::uint8_t* pixels) {
  const hn::CappedTag<std::int16_t, 32> d;
  const hn::Rebind<std::uint8_t, decltype(d)> d8;
  const int lanes = static_cast<int>(hn::Lanes(d));
  const auto half = hn::Set(d, 64);
#if HWY_TARGET != HWY_SCALAR
  const auto lights = hn::LoadDup128(d, light);
#endif
  for (int i = 0; i < end; i += lanes) {
    auto sum = hn::MulFixedPoint15(hn::LoadU(d, rows[0] + i), hn::Set(d, weights[0]));
    // Hundreds of taps, each rounded, may come to more than full light.
    for (int k = 1; k < taps; ++k)
      sum = hn::SaturatedAdd(
          sum, hn::MulFixedPoint15(hn::LoadU(d, rows[k] + i), hn::Set(d, weights[k])));
#if HWY_TARGET == HWY_SCALAR
    const auto lights = hn::Set(d, light[i % 8]);
#endif
    sum = hn::MulFixedPoint15(sum, lights);
    hn::StoreU(hn::DemoteTo(d8, hn::ShiftRight<7>(hn::SaturatedAdd(sum, half))), d8, pixels + i);
  }
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

HWY_EXPORT(stretchPairs);
HWY_EXPORT(stretchTaps);
HWY_EXPORT(sumRows);

namespace {

constexpr int kMostLanes = 32;

}  // namespace

PictureRows::PictureRows(const pixels::Image& picture, double width, double height, double dim,
                         int columns, int rows)
    : picture_(picture),
      across_(picture.width(), width, columns, true),
      down_(picture.height(), height, rows, false),
      light_(static_cast<std::int16_t>(std::lround((1 - dim) * 32767))),
      rows_(static_cast<std::size_t>(down_.taps())),
      rowNumbers_(rows_.size(), -1) {
  const std::size_t length = 4 * static_cast<std::size_t>(across_.length()) + kMostLanes;
  for (auto& row : rows_) row.resize(length);
  if (across_.taps() != 2) return;
  leftWeights_.resize(length);
  rightWeights_.resize(length);
  for (int x = 0; x < across_.length(); ++x) {
    for (int c = 0; c < 3; ++c) {
      leftWeights_[static_cast<std::size_t>(4 * x + c)] = across_.weights(x)[0];
      rightWeights_[static_cast<std::size_t>(4 * x + c)] = across_.weights(x)[1];
    }
  }
}

const std::int16_t* PictureRows::stretched(int pictureRow) {
  const std::size_t slot = static_cast<std::size_t>(pictureRow) % rows_.size();
  std::vector<std::int16_t>& row = rows_[slot];
  if (rowNumbers_[slot] == pictureRow) return row.data();
  rowNumbers_[slot] = pictureRow;
  const std::uint8_t* source = picture_.row(pictureRow);
  if (across_.taps() == 2) {
    stretchByPairs(source, row.data());
  } else {
    stretchByTaps(source, row.data());
  }
  return row.data();
}

void PictureRows::stretchByPairs(const std::uint8_t* source, std::int16_t* row) const {
  // Two at a time; a last odd one is done together with its neighbour once more.
  const int even = width() / 2 * 2;
  HWY_DYNAMIC_DISPATCH(stretchPairs)
  (source, across_.firsts(), leftWeights_.data(), rightWeights_.data(), even, row);
  if (even == width() || width() < 2) {
    if (width() == 1) stretchByTaps(source, row);
    return;
  }
  const int last = width() - 2;
  HWY_DYNAMIC_DISPATCH(stretchPairs)
  (source, across_.firsts() + last, leftWeights_.data() + 4 * last, rightWeights_.data() + 4 * last,
   2, row + 4 * last);
}

void PictureRows::stretchByTaps(const std::uint8_t* source, std::int16_t* row) const {
  HWY_DYNAMIC_DISPATCH(stretchTaps)
  (source, across_.firsts(), across_.weights(0), across_.taps(), width(), row);
}

void PictureRows::fetch(int y, std::uint8_t* pixels) {
  const int count = width();
  std::vector<const std::int16_t*>& rows = rowsWanted_;
  rows.clear();
  for (int k = 0; k < down_.taps(); ++k) rows.push_back(stretched(down_.first(y) + k));
  const std::int16_t light[8] = {light_, light_, light_, kFull, light_, light_, light_, kFull};
  const int whole = 4 * count / kMostLanes * kMostLanes;
  HWY_DYNAMIC_DISPATCH(sumRows)
  (rows.data(), down_.weights(y), down_.taps(), light, whole, pixels);
  if (whole < 4 * count) {
    std::uint8_t last[kMostLanes];
    for (auto& row : rows) row += whole;
    HWY_DYNAMIC_DISPATCH(sumRows)
    (rows.data(), down_.weights(y), down_.taps(), light, kMostLanes, last);
    std::copy_n(last, 4 * count - whole, pixels + whole);
  }
}

}  // namespace render
#endif
