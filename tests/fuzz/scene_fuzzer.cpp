// Any bytes as a scene: drawing it must neither crash nor hang, and the live canvas must show what
// is drawn from scratch.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "render/canvas_renderer.h"
#include "render/live_canvas.h"

namespace {

constexpr int kMostStrokes = 12;
constexpr int kMostPoints = 24;

/// Takes values off the bytes' front; zeroes once they are used up.
class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  template <typename T>
  T take() {
    T value{};
    const std::size_t count = std::min(sizeof value, size_);
    if (count > 0) std::memcpy(&value, data_, count);
    data_ += count;
    size_ -= count;
    return value;
  }

  int below(int count) { return take<std::uint8_t>() % count; }
  bool coin() { return below(2) == 1; }

  /// Mostly an ordinary number from -1 to 2 times `scale`; sometimes any.
  double number(double scale) {
    if (below(8) == 0) return take<double>();
    return (take<std::uint16_t>() / 21845.0 - 1) * scale;
  }

  bool isEmpty() const { return size_ == 0; }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

render::RenderScene sceneFrom(Bytes& bytes) {
  render::RenderScene scene;
  scene.background = static_cast<render::CanvasBackground>(bytes.below(4));
  if (bytes.coin()) {
    const std::uint32_t pixels[6] = {bytes.take<std::uint32_t>(), 1, 2, 3, 4, 5};
    scene.frame = pixels::Image::copyOf(reinterpret_cast<const std::uint8_t*>(pixels), 3, 2, 12);
  }
  scene.dim = bytes.number(1);
  scene.now = bytes.number(10);
  scene.glow = bytes.coin();
  scene.fadeEnabled = bytes.coin();
  scene.fadeSeconds = bytes.number(5);
  if (bytes.coin())
    scene.cursor = render::CursorState{bytes.number(1), bytes.number(1), bytes.coin(),
                                       bytes.number(40), bytes.take<int>()};
  const int strokes = bytes.below(kMostStrokes);
  for (int i = 0; i < strokes && !bytes.isEmpty(); ++i) {
    std::vector<strokes::StrokePoint> points;
    const int count = bytes.below(kMostPoints);
    for (int k = 0; k < count; ++k)
      points.push_back({bytes.number(1), bytes.number(1), bytes.number(40)});
    scene.strokes.push_back({{1, static_cast<std::uint64_t>(i)},
                             strokes::StrokePoints(std::move(points)),
                             bytes.take<int>(),
                             bytes.number(10)});
  }
  return scene;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  const int width = 1 + bytes.below(150), height = 1 + bytes.below(100);
  const double deviceScale = bytes.coin() ? 2 : 1;
  const pixels::Size canvas{width / deviceScale, height / deviceScale};
  const render::RenderScene scene = sceneFrom(bytes);

  pixels::Surface drawn(width, height), shown(width, height);
  render::CanvasRenderer::render(scene, {drawn.view(), deviceScale}, canvas);
  render::LiveCanvas live;
  // First without the newest stroke, then with it.
  render::RenderScene before = scene;
  if (!before.strokes.empty()) before.strokes.pop_back();
  live.draw(before, {shown.view(), deviceScale}, canvas);
  const bool isComplete = live.draw(scene, {shown.view(), deviceScale}, canvas).isComplete;
  if (isComplete && !(shown == drawn)) std::abort();
  return 0;
}
