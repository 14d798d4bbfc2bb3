#pragma once

#include <QMainWindow>

#include "model/app_model.h"
#include "platform/timer_factory.h"

namespace app {

/// The program's window with its menus, which only call the model.
class MainWindow final : public QMainWindow {
 public:
  /// `model` and `timers` outlive this.
  MainWindow(model::AppModel& model, platform::TimerFactory& timers);

 private:
  void addFileMenu();
  void addEditMenu();
  void addPaintingMenu();
  void addHelpMenu();
  void showAbout();

  model::AppModel& model_;
};

}  // namespace app
