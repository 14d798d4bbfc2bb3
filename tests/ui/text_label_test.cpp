#include "ui/text_label.h"

#include <gtest/gtest.h>

#include "tests/support/widgets.h"

namespace ui {
namespace {

QColor textColor(const QLabel& label) {
  return label.palette().color(QPalette::Active, QPalette::WindowText);
}

TEST(TextLabel, LessImportantTextFollowsALightAndADarkPalette) {
  QWidget parent;
  const TextLabel note("Note", TextStyle::caption, TextColor::secondary, &parent);

  for (const QColor base : {QColor(Qt::black), QColor(Qt::white)}) {
    QPalette palette = parent.palette();
    palette.setColor(QPalette::WindowText, base);
    parent.setPalette(palette);

    EXPECT_EQ(textColor(note).rgb(), base.rgb());
    EXPECT_LT(textColor(note).alphaF(), 0.8);
  }
}

TEST(TextLabel, StylesDifferInSizeAndWeight) {
  const double body = fontOf(TextStyle::body).pointSizeF();

  EXPECT_TRUE(fontOf(TextStyle::headline).bold());
  EXPECT_DOUBLE_EQ(fontOf(TextStyle::headline).pointSizeF(), body);
  EXPECT_LT(fontOf(TextStyle::callout).pointSizeF(), body);
  EXPECT_LT(fontOf(TextStyle::caption).pointSizeF(), fontOf(TextStyle::callout).pointSizeF());
}

TEST(TextLabel, TextFromElsewhereIsNotTakenForMarkup) {
  const TextLabel label("<b>bold</b>", TextStyle::body);

  EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

}  // namespace
}  // namespace ui
