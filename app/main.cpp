#include <QApplication>

#include "app/machine.h"
#include "app/main_window.h"
#include "app/quit_signals.h"

int main(int argc, char** argv) {
  // A stroke wants every position of the mouse, also those of a moment when drawing was slow.
  QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
  QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName(QStringLiteral("io.github.wavescribe.Wavescribe"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/wavescribe.svg")));

  const app::QuitSignals quitSignals;
  app::Machine machine;
  model::AppModel model(machine.services());
  app::MainWindow window(model, machine.timers);
  machine.savePanel.setWindow(&window);
  window.show();
  // The end of the session does not wait for windows to close.
  QObject::connect(&application, &QGuiApplication::commitDataRequest, &window,
                   &app::MainWindow::stopRecording, Qt::DirectConnection);
  const int result = QApplication::exec();
  window.stopRecording();  // The model's end waits until the video is finished.
  return result;
}
