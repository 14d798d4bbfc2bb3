#include "ui/first_run_view.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>

#include "ui/roomy_button.h"
#include "ui/symbol.h"

namespace ui {
namespace {

using Kind = model::CameraState::Kind;

constexpr int kMaxCardWidth = 560;
constexpr int kCardPadding = 30;
constexpr int kItemSpacing = 16;
constexpr int kListSpacing = 6;
constexpr int kSymbolSize = 56;
constexpr int kListSymbolSize = 18;
constexpr float kVeil = 0.97F;
const QColor kOrangeOnLight(196, 89, 0);
const QColor kOrangeOnDark(255, 159, 10);

QString messageFor(Kind kind) {
  switch (kind) {
    case Kind::denied:
      return QStringLiteral(
          "Camera access is turned off for Wavescribe. Turn it on in System Settings, then come "
          "back to this window.");
    case Kind::restricted:
      return QStringLiteral(
          "Camera access is restricted on this Mac (for example by a device policy), so "
          "Wavescribe cannot use it.");
    default:
      return {};
  }
}

TextLabel* wrapped(const QString& text, TextStyle style) {
  auto* label = new TextLabel(text, style);
  label->setWordWrap(true);
  return label;
}

}  // namespace

FirstRunView::FirstRunView(model::AppModel& model, QWidget* parent)
    : QWidget(parent), model_(model) {
  setAccessibleName(QStringLiteral("Welcome"));
  setFocusPolicy(Qt::StrongFocus);
  auto* row = new QHBoxLayout;
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch(1);
  row->addWidget(makeCard(), kMaxCardWidth);
  row->addStretch(1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addStretch(1);
  column->addLayout(row);
  column->addStretch(1);
  for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* shortcut = new QShortcut(key, this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this, &FirstRunView::pressDefault);
  }
  hide();
  refresh();
}

bool FirstRunView::belongsTo(const model::CameraState& state) {
  return state.kind == Kind::needsPermission || state.kind == Kind::denied ||
         state.kind == Kind::restricted;
}

void FirstRunView::refresh() {
  const Kind kind = model_.cameraState().kind;
  const bool isWanted = belongsTo(model_.cameraState());
  if (isWanted) {
    message_->setText(messageFor(kind));
    message_->setVisible(kind != Kind::needsPermission);
    allow_->setVisible(kind == Kind::needsPermission);
    openSettings_->setVisible(kind != Kind::needsPermission);
    // Settings cannot lift a policy, so the mouse is the way on then.
    default_ = kind == Kind::restricted ? mouseOnly_
               : kind == Kind::denied   ? openSettings_
                                        : allow_;
    for (QPushButton* button : {allow_, openSettings_, mouseOnly_}) {
      button->setDefault(button == default_);
    }
  }
  if (isWanted == isVisibleTo(parentWidget())) return;
  setVisible(isWanted);
  if (isWanted) setFocus();
}

void FirstRunView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QColor veil = palette().color(QPalette::Window);
  veil.setAlphaF(kVeil);
  painter.fillRect(rect(), veil);
}

QWidget* FirstRunView::makeCard() {
  auto* card = new QWidget;
  card->setMaximumWidth(kMaxCardWidth);
  auto* title = wrapped(QStringLiteral("Welcome to Wavescribe"), TextStyle::largeTitle);
  title->setAlignment(Qt::AlignCenter);
  auto* introduction =
      wrapped(QStringLiteral(
                  "Paint in the air: pinch your thumb and finger to draw, open your hand to stop."),
              TextStyle::body);
  introduction->setAlignment(Qt::AlignCenter);
  message_ = wrapped({}, TextStyle::body);
  message_->setAlignment(Qt::AlignCenter);
  QPalette colours = message_->palette();
  const bool isDark = colours.color(QPalette::Window).lightness() < 128;
  colours.setColor(QPalette::WindowText, isDark ? kOrangeOnDark : kOrangeOnLight);
  message_->setPalette(colours);

  auto* column = new QVBoxLayout(card);
  column->setContentsMargins(kCardPadding, kCardPadding, kCardPadding, kCardPadding);
  column->setSpacing(kItemSpacing);
  column->addWidget(new SymbolView("hand.draw", kSymbolSize, QPalette::Highlight), 0,
                    Qt::AlignHCenter);
  column->addWidget(title);
  column->addWidget(introduction);
  column->addLayout(makePrivacyList());
  column->addWidget(message_);
  column->addLayout(makeButtons());
  return card;
}

QLayout* FirstRunView::makePrivacyList() {
  struct Item {
    const char* symbol;
    QString text;
  };
  const Item items[] = {
      {"lock.shield", QStringLiteral("Your camera picture is analysed live on this Mac.")},
      {"externaldrive.badge.xmark",
       QStringLiteral("It is never saved or sent anywhere unless you save an image or video "
                      "yourself.")},
      {"wifi.slash", QStringLiteral("Wavescribe contains no network code.")},
  };
  auto* list = new QVBoxLayout;
  list->setSpacing(kListSpacing);
  for (const Item& item : items) {
    auto* row = new QHBoxLayout;
    row->addWidget(new SymbolView(item.symbol, kListSymbolSize, QPalette::WindowText), 0,
                   Qt::AlignTop);
    row->addWidget(wrapped(item.text, TextStyle::callout), 1);
    list->addLayout(row);
  }
  return list;
}

QLayout* FirstRunView::makeButtons() {
  const auto make = [this](const QString& text, void (model::AppModel::*action)()) {
    auto* button = new RoomyButton(text);
    connect(button, &QPushButton::clicked, this, [this, action] { (model_.*action)(); });
    return button;
  };
  allow_ = make(QStringLiteral("Allow Camera"), &model::AppModel::requestCamera);
  openSettings_ =
      make(QStringLiteral("Open System Settings"), &model::AppModel::openCameraSettings);
  mouseOnly_ = make(QStringLiteral("Use Mouse Only"), &model::AppModel::useMouseOnly);
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  for (QPushButton* button : {allow_, openSettings_, mouseOnly_}) row->addWidget(button);
  row->addStretch(1);
  return row;
}

void FirstRunView::pressDefault() {
  if (default_) default_->click();
}

}  // namespace ui
