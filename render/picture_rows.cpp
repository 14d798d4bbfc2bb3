#include "render/picture_rows.h"

#include <algorithm>
#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/picture_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace render::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_SCALAR

/// a * b / 32768, rounded.
HWY_INLINE int times(int a, int b) {
  return (a * b + 16384) >> 15;
}

void stretchPairs(const std::uint8_t* source, int, const int* firsts,
                  const std::int16_t* rightWeights, int count, std::int16_t* row) {
  for (int i = 0; i < 4 * count; ++i) {
    const std::uint8_t* pair = source + 4 * firsts[i / 4] + i % 4;
    row[i] = static_cast<std::int16_t>((pair[0] << 7) +
                                       times((pair[4] - pair[0]) * 128, rightWeights[i]));
  }
}

#else

/// Between two neighbouring pixels of `source`, which is `width` pixels long, for each new one.
/// `firsts`: the left ones, from the last to the first and never more than one apart; `count`: of
/// new pixels. Either is longer than a vector.
void stretchPairs(const std::uint8_t* source, int width, const int* firsts,
                  const std::int16_t* rightWeights, int count, std::int16_t* row) {
  const hn::CappedTag<std::int16_t, 32> d;
  const hn::Rebind<std::uint8_t, decltype(d)> d8;
  const hn::Repartition<std::uint32_t, decltype(d8)> d32;
  const hn::RebindToSigned<decltype(d32)> di32;
  const int together = static_cast<int>(hn::Lanes(d32));
  for (int x = 0; x < count; x += together) {
    x = std::min(x, count - together);  // The last ones are done once more.
    const int base = std::min(firsts[x + together - 1], width - together - 1);
    const auto places =
        hn::IndicesFromVec(d32, hn::Sub(hn::LoadU(di32, firsts + x), hn::Set(di32, base)));
    const auto pixelsFrom = [&](const std::uint8_t* first) {
      const auto pixels = hn::BitCast(d32, hn::LoadU(d8, first));
      const auto bytes = hn::BitCast(d8, hn::TableLookupLanes(pixels, places));
      return hn::ShiftLeft<7>(hn::PromoteTo(d, bytes));
    };
    const auto left = pixelsFrom(source + 4 * base), right = pixelsFrom(source + 4 * base + 4);
    const auto share = hn::LoadU(d, rightWeights + 4 * x);
    hn::StoreU(hn::Add(left, hn::MulFixedPoint15(hn::Sub(right, left), share)), d, row + 4 * x);
  }
}

#endif

