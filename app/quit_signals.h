#pragma once

#include <QObject>

namespace app {

/// Ends the event loop when the system asks the program to end (SIGTERM, SIGHUP, SIGINT), so that
/// main() comes to its end and a running recording is finished. Make one, before any thread starts.
class QuitSignals final : public QObject {
 public:
  QuitSignals();
  ~QuitSignals() override;

 private:
  void quit();

  int descriptor_;
};

}  // namespace app
