#include "tools/replay/patient_video_writer.h"

#include <chrono>
#include <functional>
#include <optional>
#include <thread>
#include <utility>

namespace replay {
namespace {

using namespace std::chrono_literals;

/// An encoder that takes longer over one frame is not going to take it.
constexpr auto kLongestWait = 30s;

class PatientVideoWriter final : public platform::VideoWriter {
 public:
  explicit PatientVideoWriter(std::unique_ptr<platform::VideoWriter> writer)
      : writer_(std::move(writer)) {}

  Status status() const override { return writer_->status(); }
  std::optional<platform::Error> error() const override { return writer_->error(); }
  bool addInput(const platform::VideoSettings& settings) override {
    return writer_->addInput(settings);
  }
  bool startWriting() override { return writer_->startWriting(); }
  void startSession(platform::MediaTime start) override { writer_->startSession(start); }

  bool isReadyForMoreMediaData() const override {
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    while (!writer_->isReadyForMoreMediaData()) {
      if (status() != Status::writing || std::chrono::steady_clock::now() > end) return false;
      std::this_thread::sleep_for(1ms);
    }
    return true;
  }

  std::optional<pixels::Surface> takeBuffer() override { return writer_->takeBuffer(); }
  bool append(pixels::Surface frame, platform::MediaTime time) override {
    return writer_->append(std::move(frame), time);
  }
  void markAsFinished() override { writer_->markAsFinished(); }
  void finishWriting(std::function<void()> completion) override {
    writer_->finishWriting(std::move(completion));
  }

 private:
  std::unique_ptr<platform::VideoWriter> writer_;
};

}  // namespace

platform::Result<std::unique_ptr<platform::VideoWriter>> PatientVideoWriterFactory::make(
    const std::filesystem::path& path) {
  auto writer = factory_.make(path);
  if (!writer) return writer.error();
  return std::unique_ptr<platform::VideoWriter>(
      std::make_unique<PatientVideoWriter>(std::move(writer).value()));
}

}  // namespace replay
