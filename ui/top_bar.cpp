#include "ui/top_bar.h"

#include <QHBoxLayout>

#include "ui/symbol.h"

namespace ui {
namespace {

constexpr int kPadding = 10;
constexpr int kSpacing = 10;
constexpr int kSwatchSpacing = 6;  // Between circles, whose widgets have room around them.

}  // namespace

TopBar::TopBar(model::AppModel& model, QWidget* parent) : QWidget(parent), model_(model) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kPadding - Swatch::kRingRoom, kPadding, kPadding, kPadding);
  row->setSpacing(kSpacing);
  row->addLayout(makePalette());
  row->addStretch();
  indicator_ = new RecordingIndicator(this);
  row->addWidget(indicator_);

  undo_ = makeButton("Undo", "arrow.uturn.backward", [this] { model_.undo(); });
  clear_ = makeButton("Clear", "trash", [this] { model_.setShowClearConfirm(true); });
  RoomyButton* save = makeButton("Save Image", "photo", [this] { model_.setShowSaveChoice(true); });
  record_ = makeButton({}, {}, [this] { model_.toggleRecording(); });
  for (RoomyButton* button : {undo_, clear_, save, record_}) row->addWidget(button);
  refresh();
}

void TopBar::refresh() {
  for (std::size_t i = 0; i < swatches_.size(); ++i) {
    swatches_[i]->setChosen(static_cast<int>(i) == model_.colorIndex());
  }
  const bool hasStrokes = model_.strokeCount() != 0;
  undo_->setEnabled(hasStrokes);
  clear_->setEnabled(hasStrokes);
  refreshRecording();
}

void TopBar::refreshRecording() {
  indicator_->setVisible(model_.isRecording());
  indicator_->setSeconds(model_.recordSeconds());
  const QString title = model_.isRecording() ? "Stop" : "Record Video";
  if (record_->text() == title) return;
  record_->setText(title);
  record_->setIcon(symbolIcon(model_.isRecording() ? "stop.circle.fill" : "record.circle"));
}

QLayout* TopBar::makePalette() {
  auto* palette = new QHBoxLayout;
  palette->setSpacing(kSwatchSpacing - 2 * Swatch::kRingRoom);
  for (const strokes::PaletteColor& color : strokes::Palette::colors) {
    auto* swatch = new Swatch(color, this);
    const int index = static_cast<int>(swatches_.size());
    connect(swatch, &Swatch::clicked, this, [this, index] { model_.setColorIndex(index); });
    swatches_.push_back(swatch);
    palette->addWidget(swatch);
  }
  return palette;
}

template <class Action>
RoomyButton* TopBar::makeButton(const QString& title, const QString& symbol, Action action) {
  auto* button = new RoomyButton(title, this);
  button->setIcon(symbolIcon(symbol));
  connect(button, &RoomyButton::clicked, this, action);
  return button;
}

}  // namespace ui
