// One camera frame from GStreamer's sink to the window's canvas, without strokes: what each frame
// costs the program after its conversion, on all its threads.

#include <benchmark/benchmark.h>
#include <gst/gst.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "capture/frame_hub.h"
#include "platform/gstreamer/sample_frame.h"
#include "render/live_canvas.h"
#include "scenes.h"

namespace bench {
namespace {

using platform::gstreamer::Handle;

// As the converter delivers it, from memory that it lends.
Handle<GstSample> cameraSample(std::uint8_t grey) {
  constexpr int kWidth = 1280;
  constexpr int kHeight = 720;
  gst_init(nullptr, nullptr);
  GstBuffer* buffer = gst_buffer_new_allocate(nullptr, 4 * kWidth * kHeight, nullptr);
  gst_buffer_memset(buffer, 0, grey, 4 * kWidth * kHeight);
  const Handle<GstCaps> caps(gst_caps_new_simple(
      "video/x-raw", "format", G_TYPE_STRING, "BGRA", "width", G_TYPE_INT, kWidth, "height",
      G_TYPE_INT, kHeight, "framerate", GST_TYPE_FRACTION, 30, 1, nullptr));
  Handle<GstSample> sample(gst_sample_new(buffer, caps.get(), nullptr, nullptr));
  gst_buffer_unref(buffer);
  return sample;
}

void cameraFrameToCanvas(benchmark::State& state, pixels::Size size) {
  const std::array samples{cameraSample(90), cameraSample(91)};
  capture::FrameHub hub;
  pixels::Surface surface(static_cast<int>(size.width), static_cast<int>(size.height));
  render::LiveCanvas canvas;
  render::RenderScene scene = painting(0, 0, true);
  scene.background = render::CanvasBackground::camera;
  scene.dim = 0.35;
  std::size_t frame = 0;
  for (auto _ : state) {
    GstSample* const sample = gst_sample_ref(samples[++frame % samples.size()].get());
    hub.update(platform::gstreamer::frameOf(Handle<GstSample>(sample),
                                            platform::gstreamer::SampleMemory::ours, 0));
    scene.frame = hub.image();
    canvas.draw(scene, {surface.view(), 1}, size);
    benchmark::ClobberMemory();
  }
}

BENCHMARK_CAPTURE(cameraFrameToCanvas, 1080p, k1080p)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(cameraFrameToCanvas, 2160p, k2160p)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime();

}  // namespace
}  // namespace bench
