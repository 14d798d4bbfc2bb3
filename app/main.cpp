#include <QApplication>

#include "app/finish_at_exit.h"
#include "app/machine.h"
#include "app/main_window.h"
#include "app/quit_signals.h"

int main(int argc, char** argv) {
  app::QuitSignals quitSignals;
  // A stroke wants every position of the mouse, also those of a moment when drawing was slow.
  QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
  QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName(QStringLiteral("io.github.wavescribe.Wavescribe"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/wavescribe.svg")));

  quitSignals.listen();
  app::Machine machine;
  model::AppModel model(machine.services());
  app::MainWindow window(model, machine.timers);
  machine.savePanel.setWindow(&window);
  window.show();
  // The end of the session does not wait for windows to close.
  QObject::connect(&application, &QGuiApplication::commitDataRequest, &window,
                   &app::MainWindow::finishRecording, Qt::DirectConnection);
  const app::FinishAtExit finishing([&] { model.closeRecordings(); });
  const int result = QApplication::exec();
  model.closeRecordings();
  return result;
}
