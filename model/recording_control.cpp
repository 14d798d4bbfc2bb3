#include <algorithm>
#include <array>
#include <ctime>
#include <string>

#include "model/app_model.h"
#include "model/video_size.h"
#include "platform/calendar.h"
#include "platform/clock.h"
#include "platform/file_store.h"
#include "platform/save_panel.h"
#include "platform/standard_folders.h"

namespace model {

namespace {

constexpr double kFramesPerSecond = 30;

std::string proposedName(const std::tm& now) {
  std::array<char, 64> text{};
  std::strftime(text.data(), text.size(), "Wavescribe %Y-%m-%d %H.%M.%S.mp4", &now);
  return text.data();
}

}  // namespace

void AppModel::toggleRecording() {
  if (isRecording()) {
    stopRecording();
    return;
  }
  const auto path =
      services_.savePanel.choose({.kind = platform::FileKind::mpeg4,
                                  .proposedName = proposedName(services_.calendar.localTime()),
                                  .proposedFolder = services_.folders.movies()});
  if (path) startRecording(*path);
}

void AppModel::startRecording(const std::filesystem::path& path) {
  // The person has agreed to replace it. When it cannot be removed, the start tells why.
  static_cast<void>(services_.files.remove(path));
  const int height = videoHeight(canvasAspect());
  const auto started =
      recorder_.start(path, kVideoWidth, height, kFramesPerSecond,
                      [this](const pixels::DrawingContext& context, pixels::Size size) {
                        drawVideoFrame(context, size);
                      });
  if (!started) {
    report("Recording could not start.", started.error().description);
    return;
  }
  videoPicture_ = pixels::Surface(kVideoWidth, height);
  recordStart_ = services_.clock.now();
  recordSeconds_.set(0);
  isRecording_.set(true);
}

void AppModel::drawVideoFrame(const pixels::DrawingContext& context, pixels::Size size) {
  const auto ground = background() == render::CanvasBackground::transparent
                          ? render::CanvasBackground::black
                          : background();
  const render::RenderScene scene = makeScene(ground, true);
  // The first frame waits until the painting that is there is built up. When it is built up anew
  // later (the glow switched), the video shows what the window shows meanwhile.
  bool isComplete = false;
  do {
    isComplete = videoCanvas_.draw(scene, {videoPicture_.view()}, size).isComplete;
  } while (!isComplete && !videoHasBegun_);
  videoHasBegun_ = true;
  for (int y = 0; y < videoPicture_.height(); ++y)
    std::copy_n(videoPicture_.row(y), 4 * videoPicture_.width(), context.pixels.row(y));
}

void AppModel::releaseVideoCanvas() {
  videoCanvas_ = render::LiveCanvas();
  videoPicture_ = pixels::Surface();
  videoHasBegun_ = false;
}

void AppModel::stopRecording() {
  isRecording_.set(false);
  releaseVideoCanvas();
  recorder_.stop([this](const platform::Result<std::filesystem::path>& saved) {
    if (!saved) report("The video could not be saved.", saved.error().description);
  });
}

void AppModel::closeRecordings() {
  recorder_.stop([](const platform::Result<std::filesystem::path>&) {});
  recorder_.waitUntilFinished();
}

void AppModel::finishRecordingAfterFailure(const std::string& message) {
  isRecording_.set(false);
  releaseVideoCanvas();
  recorder_.stop([](const platform::Result<std::filesystem::path>&) {});
  report("Recording stopped because of an error.", message);
}

}  // namespace model
