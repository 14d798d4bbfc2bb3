#include "ui/content_view.h"

#include <QGridLayout>
#include <QVBoxLayout>
#include <initializer_list>
#include <utility>

#include "ui/divider.h"

namespace ui {
namespace {

constexpr QSize kMinimumSize(960, 620);
constexpr int kBannerPadding = 10;

}  // namespace

ContentView::ContentView(model::AppModel& model, platform::TimerFactory& timers, QWidget* parent)
    : QWidget(parent),
      model_(model),
      refresher_(model),
      topBar_(new TopBar(model)),
      paintView_(new PaintView(model, timers)),
      errorBanner_(new ErrorBanner(model, this)),
      statusBar_(new StatusBar(model)),
      sidebar_(new Sidebar(model)),
      clearConfirmation_(new ClearConfirmation(model, this)),
      saveChoice_(new SaveChoice(model, this)),
      firstRun_(new FirstRunView(model, this)) {
  setMinimumSize(kMinimumSize);
  auto* column = new QVBoxLayout;
  column->setSpacing(0);
  column->addWidget(topBar_);
  column->addLayout(makeDrawingArea(), 1);
  column->addWidget(statusBar_);

  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  row->addLayout(column, 1);
  row->addWidget(new Divider(Qt::Vertical));
  row->addWidget(sidebar_);
  errorBanner_->raise();
  firstRun_->raise();
  paintView_->setFocus();

  connect(&refresher_, &ModelRefresher::refreshed, this, &ContentView::refresh);
  refresh();
}

void ContentView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (std::exchange(wasShown_, true)) return;
  if (model_.cameraState().kind == model::CameraState::Kind::checking) model_.refreshPermission();
}

void ContentView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  firstRun_->setGeometry(rect());
}

QLayout* ContentView::makeDrawingArea() {
  auto* overView = new QVBoxLayout;
  const int margin = kBannerPadding - ErrorBanner::kShadowRoom;
  overView->setContentsMargins(margin, margin, margin, margin);
  overView->addWidget(errorBanner_);
  overView->addStretch(1);

  auto* layers = new QGridLayout;
  layers->addWidget(paintView_, 0, 0);
  layers->addLayout(overView, 0, 0);
  return layers;
}

void ContentView::refresh() {
  topBar_->refresh();
  errorBanner_->refresh();
  statusBar_->refresh();
  sidebar_->refresh();
  clearConfirmation_->refresh();
  saveChoice_->refresh();
  refreshFirstRun();
}

// What the first-run view covers takes no keys either.
void ContentView::refreshFirstRun() {
  const bool wasCovered = !paintView_->isEnabled();
  firstRun_->refresh();
  const bool isCovered = FirstRunView::belongsTo(model_.cameraState());
  for (QWidget* widget :
       std::initializer_list<QWidget*>{topBar_, paintView_, errorBanner_, statusBar_, sidebar_}) {
    widget->setEnabled(!isCovered);
  }
  if (wasCovered && !isCovered) paintView_->setFocus();
}

}  // namespace ui
