#pragma once

#include <QPointer>
#include <QSocketNotifier>

namespace app {

/// Ends the event loop when the system asks the program to end (SIGTERM, SIGHUP, SIGINT), so that
/// main() comes to its end and a running recording is finished. Make one before anything that
/// starts threads, a QApplication among them: a thread that was there before would take the signal
/// and end the program.
class QuitSignals {
 public:
  QuitSignals();
  ~QuitSignals();
  QuitSignals(const QuitSignals&) = delete;
  QuitSignals& operator=(const QuitSignals&) = delete;

  /// From now on the event loop is ended. Needs the application.
  void listen();

 private:
  void quit();

  int descriptor_;
  QPointer<QSocketNotifier> notifier_;  // Owned by the application.
};

}  // namespace app
