#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QScrollArea>
#include <QVBoxLayout>

#include "model/app_model.h"
#include "ui/segmented_picker.h"
#include "ui/slider.h"
#include "ui/text_label.h"

namespace ui {

/// A text above a slider, enabled and disabled together.
struct SliderGroup {
  QWidget* box = nullptr;
  TextLabel* label = nullptr;
  Slider* slider = nullptr;
};

/// The settings, each bound to its property of the model.
class Sidebar final : public QScrollArea {
 public:
  static constexpr int kWidth = 250;

  explicit Sidebar(model::AppModel& model, QWidget* parent = nullptr);

  /// Shows the model's present values.
  void refresh();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void addCanvas(QVBoxLayout& column);
  void addPen(QVBoxLayout& column);
  void addFadeOut(QVBoxLayout& column);
  void addColorGesture(QVBoxLayout& column);

  model::AppModel& model_;
  SegmentedPicker* background_;
  SliderGroup dim_;
  QCheckBox* glow_;
  QCheckBox* widthFromDistance_;
  SliderGroup manualWidth_;
  QCheckBox* fadeEnabled_;
  SliderGroup fadeSeconds_;
  QComboBox* colorHand_;
};

}  // namespace ui
