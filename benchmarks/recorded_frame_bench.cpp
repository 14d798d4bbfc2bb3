// What a recorded frame costs the main thread, without showing it in the window too: drawing,
// copying, handing it over.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "model/app_model.h"
#include "scenes.h"
#include "tests/support/fake_platform.h"

namespace bench {
namespace {

constexpr double kFrameSeconds = 1.0 / 30;

/// Takes every frame at once and keeps nothing but the buffer.
class InstantWriter final : public platform::VideoWriter {
 public:
  Status status() const override { return Status::writing; }
  std::optional<platform::Error> error() const override { return std::nullopt; }
  bool addInput(const platform::VideoSettings& settings) override {
    buffer_ = pixels::Surface(settings.width, settings.height);
    return true;
  }
  bool startWriting() override { return true; }
  void startSession(platform::MediaTime) override {}
  bool isReadyForMoreMediaData() const override { return true; }
  std::optional<pixels::Surface> takeBuffer() override { return std::move(buffer_); }
  bool append(pixels::Surface frame, platform::MediaTime) override {
    buffer_ = std::move(frame);
    return true;
  }
  void markAsFinished() override {}
  void finishWriting(std::function<void()>) override {}

 private:
  pixels::Surface buffer_;
};

struct InstantWriterFactory final : platform::VideoWriterFactory {
  platform::Result<std::unique_ptr<platform::VideoWriter>> make(
      const std::filesystem::path&) override {
    return std::unique_ptr<platform::VideoWriter>(std::make_unique<InstantWriter>());
  }
};

/// A running recording, and somebody who paints meanwhile.
class Recording {
 public:
  explicit Recording(render::CanvasBackground background) {
    model_.refreshPermission();
    machine_.cameraPermission.answerRead(platform::CameraAuthorization::authorized);
    machine_.serialQueues.drain("wavescribe.camera.session");
    model_.setBackground(background);
    machine_.savePanel.willAnswer("/videos/a.mp4");
    model_.toggleRecording();
  }

  void paint(int strokes, int points) {
    for (int i = 0; i < strokes; ++i) {
      model_.mouseUp();
      begin(i);
      for (int point = 1; point < points; ++point) goOn();
    }
  }

  /// The open stroke becomes a little longer.
  void goOn() {
    t_ += 0.02;
    model_.mouseDragged(0.5 + 0.4 * std::cos(t_), 0.5 + 0.4 * std::sin(1.3 * t_ + turn_));
  }

  void showCameraPicture(const pixels::Image& picture) {
    machine_.capture.deliver(pixels::PixelBuffer{.image = picture, .time = machine_.clock.now()});
    machine_.serialQueues.drain("wavescribe.camera.frames");
  }

  void advance() { machine_.clock.advance(kFrameSeconds); }
  void recordFrame() { machine_.timers.fire(); }

 private:
  void begin(int number) {
    model_.setColorIndex(number % 8);
    turn_ = 0.7 * number;
    t_ = number;
    model_.mouseDown(0.5 + 0.4 * std::cos(t_), 0.5 + 0.4 * std::sin(1.3 * t_ + turn_));
  }

  support::FakePlatform machine_;
  InstantWriterFactory writers_;
  model::AppModel model_{machine_.services(machine_.savePanel, writers_)};
  double t_ = 0;
  double turn_ = 0;
};

/// Measures frames after change().
template <class Change>
void measureFrames(benchmark::State& state, Recording& recording, Change change) {
  const auto next = [&] {
    change();
    recording.advance();
  };
  for (int i = 0; i < 30; ++i) {
    next();
    recording.recordFrame();
  }
  for (auto _ : state) {
    state.PauseTiming();
    next();
    state.ResumeTiming();
    recording.recordFrame();
  }
}

void recordFrameFlat(benchmark::State& state) {
  Recording recording(render::CanvasBackground::black);
  measureFrames(state, recording, [] {});
}

void recordFramePainted(benchmark::State& state) {
  Recording recording(render::CanvasBackground::camera);
  const pixels::Image pictures[] = {cameraPicture(), cameraPicture()};
  recording.showCameraPicture(pictures[0]);
  recording.paint(20, 100);
  int frame = 0;
  measureFrames(state, recording, [&] {
    recording.goOn();
    recording.showCameraPicture(pictures[++frame % 2]);
  });
}

void recordFrameNoisy(benchmark::State& state) {
  Recording recording(render::CanvasBackground::camera);
  const pixels::Image pictures[] = {noisyPicture(1), noisyPicture(2)};
  int frame = 0;
  measureFrames(state, recording, [&] { recording.showCameraPicture(pictures[++frame % 2]); });
}

BENCHMARK(recordFrameFlat)->Unit(benchmark::kMillisecond);
BENCHMARK(recordFramePainted)->Unit(benchmark::kMillisecond);
BENCHMARK(recordFrameNoisy)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
