#pragma once

#include <QScrollArea>
#include <QWidget>

#include "model/app_model.h"
#include "ui/roomy_button.h"
#include "ui/text_label.h"

namespace ui {

/// The model's error on a card with a soft shadow, its details on request. Visible only while there
/// is an error.
class ErrorBanner final : public QWidget {
 public:
  static constexpr int kShadowRoom = 8;          ///< Around the card, in points.
  static constexpr int kMaxDetailsHeight = 100;  ///< Longer details scroll.

  explicit ErrorBanner(model::AppModel& model, QWidget* parent = nullptr);

  /// Shows the model's present values.
  void refresh();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QLayout* makeRow();
  QScrollArea* makeDetails();
  void showDetails(bool show);
  void fitDetails();

  model::AppModel& model_;
  TextLabel* message_;
  RoomyButton* toggle_;
  QScrollArea* details_;
  TextLabel* detailsText_;
  bool areDetailsShown_ = false;
};

}  // namespace ui
