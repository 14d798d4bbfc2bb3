// Frames of a window that is open: only what changes is painted. The figures hold what one frame
// allocates, and how long the longest frame took by the clock.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>
#include <vector>

#include "allocations.h"
#include "render/live_canvas.h"
#include "scenes.h"

namespace bench {
namespace {

constexpr int kPoints = 200;

/// A window that shows a painting, ready for the first frame to be measured.
class Window {
 public:
  Window(render::RenderScene scene, pixels::Size size)
      : scene_(std::move(scene)),
        size_(size),
        surface_(static_cast<int>(size.width), static_cast<int>(size.height)) {
    while (!draw().isComplete) {
    }
  }

  render::LiveFrame draw() {
    const render::LiveFrame frame = canvas_.draw(scene_, {surface_.view(), 1}, size_);
    isComplete_ = frame.isComplete;
    return frame;
  }
  bool isComplete() const { return isComplete_; }

  render::RenderScene& scene() { return scene_; }
  const render::LiveCanvas& canvas() const { return canvas_; }

 private:
  render::RenderScene scene_;
  pixels::Size size_;
  pixels::Surface surface_;
  render::LiveCanvas canvas_;
  bool isComplete_ = false;
};

double secondsNow() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Measures draw() after change(frame number).
template <typename Change>
void measureFrames(benchmark::State& state, Window& window, Change change) {
  int frame = 0;
  std::size_t bytes = 0, count = 0;
  double longest = 0;
  for (auto _ : state) {
    state.PauseTiming();
    change(frame++);
    const std::size_t bytesBefore = allocatedBytes(), countBefore = allocationCount();
    const double start = secondsNow();
    state.ResumeTiming();
    benchmark::DoNotOptimize(window.draw());
    state.PauseTiming();
    longest = std::max(longest, secondsNow() - start);
    bytes += allocatedBytes() - bytesBefore;
    count += allocationCount() - countBefore;
    state.ResumeTiming();
  }
  const auto perFrame = [](std::size_t amount) {
    return benchmark::Counter(static_cast<double>(amount), benchmark::Counter::kAvgIterations);
  };
  state.counters["bytesPerFrame"] = perFrame(bytes);
  state.counters["allocationsPerFrame"] = perFrame(count);
  state.counters["longestMilliseconds"] = longest * 1000;
  state.counters["megabytesHeld"] = static_cast<double>(window.canvas().bytesHeld()) / 1e6;
}

render::RenderScene settled(int strokes, render::CanvasBackground background) {
  render::RenderScene scene = painting(strokes, kPoints, true);
  scene.background = background;
  if (background == render::CanvasBackground::camera) scene.frame = cameraPicture();
  return scene;
}

void newCameraPicture(benchmark::State& state, pixels::Size size) {
  Window window(settled(1000, render::CanvasBackground::camera), size);
  const std::vector<pixels::Image> pictures{cameraPicture(), cameraPicture()};
  measureFrames(state, window, [&](int frame) {
    window.scene().frame = pictures[static_cast<std::size_t>(frame % 2)];
  });
}

void idle(benchmark::State& state, pixels::Size size) {
  Window window(settled(1000, render::CanvasBackground::black), size);
  measureFrames(state, window, [](int) {});
}

/// A stroke of `points` points goes on over a settled painting.
void drawing(benchmark::State& state, pixels::Size size, int points) {
  Window window(settled(100, render::CanvasBackground::black), size);
  std::vector<strokes::StrokePoint> path;
  const auto add = [&path] {
    const double t = static_cast<double>(path.size()) * 0.02;
    path.push_back({0.5 + 0.4 * std::cos(t), 0.5 + 0.4 * std::sin(1.3 * t), 12});
  };
  for (int i = 0; i < points; ++i) add();
  auto& strokes = window.scene().strokes;
  strokes.push_back({{1, 1}, strokes::StrokePoints(path), 3, 0});
  while (!window.draw().isComplete) {
  }
  measureFrames(state, window, [&](int) {
    add();
    strokes.back().points = strokes::StrokePoints(path);
  });
}

void fading(benchmark::State& state, pixels::Size size) {
  Window window(settled(100, render::CanvasBackground::black), size);
  window.scene().fadeEnabled = true;
  // The first frame of the fading takes the strokes apart again.
  window.scene().now = window.scene().fadeSeconds + 0.05;
  window.draw();
  measureFrames(state, window, [&](int frame) {
    window.scene().now = window.scene().fadeSeconds + 0.1 + 0.8 * (frame % 30) / 30.0;
  });
}

/// The first frame in which strokes fade that had settled half a second before.
void beginningToFade(benchmark::State& state, pixels::Size size) {
  Window window(settled(100, render::CanvasBackground::black), size);
  render::RenderScene& scene = window.scene();
  measureFrames(state, window, [&](int) {
    constexpr int kFramesBefore = 15;
    scene.fadeEnabled = false;
    window.draw();
    scene.fadeEnabled = true;
    for (int i = 0; i < kFramesBefore; ++i) {
      scene.now = scene.fadeSeconds - 0.5 + i / 30.0;
      window.draw();
    }
    scene.now = scene.fadeSeconds + 0.05;
  });
}

void undo(benchmark::State& state, pixels::Size size) {
  Window window(settled(1000, render::CanvasBackground::black), size);
  auto& strokes = window.scene().strokes;
  const strokes::Stroke newest = strokes.back();
  measureFrames(state, window, [&](int) {
    if (strokes.size() == 1000) {
      strokes.pop_back();
      return;
    }
    strokes.push_back(newest);
    window.draw();
    strokes.pop_back();
  });
}

void clear(benchmark::State& state, pixels::Size size) {
  Window window(settled(1000, render::CanvasBackground::black), size);
  const std::vector<strokes::Stroke> all = window.scene().strokes;
  measureFrames(state, window, [&](int) {
    window.scene().strokes = all;
    while (!window.draw().isComplete) {
    }
    window.scene().strokes.clear();
  });
}

/// A frame while a painting of a thousand strokes is built up anew.
void rebuilding(benchmark::State& state, pixels::Size size) {
  Window window(settled(1000, render::CanvasBackground::black), size);
  measureFrames(state, window, [&](int) {
    if (window.isComplete()) window.scene().glow = !window.scene().glow;
  });
}

#define LIVE(function, name, ...)                \
  BENCHMARK_CAPTURE(function, name, __VA_ARGS__) \
      ->Unit(benchmark::kMillisecond)            \
      ->MeasureProcessCPUTime()                  \
      ->UseRealTime()

LIVE(newCameraPicture, settled1000_1080p, k1080p);
LIVE(newCameraPicture, settled1000_2160p, k2160p);
LIVE(idle, settled1000_1080p, k1080p);
// So few that the stroke is hardly longer in the end.
LIVE(drawing, points20_1080p, k1080p, 20)->Iterations(300);
LIVE(drawing, points2000_1080p, k1080p, 2000)->Iterations(300);
LIVE(fading, strokes100_1080p, k1080p);
LIVE(beginningToFade, strokes100_1080p, k1080p);
LIVE(undo, newestOf1000_1080p, k1080p);
LIVE(clear, strokes1000_1080p, k1080p)->Iterations(3);
LIVE(rebuilding, strokes1000_1080p, k1080p);
LIVE(rebuilding, strokes1000_2160p, k2160p);

}  // namespace
}  // namespace bench
