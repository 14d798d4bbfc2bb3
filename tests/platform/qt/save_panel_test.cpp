#include "platform/qt/save_panel.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
#include <deque>
#include <fstream>
#include <functional>

#include "tests/support/temporary_folder.h"
#include "tests/support/widgets.h"

namespace platform::qt {
namespace {

using testing::Eq;
using testing::Optional;

TEST(WithExtension, AMissingExtensionIsAdded) {
  EXPECT_EQ(withExtension("/pictures/wave", FileKind::png), "/pictures/wave.png");
  EXPECT_EQ(withExtension("/films/wave.v2", FileKind::mpeg4), "/films/wave.v2.mp4");
}

TEST(WithExtension, AnExtensionInAnyLettersIsKept) {
  EXPECT_EQ(withExtension("/pictures/WAVE.PNG", FileKind::png), "/pictures/WAVE.PNG");
}

TEST(WithExtension, AnExtensionOfAnotherKindIsPartOfTheName) {
  EXPECT_EQ(withExtension("/pictures/wave.jpg", FileKind::png), "/pictures/wave.jpg.png");
}

TEST(WithExtension, AHiddenFileIsNotTakenForAnExtension) {
  EXPECT_EQ(withExtension("/pictures/.png", FileKind::png), "/pictures/.png.png");
}

/// A person in front of the dialogs, who does one thing in each that opens.
class SavePanelDialog : public testing::Test {
 protected:
  SavePanelDialog() {
    QObject::connect(&eyes_, &QTimer::timeout, [this] { look(); });
    eyes_.start(10);
  }

  void willType(const QString& name) {
    acts_.push_back([name](QWidget* dialog) {
      proposed = dialog->findChild<QLineEdit*>()->text();
      dialog->findChild<QLineEdit*>()->setText(name);
      QMetaObject::invokeMethod(dialog, "accept");
    });
  }

  void willCancel() {
    acts_.push_back([](QWidget* dialog) { static_cast<QDialog*>(dialog)->reject(); });
  }

  void willPress(const QString& answer) {
    acts_.push_back([answer](QWidget* dialog) { support::press(*dialog, answer); });
  }

  std::optional<std::filesystem::path> choose() {
    return panel.choose({FileKind::png, "Wavescribe.png", folder.path()});
  }

  bool sawEverything() const { return acts_.empty(); }

  static inline QString proposed;
  support::TemporaryFolder folder;
  SavePanel panel;

 private:
  void look() {
    QWidget* dialog = QApplication::activeModalWidget();
    if (!dialog || !dialog->isVisible()) return;
    if (acts_.empty()) {
      ADD_FAILURE() << "a dialog too many: " << dialog->windowTitle().toStdString();
      static_cast<QDialog*>(dialog)->reject();
      return;
    }
    const auto act = acts_.front();
    acts_.pop_front();
    act(dialog);
  }

  QTimer eyes_;
  std::deque<std::function<void(QWidget*)>> acts_;
};

void touch(const std::filesystem::path& path) {
  std::ofstream(path) << "old";
}

TEST_F(SavePanelDialog, ProposesTheNameInTheFolder) {
  willType("Wavescribe.png");

  EXPECT_THAT(choose(), Optional(Eq(folder / "Wavescribe.png")));
  EXPECT_EQ(proposed, "Wavescribe.png");
}

TEST_F(SavePanelDialog, AProposedFolderThatIsMissingGivesWayToTheHomeOfThePerson) {
  const QByteArray home = qgetenv("HOME");
  qputenv("HOME", QByteArray::fromStdString(folder.path().string()));
  willType("wave.png");

  const auto chosen = panel.choose({FileKind::png, "Wavescribe.png", folder / "missing"});

  qputenv("HOME", home);
  EXPECT_THAT(chosen, Optional(Eq(folder / "wave.png")));
}

TEST_F(SavePanelDialog, CancellingChoosesNothing) {
  willCancel();

  EXPECT_EQ(choose(), std::nullopt);
}

TEST_F(SavePanelDialog, ANameWithoutExtensionGetsIt) {
  willType("wave");

  EXPECT_THAT(choose(), Optional(Eq(folder / "wave.png")));
}

TEST_F(SavePanelDialog, AsksBeforeReplacingTheFileThatTheExtensionLeadsTo) {
  touch(folder / "wave.png");
  willType("wave");
  willPress("Replace");

  EXPECT_THAT(choose(), Optional(Eq(folder / "wave.png")));
  EXPECT_TRUE(sawEverything());
}

TEST_F(SavePanelDialog, WhoDoesNotWantToReplaceMayChooseAgain) {
  touch(folder / "wave.png");
  willType("wave.png");
  willPress("Cancel");
  willType("wave2.png");

  EXPECT_THAT(choose(), Optional(Eq(folder / "wave2.png")));
  EXPECT_EQ(proposed, "wave.png");
}

}  // namespace
}  // namespace platform::qt
