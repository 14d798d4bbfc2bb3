#pragma once

#include <QWidget>

#include "model/app_model.h"
#include "platform/timer_factory.h"
#include "ui/clear_confirmation.h"
#include "ui/error_banner.h"
#include "ui/first_run_view.h"
#include "ui/model_refresher.h"
#include "ui/paint_view.h"
#include "ui/save_choice.h"
#include "ui/sidebar.h"
#include "ui/status_bar.h"
#include "ui/top_bar.h"

namespace ui {

/// What the window holds: the drawing area between the top bar and the status bar, the settings to
/// its right, the dialogs that the model's flags open, and over everything the first-run view while
/// the camera's permission is unsettled. Looks the permission up when it is first shown.
class ContentView final : public QWidget {
 public:
  /// `model` and `timers` outlive this.
  ContentView(model::AppModel& model, platform::TimerFactory& timers, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QLayout* makeDrawingArea();
  void refresh();
  void refreshFirstRun();

  model::AppModel& model_;
  ModelRefresher refresher_;
  TopBar* topBar_;
  PaintView* paintView_;
  ErrorBanner* errorBanner_;
  StatusBar* statusBar_;
  Sidebar* sidebar_;
  ClearConfirmation* clearConfirmation_;
  SaveChoice* saveChoice_;
  FirstRunView* firstRun_;
  bool wasShown_ = false;
};

}  // namespace ui
