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

/// Channels `first` and on, up to `end`, of the weighted sum of rows, dimmed. Both are multiples
/// of the vector's length but for the end.
void sumRows(const std::int16_t* const* rows, const std::int16_t* weights, int taps,
             std::int16_t light, int end, std::uint8_t* pixels) {
  const hn::CappedTag<std::int16_t, 32> d;
  const hn::Rebind<std::uint8_t, decltype(d)> d8;
  const int lanes = static_cast<int>(hn::Lanes(d));
  const auto half = hn::Set(d, 64);
  for (int i = 0; i < end; i += lanes) {
    auto sum = hn::MulFixedPoint15(hn::LoadU(d, rows[0] + i), hn::Set(d, weights[0]));
    for (int k = 1; k < taps; ++k)
      sum = hn::Add(sum, hn::MulFixedPoint15(hn::LoadU(d, rows[k] + i), hn::Set(d, weights[k])));
    if (light != 32767) sum = hn::MulFixedPoint15(sum, hn::Set(d, light));
    hn::StoreU(hn::DemoteTo(d8, hn::ShiftRight<7>(hn::Add(sum, half))), d8, pixels + i);
  }
}

}  // namespace render::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace render {

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
}

const std::int16_t* PictureRows::stretched(int pictureRow) {
  const std::size_t slot = static_cast<std::size_t>(pictureRow) % rows_.size();
  std::vector<std::int16_t>& row = rows_[slot];
  if (rowNumbers_[slot] == pictureRow) return row.data();
  rowNumbers_[slot] = pictureRow;
  const std::uint8_t* source = picture_.row(pictureRow);
  std::int16_t* out = row.data();
  for (int x = 0; x < across_.length(); ++x, out += 4) {
    const std::uint8_t* p = source + 4 * across_.first(x);
    const std::int16_t* weights = across_.weights(x);
    int b = 128, g = 128, r = 128;
    for (int k = 0; k < across_.taps(); ++k, p += 4) {
      b += p[0] * weights[k];
      g += p[1] * weights[k];
      r += p[2] * weights[k];
    }
    out[0] = static_cast<std::int16_t>(b >> 8);
    out[1] = static_cast<std::int16_t>(g >> 8);
    out[2] = static_cast<std::int16_t>(r >> 8);
  }
  return row.data();
}

void PictureRows::fetch(int y, std::uint8_t* pixels) {
  const int count = width();
  std::vector<const std::int16_t*> rows;
  for (int k = 0; k < down_.taps(); ++k) rows.push_back(stretched(down_.first(y) + k));
  const int whole = 4 * count / kMostLanes * kMostLanes;
  HWY_DYNAMIC_DISPATCH(sumRows)
  (rows.data(), down_.weights(y), down_.taps(), light_, whole, pixels);
  if (whole < 4 * count) {
    std::uint8_t last[kMostLanes];
    for (auto& row : rows) row += whole;
    HWY_DYNAMIC_DISPATCH(sumRows)
    (rows.data(), down_.weights(y), down_.taps(), light_, kMostLanes, last);
    std::copy_n(last, 4 * count - whole, pixels + whole);
  }
  for (int x = 0; x < count; ++x) pixels[4 * x + 3] = 255;
}

}  // namespace render
#endif
