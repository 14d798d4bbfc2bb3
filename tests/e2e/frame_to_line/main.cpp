// The real program with watches at its joints: for some seconds it paints what the camera shows,
// then it says how long everything took, from the camera's frame to the line on the screen.
// usage: frame_to_line SECONDS

#include <QApplication>
#include <QTimer>
#include <cstdlib>
#include <iostream>
#include <string>

#include "app/machine.h"
#include "app/main_window.h"
#include "tests/e2e/frame_to_line/timeline.h"
#include "tests/e2e/frame_to_line/watched_application.h"
#include "tests/e2e/frame_to_line/watched_detector.h"
#include "tests/e2e/frame_to_line/watched_queues.h"

namespace {

constexpr int kWarmUpMilliseconds = 3000;

}  // namespace

int main(int argc, char** argv) {
  using namespace frame_to_line;
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 0;
  if (seconds <= 0) {
    std::cerr << "usage: frame_to_line SECONDS\n";
    return 2;
  }
  Timeline timeline;
  QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
  WatchedApplication application(argc, argv, timeline);

  app::Machine machine;
  const platform::Services real = machine.services();
  WatchedDetector detector(real.handPoseRequest, timeline);
  WatchedQueues queues(real.queues, real.mainQueue, timeline);
  WatchedTimers timers(real.timers, timeline);
  model::AppModel model({.clock = real.clock,
                         .mainQueue = queues,
                         .timers = timers,
                         .savePanel = real.savePanel,
                         .pictureEncoder = real.pictureEncoder,
                         .files = real.files,
                         .videoWriters = real.videoWriters,
                         .calendar = real.calendar,
                         .folders = real.folders,
                         .handPoseRequest = detector,
                         .queues = queues,
                         .captureService = real.captureService,
                         .cameraPermission = real.cameraPermission,
                         .settingsPage = real.settingsPage,
                         .activation = real.activation});
  queues.setModel(model);
  app::MainWindow window(model, timers);
  window.show();

  QTimer::singleShot(kWarmUpMilliseconds, &application, [&] { timeline.startOver(); });
  QTimer::singleShot(kWarmUpMilliseconds + 1000 * seconds, &application, [&] {
    timeline.report(std::cout);
    std::cout << model.strokeCount() << " strokes; " << model.errorMessage().value_or("no error")
              << '\n';
    QCoreApplication::quit();
  });
  return QApplication::exec();
}
