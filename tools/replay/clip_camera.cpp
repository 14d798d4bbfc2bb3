#include "tools/replay/clip_camera.h"

#include <string>
#include <utility>

namespace replay {
namespace {

class ClipInput final : public platform::CaptureInput {};

class ClipDevice final : public platform::CaptureDevice {
 public:
  std::string displayName() const override { return "Clip"; }
  platform::Result<std::unique_ptr<platform::CaptureInput>> open() override {
    return std::unique_ptr<platform::CaptureInput>(std::make_unique<ClipInput>());
  }
};

}  // namespace

/// Takes the clip's frames in their own size.
class ClipCamera::Session final : public platform::CaptureSession {
 public:
  explicit Session(ClipCamera& camera) : camera_(camera) {}
  ~Session() override {
    if (isRunning()) camera_.running_ = nullptr;
  }

  void setEvents(platform::CaptureEvents) override {}
  bool canUse(platform::CapturePreset, const platform::CaptureInput&) const override {
    return false;
  }
  void use(platform::CapturePreset) override {}
  bool canAddInput(const platform::CaptureInput&) const override { return true; }
  void addInput(std::unique_ptr<platform::CaptureInput> input) override {
    input_ = std::move(input);
  }
  bool canAddOutput() const override { return true; }
  void addOutput(platform::SerialQueue& queue, platform::CaptureHandler handler) override {
    queue_ = &queue;
    handler_ = std::move(handler);
  }
  bool isRunning() const override { return camera_.running_ == this; }
  void start() override { camera_.running_ = this; }

  void deliver(const pixels::PixelBuffer& frame) {
    queue_->post([handler = handler_, frame] { handler(frame); });
  }

 private:
  ClipCamera& camera_;
  std::unique_ptr<platform::CaptureInput> input_;
  platform::SerialQueue* queue_ = nullptr;
  platform::CaptureHandler handler_;
};

std::unique_ptr<platform::CaptureSession> ClipCamera::makeSession() {
  return std::make_unique<Session>(*this);
}

std::unique_ptr<platform::CaptureDevice> ClipCamera::defaultVideoDevice() {
  return std::make_unique<ClipDevice>();
}

void ClipCamera::deliver(const pixels::PixelBuffer& frame) {
  if (running_ != nullptr) running_->deliver(frame);
}

}  // namespace replay
