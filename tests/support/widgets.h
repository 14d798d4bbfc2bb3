#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QImage>
#include <QLabel>
#include <QTest>
#include <QWidget>

namespace support {

/// Lets the widgets see what has changed.
inline void settle() {
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents();
}

/// The button below `parent` that reads `text`; a failure of the test when there is none.
inline QAbstractButton* button(const QWidget& parent, const QString& text) {
  for (auto* candidate : parent.findChildren<QAbstractButton*>()) {
    if (candidate->text() == text) return candidate;
  }
  ADD_FAILURE() << "no button \"" << text.toStdString() << '"';
  return nullptr;
}

/// Presses the button as a person would.
inline void press(const QWidget& parent, const QString& text) {
  if (QAbstractButton* found = button(parent, text)) {
    QTest::mouseClick(found, Qt::LeftButton, {}, {10, found->height() / 2});
  }
  settle();
}

/// The label below `parent` that starts with `text`; a failure of the test when there is none.
inline QLabel* label(const QWidget& parent, const QString& text) {
  for (auto* candidate : parent.findChildren<QLabel*>()) {
    if (candidate->text().startsWith(text)) return candidate;
  }
  ADD_FAILURE() << "no label \"" << text.toStdString() << '"';
  return nullptr;
}

/// What `widget` shows at `point`, in points from its top left.
inline QColor pixelAt(QWidget& widget, QPoint point) {
  const QImage picture = widget.grab().toImage();
  return picture.pixelColor(point * picture.devicePixelRatio());
}

}  // namespace support
