#include <QApplication>

#include "app/main_window.h"
#include "platform/png/png_encoder.h"
#include "platform/qt/main_queue.h"
#include "platform/qt/save_panel.h"
#include "platform/qt/timer_factory.h"
#include "platform/std/atomic_file_store.h"
#include "platform/std/uptime_clock.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName(QStringLiteral("io.github.wavescribe.Wavescribe"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/wavescribe.svg")));

  platform::UptimeClock clock;
  platform::qt::MainQueue mainQueue;
  platform::qt::TimerFactory timers;
  platform::qt::SavePanel savePanel;
  platform::PngEncoder pictureEncoder;
  platform::AtomicFileStore files;
  model::AppModel model({
      .clock = clock,
      .mainQueue = mainQueue,
      .timers = timers,
      .savePanel = savePanel,
      .pictureEncoder = pictureEncoder,
      .files = files,
  });
  model.useMouseOnly();

  app::MainWindow window(model, timers);
  savePanel.setWindow(&window);
  window.show();
  return QApplication::exec();
}
