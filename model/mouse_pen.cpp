#include "model/app_model.h"
#include "model/whole_number.h"
#include "platform/clock.h"

namespace model {

void AppModel::mouseDown(double x, double y) {
  if (store_.isDrawing()) store_.end(services_.clock.now());
  mouseDrawing_ = true;
  const double width = manualWidth();
  store_.begin({x, y, width}, colorIndex(), services_.clock.now());
  mouseCursor_ = render::CursorState{x, y, true, width, colorIndex()};
  publishStrokeCount();
}

void AppModel::mouseDragged(double x, double y) {
  if (!mouseDrawing_) return;
  const double width = manualWidth();
  store_.add({x, y, width}, services_.clock.now());
  mouseCursor_ = render::CursorState{x, y, true, width, colorIndex()};
}

void AppModel::mouseUp() {
  if (!mouseDrawing_) return;
  store_.end(services_.clock.now());
  mouseDrawing_ = false;
  mouseCursor_.reset();
  publishStrokeCount();
}

void AppModel::tick() {
  const double now = services_.clock.now();
  timeOutHand(now);
  store_.touch(now);
  if (fadeEnabled() && store_.pruneFaded(now, fadeSeconds())) publishStrokeCount();
  if (isRecording()) recordSeconds_.setIfChanged(wholeNumber(now - recordStart_));
}

render::RenderScene AppModel::makeScene(render::CanvasBackground background,
                                        bool includeCursor) const {
  return {
      .background = background,
      .frame = hub_.image(),
      .dim = dim(),
      .strokes = store_.strokes(),
      .now = services_.clock.now(),
      .glow = glow(),
      .fadeEnabled = fadeEnabled(),
      .fadeSeconds = fadeSeconds(),
      .cursor = includeCursor ? (mouseCursor_ ? mouseCursor_ : handCursor_) : std::nullopt,
  };
}

}  // namespace model
