#include "ui/recording_indicator.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPainter>

namespace ui {
namespace {

constexpr int kDotSize = 10;
constexpr int kSpacing = 6;
constexpr QColor kDotColor(255, 59, 48);

class Dot final : public QWidget {
 public:
  explicit Dot(QWidget* parent) : QWidget(parent) { setFixedSize(kDotSize, kDotSize); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kDotColor);
    painter.drawEllipse(rect());
  }
};

/// The desktop's font for digits that do not jitter, as large as other text.
QFont monospacedBody() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(fontOf(TextStyle::body).pointSizeF());
  return font;
}

}  // namespace

QString elapsedTime(std::int64_t seconds) {
  return QStringLiteral("%1:%2")
      .arg(seconds / 60, 2, 10, QLatin1Char('0'))
      .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

RecordingIndicator::RecordingIndicator(QWidget* parent)
    : QWidget(parent), time_(new TextLabel(elapsedTime(0), TextStyle::body)) {
  time_->setFont(monospacedBody());
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(kSpacing);
  row->addWidget(new Dot(this));
  row->addWidget(time_);
}

void RecordingIndicator::setSeconds(std::int64_t seconds) {
  time_->setText(elapsedTime(seconds));
}

}  // namespace ui
