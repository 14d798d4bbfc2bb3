#pragma once

#include <QDialog>
#include <QVBoxLayout>
#include <functional>

namespace ui {

/// A question with its answers in a column beneath it, opened over its window without blocking the
/// program. Escape gives the answer that does nothing.
class ChoiceDialog : public QDialog {
 public:
  /// `title`: also the question, in words. `message`: may be empty.
  ChoiceDialog(const QString& title, const QString& message, QWidget* parent);

  /// Opens or closes the dialog, unless it is so already.
  void setShown(bool isShown);

 protected:
  enum class Role { normal, destructive };

  /// Adds an answer below the earlier ones. `action` runs after the dialog has closed.
  void addAnswer(const QString& title, Role role, std::function<void()> action);
  /// Adds the answer that only closes the dialog; the Return key gives it unless another has focus.
  void addCancel(const QString& title);

 private:
  QVBoxLayout* column_;
};

}  // namespace ui
