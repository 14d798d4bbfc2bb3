#include <gmock/gmock.h>

#include <QApplication>

/// Runs tests of widgets: without a screen, and in the same style on every desktop.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qunsetenv("QT_QPA_PLATFORMTHEME");
  testing::InitGoogleMock(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  return RUN_ALL_TESTS();
}
