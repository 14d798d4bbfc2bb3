#pragma once

#include "platform/ffmpeg/ffmpeg_video_writer.h"
#include "platform/gstreamer/gst_capture_service.h"
#include "platform/handpose/hand_pose_detector.h"
#include "platform/png/png_encoder.h"
#include "platform/portal/desktop_settings_page.h"
#include "platform/portal/portal_camera_permission.h"
#include "platform/qt/activation.h"
#include "platform/qt/main_queue.h"
#include "platform/qt/save_panel.h"
#include "platform/qt/standard_folders.h"
#include "platform/qt/timer_factory.h"
#include "platform/services.h"
#include "platform/std/atomic_file_store.h"
#include "platform/std/system_calendar.h"
#include "platform/std/thread_queue_factory.h"
#include "platform/std/uptime_clock.h"

namespace app {

/// The desktop that the program runs on. Needs the QApplication; outlives the model.
class Machine {
 public:
  platform::Services services();

  platform::qt::TimerFactory timers;
  platform::qt::SavePanel savePanel;

 private:
  platform::UptimeClock clock_;
  platform::qt::MainQueue mainQueue_;
  platform::PngEncoder pictureEncoder_;
  platform::AtomicFileStore files_;
  platform::ffmpeg::FfmpegVideoWriterFactory videoWriters_;
  platform::SystemCalendar calendar_;
  platform::qt::StandardFolders folders_;
  platform::handpose::HandPoseDetector handPoseRequest_;
  platform::ThreadQueueFactory queues_;
  platform::gstreamer::GstCaptureService captureService_;
  platform::portal::PortalCameraPermission cameraPermission_{queues_, mainQueue_};
  platform::portal::DesktopSettingsPage settingsPage_;
  platform::qt::Activation activation_;
};

}  // namespace app
