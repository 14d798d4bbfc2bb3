#include "app/main_window.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <chrono>

#include "ui/content_view.h"

namespace app {
namespace {

// Room for a canvas of 16:9 without a border, or nearly so.
constexpr QSize kInitialSize(1280, 680);

constexpr std::chrono::milliseconds kFinishingPoll(50);

}  // namespace

MainWindow::MainWindow(model::AppModel& model, platform::TimerFactory& timers)
    : model_(model), refresher_(model) {
  setWindowTitle(QStringLiteral("Wavescribe"));
  setCentralWidget(new ui::ContentView(model, timers));
  addFileMenu();
  addEditMenu();
  addPaintingMenu();
  addHelpMenu();
  resize(kInitialSize);
  connect(&refresher_, &ui::ModelRefresher::refreshed, this, &MainWindow::refresh);
  connect(&finishing_, &QTimer::timeout, this, &MainWindow::quitWhenFinished);
  refresh();
}

void MainWindow::addFileMenu() {
  QMenu* menu = menuBar()->addMenu(QStringLiteral("&File"));
  menu->addAction(QStringLiteral("&Quit"), QKeySequence(QStringLiteral("Ctrl+Q")), this,
                  &QWidget::close);
}

void MainWindow::addEditMenu() {
  QMenu* menu = menuBar()->addMenu(QStringLiteral("&Edit"));
  menu->addAction(QStringLiteral("&Undo Stroke"), QKeySequence(QStringLiteral("Ctrl+Z")), this,
                  [this] { model_.undo(); });
}

void MainWindow::addPaintingMenu() {
  QMenu* menu = menuBar()->addMenu(QStringLiteral("&Painting"));
  menu->addAction(QStringLiteral("&Save Image…"), QKeySequence(QStringLiteral("Ctrl+S")), this,
                  [this] { model_.setShowSaveChoice(true); });
  record_ = menu->addAction({}, QKeySequence(QStringLiteral("Ctrl+R")), this,
                            [this] { model_.toggleRecording(); });
  menu->addSeparator();
  QAction* clear = menu->addAction(QStringLiteral("&Clear…"), this,
                                   [this] { model_.setShowClearConfirm(true); });
  clear->setShortcuts({QKeySequence(QStringLiteral("Ctrl+Shift+Backspace")),
                       QKeySequence(QStringLiteral("Ctrl+Shift+Del"))});
}

void MainWindow::addHelpMenu() {
  QMenu* menu = menuBar()->addMenu(QStringLiteral("&Help"));
  menu->addAction(QStringLiteral("&About Wavescribe"), this, &MainWindow::showAbout);
}

void MainWindow::refresh() {
  record_->setText(model_.isRecording() ? QStringLiteral("Stop &Recording")
                                        : QStringLiteral("&Record Video…"));
}

void MainWindow::stopRecording() {
  if (model_.isRecording()) model_.toggleRecording();
}

void MainWindow::finishRecording() {
  stopRecording();
  while (model_.isFinishingRecording()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                    QEventLoop::WaitForMoreEvents);
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!model_.isRecording() && !model_.isFinishingRecording()) return event->accept();
  model_.dismissError();  // From here on, an error is one of the video.
  stopRecording();
  if (model_.errorMessage()) return event->ignore();
  if (!model_.isFinishingRecording()) return event->accept();
  event->ignore();
  hide();
  finishing_.start(kFinishingPoll);
}

void MainWindow::quitWhenFinished() {
  if (model_.isFinishingRecording()) return;
  finishing_.stop();
  if (model_.errorMessage()) {
    show();
  } else {
    QCoreApplication::exit();
  }
}

void MainWindow::showAbout() {
  auto* about = new QMessageBox(this);
  about->setAttribute(Qt::WA_DeleteOnClose);
  about->setWindowTitle(QStringLiteral("About Wavescribe"));
  about->setIconPixmap(windowIcon().pixmap(QSize(64, 64), devicePixelRatioF()));
  about->setText(QStringLiteral("Wavescribe %1").arg(QStringLiteral(WAVESCRIBE_VERSION)));
  about->setInformativeText(
      QStringLiteral("Paint in the air in front of your camera, or with the mouse.\n\n"
                     "Free software under the GNU General Public License, version 3 or later."));
  about->open();
}

}  // namespace app
