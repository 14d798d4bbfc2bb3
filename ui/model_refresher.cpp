#include "ui/model_refresher.h"

namespace ui {

ModelRefresher::ModelRefresher(model::AppModel& model, QObject* parent)
    : QObject(parent), model_(model) {
  model_.addObserver(*this);
}

ModelRefresher::~ModelRefresher() {
  model_.removeObserver(*this);
}

void ModelRefresher::willChange(model::Property) {
  if (isPending_) return;
  isPending_ = true;
  const auto announce = [this] {
    isPending_ = false;
    emit refreshed();
  };
  QMetaObject::invokeMethod(this, announce, Qt::QueuedConnection);
}

}  // namespace ui