/// `taps` neighbouring pixels of `source` for each new one, weighted.
void stretchTaps(const std::uint8_t* source, const int* firsts, const std::int16_t* weights,
                 int taps, int count, std::int16_t* row) {
  for (int x = 0; x < count; ++x, row += 4, weights += taps) {
    const std::uint8_t* pixel = source + 4 * firsts[x];
#if HWY_TARGET == HWY_SCALAR
    for (int c = 0; c < 4; ++c) {
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
  }
}

/// The weighted sum of rows: `end` channels, a multiple of the vector's length. The fourth channel
/// becomes full.
void sumRows(const std::int16_t* const* rows, const std::int16_t* weights, int taps, int end,
             std::uint8_t* pixels) {
  const hn::CappedTag<std::int16_t, 32> d;
  const hn::Rebind<std::uint8_t, decltype(d)> d8;
  const int lanes = static_cast<int>(hn::Lanes(d));
  const auto half = hn::Set(d, 64);
  const auto weighted = [&](int k, int i) {
    return hn::MulFixedPoint15(hn::LoadU(d, rows[k] + i), hn::Set(d, weights[k]));
  };
  for (int i = 0; i < end; i += lanes) {
    auto sum = weighted(0, i);
    // Hundreds of taps, each rounded, may come to more than full light.
    for (int k = 1; k < taps; ++k) sum = hn::SaturatedAdd(sum, weighted(k, i));
    const auto light = hn::DemoteTo(d8, hn::ShiftRight<7>(hn::SaturatedAdd(sum, half)));
#if HWY_TARGET == HWY_SCALAR
    hn::StoreU(i % 4 == 3 ? hn::Set(d8, 255) : light, d8, pixels + i);
#else
    const hn::Repartition<std::uint32_t, decltype(d8)> d32;
    const auto opaque = hn::BitCast(d8, hn::Set(d32, 0xFF000000u));
    hn::StoreU(hn::Or(light, opaque), d8, pixels + i);
#endif
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
// A vector of pixels at most, and one to its right.
constexpr int kFewestForPairs = kMostLanes / 4 + 1;

}  // namespace

PictureRows::PictureRows(int pictureWidth, int pictureHeight, double width, double height,
                         int columns, int rows)
    : pictureWidth_(pictureWidth),
      pictureHeight_(pictureHeight),
      width_(width),
      height_(height),
      across_(pictureWidth, width, columns, true),
      down_(pictureHeight, height, rows, false),
      rows_(static_cast<std::size_t>(down_.taps())),
      rowNumbers_(rows_.size(), -1) {
  const std::size_t length = 4 * static_cast<std::size_t>(across_.length()) + kMostLanes;
  for (auto& row : rows_) row.resize(length);
  if (across_.taps() != 2) return;
  rightWeights_.resize(length);
  for (int x = 0; x < across_.length(); ++x)
    std::fill_n(rightWeights_.data() + 4 * x, 4, across_.weights(x)[1]);
}

void PictureRows::show(const pixels::Image& picture, double dim) {
  picture_ = picture;
  light_ = static_cast<int>(std::lround((1 - dim) * 32768));
  std::fill(rowNumbers_.begin(), rowNumbers_.end(), -1);
}

bool PictureRows::isFor(const pixels::Image& picture, double width, double height, int columns,
                        int rows) const {
  return picture.width() == pictureWidth_ && picture.height() == pictureHeight_ &&
         width == width_ && height == height_ && columns == across_.length() &&
         rows == down_.length();
}

const std::int16_t* PictureRows::stretched(int pictureRow) {
  const std::size_t slot = static_cast<std::size_t>(pictureRow) % rows_.size();
  std::int16_t* row = rows_[slot].data();
  if (rowNumbers_[slot] == pictureRow) return row;
  rowNumbers_[slot] = pictureRow;
  const std::uint8_t* source = picture_->row(pictureRow);
  if (across_.taps() == 2 && pictureWidth_ >= kFewestForPairs &&
      across_.length() >= kFewestForPairs) {
    HWY_DYNAMIC_DISPATCH(stretchPairs)
    (source, pictureWidth_, across_.firsts(), rightWeights_.data(), across_.length(), row);
  } else {
    HWY_DYNAMIC_DISPATCH(stretchTaps)
    (source, across_.firsts(), across_.weights(0), across_.taps(), across_.length(), row);
  }
  return row;
}

void PictureRows::fetch(int y, int left, int right, std::uint8_t* pixels) {
  rowsWanted_.clear();
  weightsWanted_.clear();
  for (int k = 0; k < down_.taps(); ++k) {
    rowsWanted_.push_back(stretched(down_.first(y) + k) + 4 * left);
    weightsWanted_.push_back(
        static_cast<std::int16_t>((down_.weights(y)[k] * light_ + 16384) >> 15));
  }
  const int count = 4 * (right - left);
  const int whole = count / kMostLanes * kMostLanes;
  HWY_DYNAMIC_DISPATCH(sumRows)
  (rowsWanted_.data(), weightsWanted_.data(), down_.taps(), whole, pixels);
  if (whole < count) {
    std::uint8_t last[kMostLanes];
    for (auto& row : rowsWanted_) row += whole;
    HWY_DYNAMIC_DISPATCH(sumRows)
    (rowsWanted_.data(), weightsWanted_.data(), down_.taps(), kMostLanes, last);
    std::copy_n(last, count - whole, pixels + whole);
  }
}

}  // namespace render
#endif
