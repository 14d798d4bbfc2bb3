#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/video_writer.h"

namespace support {

/// What fake video writers are to do, and what was asked of the newest of them.
struct VideoWriterScript {
  using Status = platform::VideoWriter::Status;

  // To be set by the test.
  std::optional<platform::Error> makingFails;
  bool acceptsInput = true;
  bool starts = true;
  bool ready = true;
  bool hasBuffers = true;
  bool appends = true;
  bool finishesAtOnce = true;
  Status status = Status::unknown;
  Status statusWhenFinished = Status::completed;
  std::optional<platform::Error> error;

  // What was seen.
  struct Frame {
    pixels::Surface picture;
    platform::MediaTime time;
  };
  std::filesystem::path path;
  platform::VideoSettings settings;
  std::optional<platform::MediaTime> sessionStart;
  std::vector<Frame> frames;
  std::vector<std::string> steps;  ///< In the order in which they were asked for.
  int made = 0;
  int ended = 0;

  /// Ends the finishing that waits, on the calling thread.
  void finish() {
    status = statusWhenFinished;
    if (const auto completion = std::exchange(finishing, nullptr)) completion();
  }
  std::function<void()> finishing;
};

/// Records what it is given. Buffers are filled with white, so that what was not drawn shows.
class FakeVideoWriter final : public platform::VideoWriter {
 public:
  explicit FakeVideoWriter(VideoWriterScript& script) : script_(script) { ++script_.made; }
  ~FakeVideoWriter() override { ++script_.ended; }

  Status status() const override { return script_.status; }
  std::optional<platform::Error> error() const override { return script_.error; }

  bool addInput(const platform::VideoSettings& settings) override {
    script_.steps.emplace_back("addInput");
    script_.settings = settings;
    return script_.acceptsInput;
  }
  bool startWriting() override {
    script_.steps.emplace_back("startWriting");
    script_.status = script_.starts ? Status::writing : Status::failed;
    return script_.starts;
  }
  void startSession(platform::MediaTime start) override {
    script_.steps.emplace_back("startSession");
    script_.sessionStart = start;
  }

  bool isReadyForMoreMediaData() const override { return script_.ready; }
  std::optional<pixels::Surface> takeBuffer() override {
    if (!script_.hasBuffers) return std::nullopt;
    pixels::Surface buffer(script_.settings.width, script_.settings.height);
    for (int y = 0; y < buffer.height(); ++y)
      std::fill_n(buffer.view().row(y), 4 * buffer.width(), std::uint8_t{255});
    return buffer;
  }
  bool append(pixels::Surface frame, platform::MediaTime time) override {
    if (!script_.appends) return false;
    script_.frames.push_back({std::move(frame), time});
    return true;
  }

  void markAsFinished() override { script_.steps.emplace_back("markAsFinished"); }
  void finishWriting(std::function<void()> completion) override {
    script_.steps.emplace_back("finishWriting");
    script_.finishing = std::move(completion);
    if (script_.finishesAtOnce) script_.finish();
  }

 private:
  VideoWriterScript& script_;
};

/// Makes fake writers that share one script.
class FakeVideoWriterFactory final : public platform::VideoWriterFactory {
 public:
  VideoWriterScript script;

  platform::Result<std::unique_ptr<platform::VideoWriter>> make(
      const std::filesystem::path& path) override {
    if (script.makingFails) return *script.makingFails;
    script.path = path;
    script.status = VideoWriterScript::Status::unknown;
    script.steps.clear();
    script.frames.clear();
    return std::unique_ptr<platform::VideoWriter>(std::make_unique<FakeVideoWriter>(script));
  }
};

}  // namespace support
