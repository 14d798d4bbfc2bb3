#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <utility>

#include "platform/activation.h"
#include "platform/camera_permission.h"
#include "platform/ffmpeg/ffmpeg_video_writer.h"
#include "platform/png/png_encoder.h"
#include "platform/save_panel.h"
#include "platform/services.h"
#include "platform/settings_page.h"
#include "platform/standard_folders.h"
#include "platform/std/atomic_file_store.h"
#include "platform/std/system_calendar.h"
#include "tools/replay/clip_camera.h"
#include "tools/replay/event_loop.h"
#include "tools/replay/patient_video_writer.h"

namespace replay {

/// Nobody minds being filmed.
class GrantedPermission final : public platform::CameraPermission {
 public:
  void read(std::function<void(platform::CameraAuthorization)> answer) override {
    answer(platform::CameraAuthorization::authorized);
  }
  void request(std::function<void(bool)> answer) override { answer(true); }
};

/// Answers with a path that was known before the question.
class FixedSavePanel final : public platform::SavePanel {
 public:
  void setAnswer(std::filesystem::path path) { answer_ = std::move(path); }
  std::optional<std::filesystem::path> choose(const platform::SavePanelRequest&) override {
    return answer_;
  }

 private:
  std::optional<std::filesystem::path> answer_;
};

/// Nobody sits before the machine who could leave it and come back.
class NoDesktop final : public platform::Activation,
                        public platform::SettingsPage,
                        public platform::StandardFolders {
 public:
  void setOnBecameActive(std::function<void()>) override {}
  void openCameraPrivacy() override {}
  std::optional<std::filesystem::path> movies() const override { return std::nullopt; }
};

/// The machine that a replay's model runs on: its camera is the clip, its time the clip's, and its
/// files are real. Outlives the model.
class Machine {
 public:
  /// `detector` outlives the machine.
  explicit Machine(platform::HandPoseRequest& detector) : detector_(detector) {}

  platform::Services services();

  EventLoop loop;
  ClipCamera camera;
  FixedSavePanel savePanel;

 private:
  platform::HandPoseRequest& detector_;
  GrantedPermission permission_;
  NoDesktop desktop_;
  platform::PngEncoder pictureEncoder_;
  platform::AtomicFileStore files_;
  platform::SystemCalendar calendar_;
  platform::ffmpeg::FfmpegVideoWriterFactory encoders_;
  PatientVideoWriterFactory videoWriters_{encoders_};
};

}  // namespace replay
