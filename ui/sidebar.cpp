#include "ui/sidebar.h"

#include <QEvent>
#include <QHBoxLayout>
#include <algorithm>
#include <array>

#include "ui/divider.h"

namespace ui {
namespace {

constexpr int kPadding = 14;
constexpr int kSpacing = 14;
constexpr int kGroupSpacing = 6;

// Positions per unit that make a slider continuous at this panel's width.
constexpr int kFinePerUnit = 1000;

QString titleOf(render::CanvasBackground background) {
  switch (background) {
    case render::CanvasBackground::camera:
      return QStringLiteral("Camera");
    case render::CanvasBackground::black:
      return QStringLiteral("Black");
    case render::CanvasBackground::white:
      return QStringLiteral("White");
    case render::CanvasBackground::transparent:
      return QStringLiteral("Transparent");
  }
  Q_UNREACHABLE();
}

QString titleOf(hand::ColorHand hand) {
  switch (hand) {
    case hand::ColorHand::left:
      return QStringLiteral("Left hand");
    case hand::ColorHand::right:
      return QStringLiteral("Right hand");
    case hand::ColorHand::either:
      return QStringLiteral("Either hand");
  }
  Q_UNREACHABLE();
}

template <class Choices, class Value>
int indexOf(const Choices& choices, Value value) {
  const auto found = std::find(choices.begin(), choices.end(), value);
  return found == choices.end() ? -1 : static_cast<int>(found - choices.begin());
}

void addHeading(QVBoxLayout& column, const QString& text) {
  column.addWidget(new TextLabel(text, TextStyle::headline));
}

void addNote(QVBoxLayout& column, const QString& text) {
  auto* note = new TextLabel(text, TextStyle::caption, TextColor::secondary);
  note->setWordWrap(true);
  column.addWidget(note);
}

QCheckBox* addToggle(QVBoxLayout& column, const QString& title) {
  auto* toggle = new QCheckBox(title);
  toggle->setFocusPolicy(Qt::TabFocus);
  column.addWidget(toggle);
  return toggle;
}

SliderGroup addSlider(QVBoxLayout& column, const QString& name, double minimum, double maximum,
                      int stepsPerUnit) {
  SliderGroup group;
  group.box = new QWidget;
  group.label = new TextLabel(name, TextStyle::body);
  group.slider = new Slider(minimum, maximum, stepsPerUnit);
  group.slider->setFocusPolicy(Qt::TabFocus);
  group.slider->setAccessibleName(name);
  auto* rows = new QVBoxLayout(group.box);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(kGroupSpacing);
  rows->addWidget(group.label);
  rows->addWidget(group.slider);
  column.addWidget(group.box);
  return group;
}

}  // namespace

Sidebar::Sidebar(model::AppModel& model, QWidget* parent) : QScrollArea(parent), model_(model) {
  setFixedWidth(kWidth);
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  setAccessibleName(QStringLiteral("Settings"));

  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(kPadding, kPadding, kPadding, kPadding);
  column->setSpacing(kSpacing);
  addCanvas(*column);
  column->addWidget(new Divider(Qt::Horizontal));
  addPen(*column);
  column->addWidget(new Divider(Qt::Horizontal));
  addFadeOut(*column);
  column->addWidget(new Divider(Qt::Horizontal));
  addColorGesture(*column);
  column->addStretch();
  setWidget(content);
  refresh();
}

void Sidebar::refresh() {
  const auto wholePart = [](double value) { return QString::number(static_cast<qint64>(value)); };

  background_->setChosen(indexOf(render::userChoices, model_.background()));
  dim_.slider->setAmount(model_.dim());
  dim_.box->setEnabled(model_.background() == render::CanvasBackground::camera);

  glow_->setChecked(model_.glow());
  widthFromDistance_->setChecked(model_.widthFromDistance());
  manualWidth_.label->setText(QStringLiteral("Width: ") + wholePart(model_.manualWidth()));
  manualWidth_.slider->setAmount(model_.manualWidth());
  manualWidth_.box->setEnabled(!model_.widthFromDistance());

  fadeEnabled_->setChecked(model_.fadeEnabled());
  fadeSeconds_.label->setText(
      QStringLiteral("After %1 seconds").arg(wholePart(model_.fadeSeconds())));
  fadeSeconds_.slider->setAmount(model_.fadeSeconds());
  fadeSeconds_.box->setEnabled(model_.fadeEnabled());

  colorHand_->setCurrentIndex(indexOf(hand::kAllColorHands, model_.colorHand()));
}

bool Sidebar::eventFilter(QObject* watched, QEvent* event) {
  if (watched == colorHand_ && event->type() == QEvent::Wheel) {
    event->ignore();  // Scrolls the panel instead of changing the hand in passing.
    return true;
  }
  return QScrollArea::eventFilter(watched, event);
}

void Sidebar::addCanvas(QVBoxLayout& column) {
  addHeading(column, QStringLiteral("Canvas"));
  QStringList titles;
  for (const render::CanvasBackground choice : render::userChoices) titles << titleOf(choice);
  background_ = new SegmentedPicker(titles);
  background_->setAccessibleName(QStringLiteral("Background"));
  connect(background_, &SegmentedPicker::chosen, this, [this](int index) {
    model_.setBackground(render::userChoices[static_cast<std::size_t>(index)]);
  });
  column.addWidget(background_);
  dim_ = addSlider(column, QStringLiteral("Dim camera picture"), 0, 0.9, kFinePerUnit);
  connect(dim_.slider, &Slider::amountChosen, this, [this](double dim) { model_.setDim(dim); });
}

void Sidebar::addPen(QVBoxLayout& column) {
  addHeading(column, QStringLiteral("Pen"));
  glow_ = addToggle(column, QStringLiteral("Neon glow"));
  connect(glow_, &QCheckBox::clicked, this, [this](bool on) { model_.setGlow(on); });
  widthFromDistance_ = addToggle(column, QStringLiteral("Width follows hand distance"));
  connect(widthFromDistance_, &QCheckBox::clicked, this,
          [this](bool on) { model_.setWidthFromDistance(on); });
  manualWidth_ = addSlider(column, QStringLiteral("Width"), 2, 50, kFinePerUnit);
  connect(manualWidth_.slider, &Slider::amountChosen, this,
          [this](double width) { model_.setManualWidth(width); });
  addNote(column, QStringLiteral("The slider is also used by the mouse."));
}

void Sidebar::addFadeOut(QVBoxLayout& column) {
  addHeading(column, QStringLiteral("Fade out"));
  fadeEnabled_ = addToggle(column, QStringLiteral("Strokes fade away"));
  connect(fadeEnabled_, &QCheckBox::clicked, this, [this](bool on) { model_.setFadeEnabled(on); });
  fadeSeconds_ = addSlider(column, QStringLiteral("Fade after seconds"), 2, 30, 1);
  connect(fadeSeconds_.slider, &Slider::amountChosen, this,
          [this](double seconds) { model_.setFadeSeconds(seconds); });
}

void Sidebar::addColorGesture(QVBoxLayout& column) {
  addHeading(column, QStringLiteral("Colour gesture"));
  auto* row = new QHBoxLayout;
  auto* label = new TextLabel(QStringLiteral("Hand"), TextStyle::body);
  colorHand_ = new QComboBox;
  for (const hand::ColorHand choice : hand::kAllColorHands) colorHand_->addItem(titleOf(choice));
  colorHand_->setAccessibleName(QStringLiteral("Hand"));
  colorHand_->setFocusPolicy(Qt::TabFocus);
  colorHand_->installEventFilter(this);
  connect(colorHand_, &QComboBox::activated, this, [this](int index) {
    model_.setColorHand(hand::kAllColorHands[static_cast<std::size_t>(index)]);
  });
  row->addWidget(label);
  row->addWidget(colorHand_, 1);
  column.addLayout(row);
  addNote(column, QStringLiteral("Hold that hand open with fingers spread for half a second to "
                                 "switch to the next colour."));
}

}  // namespace ui
