#pragma once

#include "platform/services.h"
#include "tests/support/fake_activation.h"
#include "tests/support/fake_calendar.h"
#include "tests/support/fake_camera_permission.h"
#include "tests/support/fake_capture.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_file_store.h"
#include "tests/support/fake_hand_pose_request.h"
#include "tests/support/fake_main_queue.h"
#include "tests/support/fake_picture_encoder.h"
#include "tests/support/fake_save_panel.h"
#include "tests/support/fake_serial_queue.h"
#include "tests/support/fake_settings_page.h"
#include "tests/support/fake_standard_folders.h"
#include "tests/support/fake_timer_factory.h"
#include "tests/support/fake_video_writer.h"

namespace support {

/// A whole machine of fakes. Make it before what it is given to, so that it outlives that.
struct FakePlatform {
  FakeClock clock;
  FakeMainQueue mainQueue;
  FakeSerialQueueFactory serialQueues;
  FakeTimerFactory timers;
  FakeSavePanel savePanel;
  FakePictureEncoder pictureEncoder;
  FakeFileStore files;
  FakeVideoWriterFactory videoWriters;
  FakeCalendar calendar;
  FakeStandardFolders folders;
  FakeHandPoseRequest handPoseRequest;
  FakeCapture capture;
  FakeCameraPermission cameraPermission;
  FakeSettingsPage settingsPage;
  FakeActivation activation;

  platform::Services services() { return services(savePanel); }
  /// With another save panel, which outlives what it is given to.
  platform::Services services(platform::SavePanel& panel) { return services(panel, videoWriters); }
  /// With video writers of another kind, too.
  platform::Services services(platform::SavePanel& panel, platform::VideoWriterFactory& writers) {
    return services(panel, writers, cameraPermission);
  }
  /// With another permission.
  platform::Services services(platform::CameraPermission& permission) {
    return services(savePanel, videoWriters, permission);
  }

 private:
  platform::Services services(platform::SavePanel& panel, platform::VideoWriterFactory& writers,
                              platform::CameraPermission& permission) {
    return {
        .clock = clock,
        .mainQueue = mainQueue,
        .timers = timers,
        .savePanel = panel,
        .pictureEncoder = pictureEncoder,
        .files = files,
        .videoWriters = writers,
        .calendar = calendar,
        .folders = folders,
        .handPoseRequest = handPoseRequest,
        .queues = serialQueues,
        .captureService = capture,
        .cameraPermission = permission,
        .settingsPage = settingsPage,
        .activation = activation,
    };
  }
};

}  // namespace support
