#pragma once

#include <QAction>
#include <QMainWindow>
#include <QTimer>

#include "model/app_model.h"
#include "platform/timer_factory.h"
#include "ui/model_refresher.h"

namespace app {

/// The program's window with its menus, which only call the model. Closed while a recording runs,
/// it stops that and goes away, but the program ends only when the video is finished; if that
/// fails, the window comes back to tell.
class MainWindow final : public QMainWindow {
 public:
  /// `model` and `timers` outlive this.
  MainWindow(model::AppModel& model, platform::TimerFactory& timers);

  /// Stops the recording if one runs, and returns when no video is being finished any more. Handles
  /// events meanwhile, but none of the person's.
  void finishRecording();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void addFileMenu();
  void addEditMenu();
  void addPaintingMenu();
  void addHelpMenu();
  void showAbout();
  void refresh();
  void stopRecording();
  void quitWhenFinished();

  model::AppModel& model_;
  ui::ModelRefresher refresher_;
  QAction* record_ = nullptr;
  QTimer finishing_;  // Runs while the window is away and the video is being finished.
};

}  // namespace app
