#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/capture_session.h"

namespace support {

/// The one camera of a machine, its ability and what became of it, all set and read by the test.
/// Frames, stops and returns happen when the test says so. The service outlives its sessions.
class FakeCapture final : public platform::CaptureService {
 public:
  bool present = true;
  std::string name = "Test Camera";
  std::optional<std::string> openError;  ///< Set: opening fails with this.
  bool offers1280x720 = true;
  bool takesInput = true;
  bool takesOutput = true;

  int inputsAdded = 0;
  int outputsAdded = 0;
  int starts = 0;
  bool running = false;
  std::vector<platform::CapturePreset> presets;

  std::unique_ptr<platform::CaptureSession> makeSession() override {
    return std::make_unique<Session>(*this);
  }
  std::unique_ptr<platform::CaptureDevice> defaultVideoDevice() override {
    if (!present) return nullptr;
    return std::make_unique<Device>(*this);
  }

  /// A sample arrives from the running camera, on its queue.
  void deliver(std::optional<pixels::PixelBuffer> sample) {
    if (!running || !queue_) return;
    queue_->post([handler = handler_, sample = std::move(sample)] { handler(sample); });
  }

  void failToStart(const std::string& detail) {
    running = false;
    if (events_.failedToStart) events_.failedToStart(detail);
  }

  /// The session ends without a word, as when a machine goes to sleep.
  void pause() { running = false; }

  void vanish(const std::string& detail) {
    present = false;
    fallSilent(detail);
  }

  /// The camera is still there, but nothing comes from it.
  void fallSilent(const std::string& detail) {
    running = false;
    if (events_.stopped) events_.stopped(detail);
  }

  void comeBack() {
    present = true;
    if (events_.returned) events_.returned();
  }

 private:
  class Input final : public platform::CaptureInput {};

  class Device final : public platform::CaptureDevice {
   public:
    explicit Device(FakeCapture& capture) : capture_(capture) {}
    std::string displayName() const override { return capture_.name; }
    platform::Result<std::unique_ptr<platform::CaptureInput>> open() override {
      if (capture_.openError) return platform::Error{*capture_.openError};
      return std::unique_ptr<platform::CaptureInput>(std::make_unique<Input>());
    }

   private:
    FakeCapture& capture_;
  };

  class Session final : public platform::CaptureSession {
   public:
    explicit Session(FakeCapture& capture) : capture_(capture) {}
    ~Session() override {
      capture_.running = false;
      capture_.queue_ = nullptr;
      capture_.handler_ = {};
    }
    void setEvents(platform::CaptureEvents events) override { capture_.events_ = events; }
    bool canUse(platform::CapturePreset, const platform::CaptureInput&) const override {
      return capture_.offers1280x720;
    }
    void use(platform::CapturePreset preset) override { capture_.presets.push_back(preset); }
    bool canAddInput(const platform::CaptureInput&) const override { return capture_.takesInput; }
    void addInput(std::unique_ptr<platform::CaptureInput> input) override {
      ++capture_.inputsAdded;
      input_ = std::move(input);
    }
    bool canAddOutput() const override { return capture_.takesOutput; }
    void addOutput(platform::SerialQueue& queue, platform::CaptureHandler handler) override {
      ++capture_.outputsAdded;
      capture_.queue_ = &queue;
      capture_.handler_ = std::move(handler);
    }
    bool isRunning() const override { return capture_.running; }
    void start() override {
      ++capture_.starts;
      capture_.running = true;
    }

   private:
    FakeCapture& capture_;
    std::unique_ptr<platform::CaptureInput> input_;
  };

  platform::CaptureEvents events_;
  platform::SerialQueue* queue_ = nullptr;
  platform::CaptureHandler handler_;
};

}  // namespace support
