// What a recorded frame costs the encoder's threads: conversion and compression. The figures hold
// the bytes that a frame takes in the file.

#include <benchmark/benchmark.h>

extern "C" {
#include <libavutil/log.h>
}

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/ffmpeg/bgra_to_i420.h"
#include "platform/ffmpeg/h264_encoder.h"
#include "render/canvas_renderer.h"
#include "scenes.h"

namespace bench {
namespace {

using platform::ffmpeg::H264Encoder;
using Pictures = std::vector<pixels::Surface>;

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr int kPictures = 12;  // Shown forth and back, so that nothing jumps.

pixels::Surface drawn(const render::RenderScene& scene) {
  pixels::Surface picture(kWidth, kHeight);
  render::CanvasRenderer::render(scene, {picture.view()}, k720p);
  return picture;
}

Pictures flat() {
  return {drawn(painting(0, 0, true))};
}

/// Twenty glowing strokes over the dimmed camera's picture, and one that goes on.
Pictures painted() {
  render::RenderScene scene = painting(20, 100, true);
  scene.background = render::CanvasBackground::camera;
  scene.frame = cameraPicture();
  std::vector<strokes::StrokePoint> path;
  Pictures pictures;
  for (int i = 0; i < kPictures; ++i) {
    path.push_back({0.5 + 0.4 * std::cos(0.05 * i), 0.5 + 0.4 * std::sin(0.065 * i), 12});
    scene.strokes.push_back({{1, 1}, strokes::StrokePoints(path), 3, 0});
    pictures.push_back(drawn(scene));
    scene.strokes.pop_back();
  }
  return pictures;
}

/// The worst that can come: no pixel has to do with any other.
Pictures noisy() {
  render::RenderScene scene = painting(0, 0, true);
  scene.background = render::CanvasBackground::camera;
  Pictures pictures;
  for (int i = 0; i < kPictures; ++i) {
    scene.frame = noisyPicture(i);
    pictures.push_back(drawn(scene));
  }
  return pictures;
}

std::size_t forthAndBack(std::size_t step, std::size_t count) {
  if (count == 1) return 0;
  const std::size_t place = step % (2 * count - 2);
  return place < count ? place : 2 * count - 2 - place;
}

void encodeFrame(benchmark::State& state, Pictures (*made)()) {
  av_log_set_level(AV_LOG_QUIET);
  const Pictures pictures = made();
  const auto encoder = std::move(H264Encoder::open({kWidth, kHeight, 30})).value();
  double bytes = 0;
  const H264Encoder::PacketSink sink = [&](AVPacket& packet) {
    bytes += packet.size;
    return platform::Result<void>();
  };
  std::size_t frame = 0;
  for (auto _ : state) {
    const pixels::Surface& picture = pictures[forthAndBack(frame, pictures.size())];
    ++frame;
    if (!encoder->encode(picture, {20 * static_cast<std::int64_t>(frame)}, sink)) {
      state.SkipWithError("The encoder has failed.");
      break;
    }
  }
  state.counters["bytesPerFrame"] = benchmark::Counter(bytes, benchmark::Counter::kAvgIterations);
}

void convertFrame(benchmark::State& state) {
  constexpr std::size_t kStride = (kWidth + platform::ffmpeg::kI420Alignment - 1) /
                                  platform::ffmpeg::kI420Alignment *
                                  platform::ffmpeg::kI420Alignment;
  const pixels::Surface picture = std::move(noisy().front());
  std::vector<std::uint8_t> y(kStride * kHeight), u(kStride * kHeight / 2), v(u);
  for (auto _ : state) {
    platform::ffmpeg::convertBgraToI420(
        picture, {{y.data(), kStride}, {u.data(), kStride}, {v.data(), kStride}});
    benchmark::ClobberMemory();
  }
}

// The codec may have helping threads.
#define ENCODE(name) \
  BENCHMARK_CAPTURE(encodeFrame, name, name)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond)

ENCODE(flat);
ENCODE(painted);
ENCODE(noisy);
BENCHMARK(convertFrame)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
