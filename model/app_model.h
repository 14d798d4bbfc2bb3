#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hand/color_hand.h"
#include "model/app_model_observer.h"
#include "model/camera_state.h"
#include "model/published.h"
#include "platform/services.h"
#include "render/render_scene.h"
#include "strokes/stroke_store.h"

namespace model {

/// The one model of the program: the person's settings, the state that the window shows, and the
/// operations that turn input into strokes and strokes into files. Knows no widgets, no files and
/// no clock but those it is given. Main thread only.
class AppModel : private Announcer {
 public:
  explicit AppModel(const platform::Services& services);
  ~AppModel();
  AppModel(const AppModel&) = delete;
  AppModel& operator=(const AppModel&) = delete;

  /// `observer` must be removed before it ends. Observers hear in the order they came.
  void addObserver(AppModelObserver& observer);
  void removeObserver(AppModelObserver& observer);

  // Settings and published state. Every setter announces first.
  const CameraState& cameraState() const { return cameraState_.get(); }
  int colorIndex() const { return colorIndex_.get(); }
  void setColorIndex(int index) { colorIndex_.set(index); }
  render::CanvasBackground background() const { return background_.get(); }
  void setBackground(render::CanvasBackground background) { background_.set(background); }
  double dim() const { return dim_.get(); }
  void setDim(double dim) { dim_.set(dim); }
  bool glow() const { return glow_.get(); }
  void setGlow(bool glow) { glow_.set(glow); }
  bool widthFromDistance() const { return widthFromDistance_.get(); }
  void setWidthFromDistance(bool on) { widthFromDistance_.set(on); }
  double manualWidth() const { return manualWidth_.get(); }
  void setManualWidth(double width) { manualWidth_.set(width); }
  bool fadeEnabled() const { return fadeEnabled_.get(); }
  void setFadeEnabled(bool on) { fadeEnabled_.set(on); }
  double fadeSeconds() const { return fadeSeconds_.get(); }
  void setFadeSeconds(double seconds) { fadeSeconds_.set(seconds); }
  hand::ColorHand colorHand() const { return colorHand_.get(); }
  void setColorHand(hand::ColorHand hand);
  const std::string& handStatus() const { return handStatus_.get(); }
  int strokeCount() const { return strokeCount_.get(); }
  bool showClearConfirm() const { return showClearConfirm_.get(); }
  void setShowClearConfirm(bool show) { showClearConfirm_.set(show); }
  bool showSaveChoice() const { return showSaveChoice_.get(); }
  void setShowSaveChoice(bool show) { showSaveChoice_.set(show); }
  const std::optional<std::string>& errorMessage() const { return errorMessage_.get(); }
  const std::optional<std::string>& errorDetails() const { return errorDetails_.get(); }
  /// Takes the error banner away, details and all.
  void dismissError();

  /// Width divided by height of the canvas: the camera picture's, 16/9 without one.
  double canvasAspect() const;

  // The pen of the mouse. Positions are canvas coordinates, 0 to 1 from the top left.
  void mouseDown(double x, double y);
  void mouseDragged(double x, double y);
  void mouseUp();

  /// To be called about 30 times a second: time-outs, fading, clocks.
  void tick();

  render::RenderScene makeScene(render::CanvasBackground background, bool includeCursor) const;

  const strokes::StrokeStore& store() const { return store_; }
  void undo();
  void clear();

  /// Goes on without a camera.
  void useMouseOnly();

  /// Asks for a place and saves the painting as a PNG 1920 pixels wide: over the current background
  /// with `withCamera`, else alone on a transparent ground.
  void saveImage(bool withCamera);

 private:
  void announce(Property property) override;
  void publishStrokeCount();
  void report(std::string message, std::optional<std::string> details);

  platform::Services services_;
  std::vector<AppModelObserver*> observers_;

  Published<CameraState> cameraState_{*this, Property::cameraState, {}};
  Published<int> colorIndex_{*this, Property::colorIndex, 0};
  Published<render::CanvasBackground> background_{*this, Property::background,
                                                  render::CanvasBackground::camera};
  Published<double> dim_{*this, Property::dim, 0.35};
  Published<bool> glow_{*this, Property::glow, true};
  Published<bool> widthFromDistance_{*this, Property::widthFromDistance, true};
  Published<double> manualWidth_{*this, Property::manualWidth, 14.0};
  Published<bool> fadeEnabled_{*this, Property::fadeEnabled, false};
  Published<double> fadeSeconds_{*this, Property::fadeSeconds, 6.0};
  Published<hand::ColorHand> colorHand_{*this, Property::colorHand, hand::ColorHand::left};
  Published<std::string> handStatus_{*this, Property::handStatus, "No hand"};
  Published<int> strokeCount_{*this, Property::strokeCount, 0};
  Published<bool> showClearConfirm_{*this, Property::showClearConfirm, false};
  Published<bool> showSaveChoice_{*this, Property::showSaveChoice, false};
  Published<std::optional<std::string>> errorMessage_{*this, Property::errorMessage, std::nullopt};
  Published<std::optional<std::string>> errorDetails_{*this, Property::errorDetails, std::nullopt};

  strokes::StrokeStore store_;
  std::optional<render::CursorState> mouseCursor_;
  bool mouseDrawing_ = false;
};

}  // namespace model
