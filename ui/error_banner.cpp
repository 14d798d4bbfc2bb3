#include "ui/error_banner.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/symbol.h"

namespace ui {
namespace {

constexpr int kPadding = 10;
constexpr double kCornerRadius = 10;
constexpr double kShadowRadius = 4;
constexpr double kShadowOpacity = 0.33;
constexpr int kSymbolSize = 20;
const QColor kWarningYellow(255, 204, 0);

QFont monospaced(TextStyle style) {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(fontOf(style).pointSizeF());
  return font;
}

/// A soft edge around `card`: ever larger and fainter outlines that add up to the shadow.
void drawShadow(QPainter& painter, const QRectF& card) {
  constexpr int kLayers = 8;
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgbF(0, 0, 0, static_cast<float>(kShadowOpacity / kLayers)));
  for (int layer = 1; layer <= kLayers; ++layer) {
    const double grow = kShadowRadius * 2 * layer / kLayers - kShadowRadius / 2;
    painter.drawRoundedRect(card.adjusted(-grow, -grow, grow, grow), kCornerRadius + grow,
                            kCornerRadius + grow);
  }
}

}  // namespace

ErrorBanner::ErrorBanner(model::AppModel& model, QWidget* parent) : QWidget(parent), model_(model) {
  setAccessibleName(QStringLiteral("Error"));
  auto* column = new QVBoxLayout(this);
  const int margin = kShadowRoom + kPadding;
  column->setContentsMargins(margin, margin, margin, margin);
  column->addLayout(makeRow());
  column->addWidget(makeDetails());
  hide();
  refresh();
}

void ErrorBanner::refresh() {
  const bool hasError = model_.errorMessage().has_value();
  if (hasError) {
    message_->setText(QString::fromStdString(*model_.errorMessage()));
    detailsText_->setText(QString::fromStdString(model_.errorDetails().value_or("No details.")));
    fitDetails();
  }
  if (hasError == isVisibleTo(parentWidget())) return;
  showDetails(false);
  setVisible(hasError);
}

void ErrorBanner::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF card = QRectF(rect()).adjusted(kShadowRoom, kShadowRoom, -kShadowRoom, -kShadowRoom);
  drawShadow(painter, card);
  painter.setBrush(palette().color(QPalette::Window));
  painter.drawRoundedRect(card, kCornerRadius, kCornerRadius);
}

void ErrorBanner::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  fitDetails();
}

QLayout* ErrorBanner::makeRow() {
  message_ = new TextLabel({}, TextStyle::body, TextColor::primary, this);
  message_->setWordWrap(true);
  toggle_ = new RoomyButton({}, this);
  connect(toggle_, &RoomyButton::clicked, this, [this] { showDetails(!areDetailsShown_); });
  auto* dismiss = new RoomyButton(QStringLiteral("Dismiss"), this);
  connect(dismiss, &RoomyButton::clicked, this, [this] { model_.dismissError(); });

  auto* row = new QHBoxLayout;
  row->addWidget(new SymbolView("exclamationmark.triangle.fill", kSymbolSize, kWarningYellow));
  row->addWidget(message_, 1);
  row->addWidget(toggle_);
  row->addWidget(dismiss);
  return row;
}

QScrollArea* ErrorBanner::makeDetails() {
  detailsText_ = new TextLabel({}, TextStyle::caption);
  detailsText_->setFont(monospaced(TextStyle::caption));
  detailsText_->setWordWrap(true);
  detailsText_->setAlignment(Qt::AlignLeading | Qt::AlignTop);
  detailsText_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  detailsText_->setAccessibleName(QStringLiteral("Error details"));
  details_ = new QScrollArea(this);
  details_->setFrameShape(QFrame::NoFrame);
  details_->setWidgetResizable(true);
  details_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  details_->setFocusPolicy(Qt::NoFocus);
  details_->setWidget(detailsText_);
  return details_;
}

void ErrorBanner::showDetails(bool show) {
  areDetailsShown_ = show;
  toggle_->setText(show ? QStringLiteral("Hide Details") : QStringLiteral("Show Details"));
  details_->setVisible(show);
}

void ErrorBanner::fitDetails() {
  const int width = this->width() - 2 * (kShadowRoom + kPadding);
  const int needed = detailsText_->heightForWidth(std::max(width, 1));
  details_->setFixedHeight(std::min(needed, kMaxDetailsHeight));
}

}  // namespace ui
