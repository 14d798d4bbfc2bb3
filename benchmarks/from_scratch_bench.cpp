// Whole pictures from nothing, as for saving. The figures hold what one picture allocates. Beside
// the processor's time stands that of the clock, shorter where several cores share the work.

#include <benchmark/benchmark.h>

#include "allocations.h"
#include "render/canvas_renderer.h"
#include "scenes.h"

namespace bench {
namespace {

void drawFromScratch(benchmark::State& state, const render::RenderScene& scene, pixels::Size size) {
  pixels::Surface surface(static_cast<int>(size.width), static_cast<int>(size.height));
  const std::size_t bytesBefore = allocatedBytes(), countBefore = allocationCount();
  for (auto _ : state) {
    render::CanvasRenderer::render(scene, {surface.view(), 1}, size);
    benchmark::DoNotOptimize(surface.row(0));
    benchmark::ClobberMemory();
  }
  const auto perFrame = [](std::size_t amount) {
    return benchmark::Counter(static_cast<double>(amount), benchmark::Counter::kAvgIterations);
  };
  state.counters["bytesPerFrame"] = perFrame(allocatedBytes() - bytesBefore);
  state.counters["allocationsPerFrame"] = perFrame(allocationCount() - countBefore);
}

render::RenderScene overCamera(render::RenderScene scene) {
  scene.background = render::CanvasBackground::camera;
  scene.frame = cameraPicture();
  return scene;
}

#define FROM_SCRATCH(name, scene, size)                 \
  BENCHMARK_CAPTURE(drawFromScratch, name, scene, size) \
      ->Unit(benchmark::kMillisecond)                   \
      ->MeasureProcessCPUTime()                         \
      ->UseRealTime()

FROM_SCRATCH(strokes20_glow_720p, painting(20, 100, true), k720p);
FROM_SCRATCH(strokes100_glow_1080p, painting(100, 200, true), k1080p);
FROM_SCRATCH(strokes100_plain_1080p, painting(100, 200, false), k1080p);
FROM_SCRATCH(strokes100_glow_2160p, painting(100, 200, true), k2160p);
FROM_SCRATCH(camera_1080p, overCamera(painting(0, 0, true)), k1080p);
FROM_SCRATCH(camera_2160p, overCamera(painting(0, 0, true)), k2160p);
FROM_SCRATCH(empty_black_1080p, painting(0, 0, true), k1080p);

}  // namespace
}  // namespace bench
