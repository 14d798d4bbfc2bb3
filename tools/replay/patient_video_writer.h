#pragma once

#include <filesystem>
#include <memory>

#include "platform/video_writer.h"

namespace replay {

/// Makes video writers that are always ready for the next frame because they wait until they are:
/// a replay has time, and a frame that a hurried recording would leave out belongs in its video.
class PatientVideoWriterFactory final : public platform::VideoWriterFactory {
 public:
  /// `factory` outlives this.
  explicit PatientVideoWriterFactory(platform::VideoWriterFactory& factory) : factory_(factory) {}

  platform::Result<std::unique_ptr<platform::VideoWriter>> make(
      const std::filesystem::path& path) override;

 private:
  platform::VideoWriterFactory& factory_;
};

}  // namespace replay
