#include <algorithm>

#include "model/app_model.h"
#include "platform/clock.h"
#include "strokes/palette.h"

namespace model {
namespace {

/// How long a hand must be held open to change the colour.
constexpr double kSpreadHoldSeconds = 0.5;
/// A hand that the analysis has not spoken of for longer has left the picture.
constexpr double kHandTimeOutSeconds = 0.4;
constexpr int kPaletteSize = static_cast<int>(strokes::Palette::colors.size());

// Hand sizes in image heights, from an arm's length behind the desk to close to the camera.
constexpr double kSmallestHand = 0.07;
constexpr double kHandSizeSpan = 0.30 - kSmallestHand;
constexpr double kThinnestLine = 3;
constexpr double kLineWidthSpan = 37;

double widthForHandSize(double size) {
  const double t = (size - kSmallestHand) / kHandSizeSpan;
  return t <= 0 ? kThinnestLine : std::min(t, 1.0) * kLineWidthSpan + kThinnestLine;
}

}  // namespace

void AppModel::apply(const hand::HandOutput& output) {
  lastHandTime_ = services_.clock.now();
  handOutput_ = output;
  if (output.errorText && !reportedVisionError_) {
    reportedVisionError_ = true;
    report("Hand tracking had a problem.", output.errorText);
  }
  handleSpread(output.spread);
  if (mouseDrawing_) return;
  if (output.pen) {
    moveHandPen(*output.pen);
  } else {
    endHandStroke();
  }
}

void AppModel::handleSpread(bool spread) {
  if (!spread) {
    forgetSpread();
    return;
  }
  if (!spreadStart_) {
    spreadStart_ = services_.clock.now();
    return;
  }
  if (spreadLatched_ || services_.clock.now() - *spreadStart_ < kSpreadHoldSeconds) return;
  spreadLatched_ = true;
  colorIndex_.set((colorIndex() + 1) % kPaletteSize);
}

void AppModel::forgetSpread() {
  spreadStart_.reset();
  spreadLatched_ = false;
}

void AppModel::moveHandPen(const hand::PenSample& pen) {
  const strokes::StrokePoint point{
      .x = std::clamp(pen.x, 0.0, 1.0),
      .y = std::clamp(pen.y, 0.0, 1.0),
      .w = widthFromDistance() ? widthForHandSize(pen.size) : manualWidth()};
  handCursor_ = render::CursorState{point.x, point.y, pen.down, point.w, colorIndex()};
  if (pen.down) {
    if (store_.isDrawing()) {
      store_.add(point, services_.clock.now());
    } else {
      store_.begin(point, colorIndex(), services_.clock.now());
    }
    handStatus_.setIfChanged("Drawing");
  } else {
    if (store_.isDrawing()) store_.end(services_.clock.now());
    handStatus_.setIfChanged("Pen up");
  }
  publishStrokeCount();
}

void AppModel::endHandStroke() {
  if (store_.isDrawing() && !mouseDrawing_) store_.end(services_.clock.now());
  handCursor_.reset();
  handStatus_.setIfChanged("No hand");
  publishStrokeCount();
}

void AppModel::timeOutHand(double now) {
  if (cameraState().kind != CameraState::Kind::running || !handCursor_ || mouseDrawing_) return;
  if (now - lastHandTime_ <= kHandTimeOutSeconds) return;
  endHandStroke();
  forgetSpread();
}

}  // namespace model
