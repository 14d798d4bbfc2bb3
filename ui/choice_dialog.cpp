#include "ui/choice_dialog.h"

#include <QPushButton>
#include <utility>

#include "ui/text_label.h"

namespace ui {
namespace {

constexpr QSize kButtonSize(280, 32);
constexpr QMargins kMargins(24, 20, 24, 20);
constexpr int kSpacing = 8;
const QColor kDestructiveOnLight(196, 22, 28);
const QColor kDestructiveOnDark(255, 120, 112);

QPushButton* makeButton(const QString& title) {
  auto* button = new QPushButton(title);
  button->setMinimumSize(kButtonSize);
  return button;
}

void colorDestructive(QPushButton& button) {
  QPalette palette = button.palette();
  const bool isDark = palette.color(QPalette::Button).lightness() < 128;
  palette.setColor(QPalette::ButtonText, isDark ? kDestructiveOnDark : kDestructiveOnLight);
  button.setPalette(palette);
}

}  // namespace

ChoiceDialog::ChoiceDialog(const QString& title, const QString& message, QWidget* parent)
    : QDialog(parent), column_(new QVBoxLayout(this)) {
  setWindowTitle(title);
  column_->setContentsMargins(kMargins);
  column_->setSpacing(kSpacing);
  column_->setSizeConstraint(QLayout::SetFixedSize);
  column_->addWidget(new TextLabel(title, TextStyle::headline), 0, Qt::AlignHCenter);
  if (!message.isEmpty()) {
    column_->addWidget(new TextLabel(message, TextStyle::body, TextColor::secondary), 0,
                       Qt::AlignHCenter);
  }
  column_->addSpacing(kSpacing);
}

void ChoiceDialog::setShown(bool isShown) {
  if (isShown == isVisible()) return;
  if (isShown) {
    open();
  } else {
    reject();
  }
}

void ChoiceDialog::addAnswer(const QString& title, Role role, std::function<void()> action) {
  QPushButton* button = makeButton(title);
  if (role == Role::destructive) colorDestructive(*button);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, [this, action = std::move(action)] {
    accept();
    action();
  });
  column_->addWidget(button);
}

void ChoiceDialog::addCancel(const QString& title) {
  QPushButton* button = makeButton(title);
  button->setDefault(true);
  connect(button, &QPushButton::clicked, this, &QDialog::reject);
  column_->addWidget(button);
  button->setFocus();
}

}  // namespace ui
