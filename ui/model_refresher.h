#pragma once

#include <QObject>

#include "model/app_model.h"

namespace ui {

/// Turns the model's announcements, which come before each change, into one signal after them: once
/// per turn of the event loop, however many properties changed. Main thread only.
class ModelRefresher final : public QObject, private model::AppModelObserver {
  Q_OBJECT

 public:
  /// `model` outlives this.
  explicit ModelRefresher(model::AppModel& model, QObject* parent = nullptr);
  ~ModelRefresher() override;

 signals:
  /// The model shows new values.
  void refreshed();

 private:
  void willChange(model::Property property) override;

  model::AppModel& model_;
  bool isPending_ = false;
};

}  // namespace ui
