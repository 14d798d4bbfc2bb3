#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/ffmpeg/bgra_to_i420.cpp"
#include "platform/ffmpeg/bgra_to_i420.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <vector>

HWY_BEFORE_NAMESPACE();
namespace platform::ffmpeg::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// ITU-R BT.709: brightness is 0.2126 R + 0.7152 G + 0.0722 B; the colour differences B - Y and
// R - Y are scaled to half a unit each side. Limited range: 219 steps of brightness from 16 on, 224
// steps of colour around 128. All in 65536ths.
constexpr double kRed = 0.2126;
constexpr double kGreen = 0.7152;
constexpr double kBlue = 0.0722;
constexpr double kLumaSteps = 219.0 / 255;
constexpr double kBlueSteps = 224.0 / 255 / (2 * (1 - kBlue));
constexpr double kRedSteps = 224.0 / 255 / (2 * (1 - kRed));

constexpr std::int32_t fixed(double value) {
  return static_cast<std::int32_t>(value * 65536 + (value < 0 ? -0.5 : 0.5));
}

struct Weights {
  std::int32_t blue, green, red;
};
constexpr Weights kY{fixed(kBlue * kLumaSteps), fixed(kGreen* kLumaSteps), fixed(kRed* kLumaSteps)};
constexpr Weights kU{fixed((1 - kBlue) * kBlueSteps), fixed(-kGreen* kBlueSteps),
                     fixed(-kRed* kBlueSteps)};
constexpr Weights kV{fixed(-kBlue * kRedSteps), fixed(-kGreen* kRedSteps),
                     fixed((1 - kRed) * kRedSteps)};
constexpr std::int32_t kLumaOffset = fixed(16.5);
// Colour samples are sums of eight pixels.
constexpr std::int32_t kChromaOffset = 8 * fixed(128.5);

/// Blue in the low and red in the high half of each lane; green alone.
template <class V>
struct Channels {
  V blueRed;
  V green;
};

template <class D, class V = hn::Vec<D>>
Channels<V> channelsOf(D d, V bgra) {
  return {hn::And(bgra, hn::Set(d, 0x00FF00FF)),
          hn::And(hn::ShiftRight<8>(bgra), hn::Set(d, 0x000000FF))};
}

template <int kShift, class D, class V = hn::Vec<D>>
void storeWeighted(D d, const Channels<V>& channels, const Weights& weights, std::int32_t offset,
                   std::uint8_t* HWY_RESTRICT out) {
  const hn::Rebind<std::uint8_t, D> bytes;
  const auto blue = hn::And(channels.blueRed, hn::Set(d, 0xFFFF));
  const auto red = hn::ShiftRight<16>(channels.blueRed);
  const auto sum = hn::Add(hn::Add(hn::Mul(blue, hn::Set(d, weights.blue)),
                                   hn::Mul(channels.green, hn::Set(d, weights.green))),
                           hn::Add(hn::Mul(red, hn::Set(d, weights.red)), hn::Set(d, offset)));
  hn::StoreU(hn::DemoteTo(bytes, hn::ShiftRight<kShift>(sum)), bytes, out);
}

/// The sums of two rows, a pixel each, and one pixel more at the left.
class RowSums {
 public:
  explicit RowSums(int width) : values_(static_cast<std::size_t>(width) + 2 + 2 * kI420Alignment) {}
  std::int32_t* at(int x) { return values_.data() + 2 + x; }

 private:
  std::vector<std::int32_t> values_;
};

template <class D>
hn::Vec<D> filtered(D d, const std::int32_t* HWY_RESTRICT sums) {
  hn::Vec<D> even, odd, unused, before;
  hn::LoadInterleaved2(d, sums, even, odd);
  hn::LoadInterleaved2(d, sums - 2, unused, before);
  return hn::Add(hn::Add(before, odd), hn::ShiftLeft<1>(even));
}

void convert(const pixels::Surface& picture, const I420View& out) {
  const hn::ScalableTag<std::int32_t> d;
  const int lanes = static_cast<int>(hn::Lanes(d));
  const int width = picture.width();
  RowSums blueRed(width);
  RowSums green(width);
  const auto luma = [&](const std::uint8_t* bgra, std::uint8_t* y) {
    const auto channels = channelsOf(d, hn::LoadU(d, reinterpret_cast<const std::int32_t*>(bgra)));
    storeWeighted<16>(d, channels, kY, kLumaOffset, y);
    return channels;
  };
  for (int y = 0; y < picture.height(); y += 2) {
    for (int x = 0; x < width; x += lanes) {  // Rows of a surface are padded.
      const auto top = luma(picture.row(y) + 4 * x, out.y.row(y) + x);
      const auto bottom = luma(picture.row(y + 1) + 4 * x, out.y.row(y + 1) + x);
      hn::StoreU(hn::Add(top.blueRed, bottom.blueRed), d, blueRed.at(x));
      hn::StoreU(hn::Add(top.green, bottom.green), d, green.at(x));
    }
    *blueRed.at(-1) = *blueRed.at(0);
    *green.at(-1) = *green.at(0);
    for (int x = 0; x < width / 2; x += lanes) {
      const Channels<hn::Vec<decltype(d)>> sums{filtered(d, blueRed.at(2 * x)),
                                                filtered(d, green.at(2 * x))};
      storeWeighted<19>(d, sums, kU, kChromaOffset, out.u.row(y / 2) + x);
      storeWeighted<19>(d, sums, kV, kChromaOffset, out.v.row(y / 2) + x);
    }
  }
}

}  // namespace platform::ffmpeg::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform::ffmpeg {

HWY_EXPORT(convert);

void convertBgraToI420(const pixels::Surface& picture, const I420View& out) {
  HWY_DYNAMIC_DISPATCH(convert)(picture, out);
}

}  // namespace platform::ffmpeg
#endif  // HWY_ONCE
