#include "platform/gstreamer/gst_capture_session.h"

#include <pthread.h>

#include <chrono>
#include <condition_variable>
#include <utility>

#include "platform/gstreamer/camera_format.h"
#include "platform/gstreamer/frame_delivery.h"
#include "platform/gstreamer/gst_camera_input.h"
#include "platform/gstreamer/patience.h"

namespace platform::gstreamer {
namespace {

constexpr auto kBetweenLooks = std::chrono::milliseconds(100);
// Some cameras need seconds for their first picture; after that the slowest give five a second.
constexpr int kLooksForFirstFrame = 50;
constexpr int kLooksWithoutFrame = 14;
constexpr int kLooksOfGoodWork = 100;

bool isInstalled(const char* element) {
  GstElementFactory* factory = gst_element_factory_find(element);
  if (factory) gst_object_unref(factory);
  return factory != nullptr;
}

Handle<GstCaps> formatFor(const Camera& camera, std::optional<CapturePreset> preset) {
  const Handle<GstCaps> formats = camera.formats();
  auto format = CameraFormat::choose(formats.get(), preset == CapturePreset::hd1280x720);
  // A camera that came in place of another one may not have the preset's size.
  return format ? std::move(format) : CameraFormat::choose(formats.get(), false);
}

// Ends it. One that cannot be ended is left to its fate.
void letGo(std::shared_ptr<CameraPipeline> pipeline) {
  if (!pipeline) return;
  pipeline->silence();
  begin([ended = std::move(pipeline)]() mutable { ended.reset(); }).wait_for(kPatience);
}

}  // namespace

GstCaptureSession::GstCaptureSession(CameraCatalog& catalog) : catalog_(catalog) {}

GstCaptureSession::~GstCaptureSession() {
  watcher_ = {};  // Before what it looks at.
  letGo(std::move(pipeline_));
}

void GstCaptureSession::setEvents(CaptureEvents events) {
  const std::lock_guard guard(eventsLock_);
  events_ = std::move(events);
}

bool GstCaptureSession::canUse(CapturePreset preset, const CaptureInput& input) const {
  const auto formats = dynamic_cast<const GstCameraInput&>(input).camera().formats();
  switch (preset) {
    case CapturePreset::hd1280x720:
      return CameraFormat::offers(formats.get(), 1280, 720);
  }
  return false;
}

void GstCaptureSession::use(CapturePreset preset) {
  const std::lock_guard guard(lock_);
  preset_ = preset;
}

bool GstCaptureSession::canAddInput(const CaptureInput& input) const {
  const auto* camera = dynamic_cast<const GstCameraInput*>(&input);
  return camera && CameraFormat::choose(camera->camera().formats().get(), false);
}

void GstCaptureSession::addInput(std::unique_ptr<CaptureInput> input) {
  const std::lock_guard guard(lock_);
  camera_ = dynamic_cast<const GstCameraInput&>(*input).camera();
}

bool GstCaptureSession::canAddOutput() const {
  const std::lock_guard guard(lock_);
  return !queue_ && isInstalled("videoconvert") && isInstalled("appsink");
}

void GstCaptureSession::addOutput(SerialQueue& queue, CaptureHandler handler) {
  const std::lock_guard guard(lock_);
  queue_ = &queue;
  handler_ = std::move(handler);
}

bool GstCaptureSession::isRunning() const {
  const std::lock_guard guard(lock_);
  return pipeline_ != nullptr;
}

void GstCaptureSession::start() {
  Guard guard(lock_);
  if (pipeline_ || !queue_) return;
  if (!watcher_.joinable()) {
    watcher_ = std::jthread([this](const std::stop_token& stop) { watch(stop); });
  }
  returnWatch_.settle();
  if (const auto started = run(); !started) end(std::move(guard), started.error().description);
}

Result<void> GstCaptureSession::run() {
  if (!camera_) camera_ = catalog_.defaultCamera();
  if (!camera_) return Error{"No camera is connected."};
  const Handle<GstCaps> format = formatFor(*camera_, preset_);
  if (!format) return Error{camera_->displayName() + " delivers no picture that can be read."};
  auto made = CameraPipeline::make(*camera_, format.get(),
                                   std::make_shared<FrameDelivery>(*queue_, handler_));
  if (!made) return made.error();
  auto pipeline = std::move(made).value();
  const auto played = within(kPatience, [playing = pipeline]() mutable {
    return std::exchange(playing, nullptr)->play();
  });
  if (!played) {
    pipeline->silence();
    pipeline->interruptPlay();
    letGo(std::move(pipeline));
    wasAccepted_ = true;
    return Error{camera_->displayName() + " does not answer."};
  }
  if (!*played) {
    letGo(std::move(pipeline));
    return played->error();
  }
  pipeline_ = std::move(pipeline);
  framesSeen_ = 0;
  looks_ = 0;
  silentLooks_ = 0;
  return {};
}

void GstCaptureSession::watch(const std::stop_token& stop) {
  pthread_setname_np(pthread_self(), "camera.watch");
  std::mutex sleeping;
  std::condition_variable_any wake;
  while (!stop.stop_requested()) {
    look();
    std::unique_lock sleep(sleeping);
    wake.wait_for(sleep, stop, kBetweenLooks, [] { return false; });
  }
}

void GstCaptureSession::look() {
  Guard guard(lock_);
  if (pipeline_) {
    if (const auto why = trouble()) end(std::move(guard), *why);
    return;
  }
  if (!returnWatch_.isWaiting()) return;
  if (!returnWatch_.look(catalog_.defaultCamera().has_value())) return;
  guard.unlock();
  const std::lock_guard telling(eventsLock_);
  if (events_.returned) events_.returned();
}

// Looks are counted instead of seconds: a machine that slept or a program that was held up is no
// camera that stopped.
std::optional<std::string> GstCaptureSession::trouble() {
  if (auto failure = pipeline_->failure()) return failure;
  const std::uint64_t frames = pipeline_->arrived();
  silentLooks_ = frames == framesSeen_ ? silentLooks_ + 1 : 0;
  framesSeen_ = frames;
  const bool isConnected = catalog_.lists(*camera_);
  const bool isSilent = silentLooks_ >= (frames == 0 ? kLooksForFirstFrame : kLooksWithoutFrame);
  wasAccepted_ = wasAccepted_ || frames > 0 || !isConnected || isSilent;
  if (frames > 0 && ++looks_ == kLooksOfGoodWork) returnWatch_.forgive();
  if (!isConnected) return camera_->displayName() + " was disconnected.";
  if (!isSilent) return std::nullopt;
  return camera_->displayName() +
         (frames == 0 ? " delivers no picture." : " delivers no more pictures.");
}

void GstCaptureSession::end(Guard guard, const std::string& why) {
  letGo(std::move(pipeline_));
  camera_.reset();
  const bool wasAccepted = wasAccepted_;
  if (wasAccepted) returnWatch_.lose(catalog_.defaultCamera().has_value());
  guard.unlock();
  const std::lock_guard telling(eventsLock_);
  const auto& event = wasAccepted ? events_.stopped : events_.failedToStart;
  if (event) event(why);
}

}  // namespace platform::gstreamer
