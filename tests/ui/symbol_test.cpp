#include "ui/symbol.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QImage>
#include <QPalette>

namespace ui {
namespace {

QImage pictureOf(const QIcon& icon, int size, QIcon::Mode mode = QIcon::Normal) {
  return icon.pixmap(QSize(size, size), 1.0, mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// The colour where the drawing is most solid.
QColor inkOf(const QImage& picture) {
  QColor ink(0, 0, 0, 0);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixelColor(x, y).alpha() > ink.alpha()) ink = picture.pixelColor(x, y);
    }
  }
  return ink;
}

QRgb opaque(const QPalette& palette, QPalette::ColorGroup group) {
  return palette.color(group, QPalette::ButtonText).rgb();
}

TEST(Symbol, EveryOneOfTheWindowIsDrawn) {
  for (const char* name :
       {"arrow.uturn.backward", "trash", "photo", "exclamationmark.triangle.fill"}) {
    EXPECT_GT(inkOf(pictureOf(symbolIcon(name), 32)).alpha(), 60) << name;
  }
}

TEST(Symbol, AnIconHasTheColourOfButtonTexts) {
  const QPalette palette = QGuiApplication::palette();
  const QIcon icon = symbolIcon("trash");

  EXPECT_EQ(inkOf(pictureOf(icon, 64)).rgb(), opaque(palette, QPalette::Active));
  EXPECT_EQ(inkOf(pictureOf(icon, 64, QIcon::Disabled)).rgb(), opaque(palette, QPalette::Disabled));
}

TEST(Symbol, AnIconFollowsTheSystemIntoTheDark) {
  const QPalette before = QGuiApplication::palette();
  const QIcon icon = symbolIcon("photo");

  QPalette dark = before;
  dark.setColor(QPalette::ButtonText, Qt::white);
  QGuiApplication::setPalette(dark);
  const QColor ink = inkOf(pictureOf(icon, 64));
  QGuiApplication::setPalette(before);

  EXPECT_EQ(ink.rgb(), QColor(Qt::white).rgb());
}

TEST(Symbol, ALargeIconIsDrawnAndNotEnlarged) {
  const QImage picture = pictureOf(symbolIcon("trash"), 256);

  // Between nothing and solid lies only a thin edge: an enlarged drawing would have broad ones.
  int solid = 0;
  int partly = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const int alpha = picture.pixelColor(x, y).alpha();
      solid += alpha > 250 ? 1 : 0;
      partly += alpha > 4 && alpha <= 250 ? 1 : 0;
    }
  }
  EXPECT_GT(solid, 4 * partly);
}

}  // namespace
}  // namespace ui
