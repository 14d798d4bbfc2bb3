#include <QApplication>

#include "app/main_window.h"
#include "app/quit_signals.h"
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
#include "platform/std/atomic_file_store.h"
#include "platform/std/system_calendar.h"
#include "platform/std/thread_queue_factory.h"
#include "platform/std/uptime_clock.h"

int main(int argc, char** argv) {
  // A stroke wants every position of the mouse, also those of a moment when drawing was slow.
  QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
  QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName(QStringLiteral("io.github.wavescribe.Wavescribe"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/wavescribe.svg")));

  const app::QuitSignals quitSignals;
  platform::UptimeClock clock;
  platform::qt::MainQueue mainQueue;
  platform::qt::TimerFactory timers;
  platform::qt::SavePanel savePanel;
  platform::PngEncoder pictureEncoder;
  platform::AtomicFileStore files;
  platform::ffmpeg::FfmpegVideoWriterFactory videoWriters;
  platform::SystemCalendar calendar;
  platform::qt::StandardFolders folders;
  platform::handpose::HandPoseDetector handPoseRequest;
  platform::ThreadQueueFactory queues;
  platform::gstreamer::GstCaptureService captureService;
  platform::portal::PortalCameraPermission cameraPermission(queues, mainQueue);
  platform::portal::DesktopSettingsPage settingsPage;
  platform::qt::Activation activation;
  model::AppModel model({
      .clock = clock,
      .mainQueue = mainQueue,
      .timers = timers,
      .savePanel = savePanel,
      .pictureEncoder = pictureEncoder,
      .files = files,
      .videoWriters = videoWriters,
      .calendar = calendar,
      .folders = folders,
      .handPoseRequest = handPoseRequest,
      .queues = queues,
      .captureService = captureService,
      .cameraPermission = cameraPermission,
      .settingsPage = settingsPage,
      .activation = activation,
  });

  app::MainWindow window(model, timers);
  savePanel.setWindow(&window);
  window.show();
  // The end of the session does not wait for windows to close.
  QObject::connect(&application, &QGuiApplication::commitDataRequest, &window,
                   &app::MainWindow::stopRecording, Qt::DirectConnection);
  const int result = QApplication::exec();
  window.stopRecording();  // The model's end waits until the video is finished.
  return result;
}
