#include "ui/segmented_picker.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPainter>

namespace ui {
namespace {

constexpr int kHeight = 28;
constexpr int kInset = 2;
constexpr double kRadius = 6;

class Segment final : public QAbstractButton {
 public:
  explicit Segment(const QString& title) {
    setText(title);
    setAccessibleName(title);
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  }

  QSize sizeHint() const override {
    return {fontMetrics().horizontalAdvance(text()) + 16, kHeight - 2 * kInset};
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF pill = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    if (isChecked()) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(palette().color(QPalette::Highlight));
      painter.drawRoundedRect(pill, kRadius - kInset, kRadius - kInset);
    } else if (isDown() || underMouse()) {
      QColor veil = palette().color(QPalette::WindowText);
      veil.setAlphaF(isDown() ? 0.14F : 0.07F);
      painter.setPen(Qt::NoPen);
      painter.setBrush(veil);
      painter.drawRoundedRect(pill, kRadius - kInset, kRadius - kInset);
    }
    if (hasFocus()) {
      painter.setPen(QPen(palette().color(QPalette::HighlightedText), 1.5));
      painter.setBrush(Qt::NoBrush);
      painter.drawRoundedRect(pill.adjusted(1.5, 1.5, -1.5, -1.5), kRadius - 3, kRadius - 3);
    }
    painter.setPen(palette().color(isChecked() ? QPalette::HighlightedText : QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignCenter, text());
  }
};

}  // namespace

SegmentedPicker::SegmentedPicker(const QStringList& titles, QWidget* parent) : QWidget(parent) {
  setFixedHeight(kHeight);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kInset, kInset, kInset, kInset);
  row->setSpacing(0);
  for (const QString& title : titles) {
    auto* segment = new Segment(title);
    segment->setAttribute(Qt::WA_Hover);
    group_.addButton(segment, static_cast<int>(row->count()));
    row->addWidget(segment, 1);
  }
  connect(&group_, &QButtonGroup::idClicked, this, &SegmentedPicker::chosen);
}

void SegmentedPicker::setChosen(int index) {
  if (QAbstractButton* segment = group_.button(index)) {
    segment->setChecked(true);
  } else if (QAbstractButton* last = group_.checkedButton()) {
    group_.setExclusive(false);
    last->setChecked(false);
    group_.setExclusive(true);
  }
}

void SegmentedPicker::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor edge = palette().color(QPalette::WindowText);
  edge.setAlphaF(0.22F);
  painter.setPen(QPen(edge, 1));
  painter.setBrush(palette().color(QPalette::Base));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
}

}  // namespace ui
