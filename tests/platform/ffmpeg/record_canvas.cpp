// Records a painted canvas in real time, as the program does: 1280x720, 30 frames a second.
// Prints "frame T" whenever a frame is drawn, T in seconds since the start, then "stopping" and
// "finished". Made to be killed.
// usage: record_canvas PATH SECONDS

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "platform/ffmpeg/ffmpeg_video_writer.h"
#include "platform/std/uptime_clock.h"
#include "recording/recorder.h"
#include "render/canvas_renderer.h"
#include "tests/platform/ffmpeg/painted_scene.h"
#include "tests/support/fake_main_queue.h"
#include "tests/support/fake_timer_factory.h"

namespace {

constexpr int kWidth = 1280;
constexpr int kHeight = 720;

void say(const char* text, double seconds) {
  std::printf("%s %.4f\n", text, seconds);
  std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const double seconds = std::atof(argv[2]);
  platform::UptimeClock clock;
  support::FakeTimerFactory timers;
  support::FakeMainQueue mainQueue;
  platform::ffmpeg::FfmpegVideoWriterFactory writers;
  recording::Recorder recorder(clock, timers, mainQueue, writers);

  // Drawn before: what is measured is the recording.
  std::vector<pixels::Surface> pictures;
  for (int i = 0; i < 8; ++i) {
    pixels::Surface& picture = pictures.emplace_back(kWidth, kHeight);
    render::CanvasRenderer::render(support::paintedScene(10 * i), {picture.view()},
                                   {kWidth, kHeight});
  }
  std::size_t frames = 0;
  double start = 0;
  const auto started = recorder.start(
      argv[1], kWidth, kHeight, 30, [&](const pixels::DrawingContext& context, pixels::Size) {
        const pixels::Surface& picture = pictures[frames++ % pictures.size()];
        for (int y = 0; y < kHeight; ++y)
          std::copy_n(picture.row(y), 4 * kWidth, context.pixels.row(y));
        say("frame", clock.now() - start);
      });
  if (!started) return 1;
  start = clock.now();
  for (int tick = 1; clock.now() - start < seconds; ++tick) {
    const double wait = start + tick / 30.0 - clock.now();
    if (wait > 0) std::this_thread::sleep_for(std::chrono::duration<double>(wait));
    timers.fire();
    mainQueue.drain();
  }
  bool saved = false;
  recorder.stop([&](const auto& result) { saved = result.ok(); });
  say("stopping", clock.now() - start);
  while (recorder.isFinishing()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    mainQueue.drain();
  }
  say("finished", clock.now() - start);
  return saved ? 0 : 1;
}
