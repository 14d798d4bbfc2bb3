#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "capture/busy_flag.h"
#include "capture/camera_source.h"
#include "capture/frame_hub.h"
#include "hand/color_hand.h"
#include "hand/hand_output.h"
#include "hand/hand_tracker.h"
#include "model/app_model_observer.h"
#include "model/camera_state.h"
#include "model/observer_list.h"
#include "model/published.h"
#include "platform/camera_permission.h"
#include "platform/serial_queue.h"
#include "platform/services.h"
#include "recording/recorder.h"
#include "render/live_canvas.h"
#include "render/render_scene.h"
#include "strokes/stroke_store.h"

namespace model {

/// The one model of the program: the person's settings, the state that the window shows, and the
/// operations that turn input into strokes and strokes into files. Knows no widgets, no files and
/// no clock but those it is given. Main thread only.
class AppModel {
 public:
  explicit AppModel(const platform::Services& services);
  AppModel(const AppModel&) = delete;
  AppModel& operator=(const AppModel&) = delete;

  /// `observer` must be removed before it ends. Observers hear in the order they came, and may
  /// come and go from within an announcement.
  void addObserver(AppModelObserver& observer) { observers_.add(observer); }
  void removeObserver(AppModelObserver& observer) { observers_.remove(observer); }

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
  /// Counts from the next frame that is analysed.
  void setColorHand(hand::ColorHand hand);
  const std::string& handStatus() const { return handStatus_.get(); }
  /// What the latest frame that was analysed said. Not published.
  const hand::HandOutput& handOutput() const { return handOutput_; }
  int strokeCount() const { return strokeCount_.get(); }
  bool isRecording() const { return isRecording_.get(); }
  /// Whole seconds since the running recording started; the last one's when none runs.
  std::int64_t recordSeconds() const { return recordSeconds_.get(); }
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

  // The pen of the mouse, always manualWidth() wide. Positions are canvas coordinates, 0 to 1 from
  // the top left, and are taken as they come. A drag or a release without a press does nothing.
  void mouseDown(double x, double y);
  void mouseDragged(double x, double y);
  void mouseUp();

  /// To be called about 30 times a second, before each redraw: lets go of a hand that the analysis
  /// no longer speaks of, keeps the open stroke fresh, removes the strokes that have faded out and
  /// counts the seconds of a recording.
  void tick();

  /// A snapshot of the canvas at this moment over `background`, whatever the person has chosen.
  /// Shares the points of the strokes with the store.
  render::RenderScene makeScene(render::CanvasBackground background, bool includeCursor) const;

  const strokes::StrokeStore& store() const { return store_; }
  /// Takes the newest stroke away, the open one too.
  void undo();
  /// Takes every stroke away; the person has confirmed it.
  void clear();

  /// Looks up whether the camera may be used and acts on the answer: starts the camera, or shows in
  /// cameraState() what stands in the way. Until the answer comes the state stays as it is.
  void refreshPermission();
  /// Asks the person for the camera, and starts it if they agree.
  void requestCamera();
  /// Goes on without a camera: a camera background becomes black.
  void useMouseOnly();
  /// Shows the page of the desktop's settings where the camera can be allowed.
  void openCameraSettings();

  /// Asks for a place and saves the painting as a PNG 1920 pixels wide: over the current background
  /// with `withCamera`, else alone on a transparent ground. A failure is reported through
  /// errorMessage() and errorDetails(); a cancelled choice is none.
  void saveImage(bool withCamera);

  /// Stops the running recording, or asks for a place and starts one of the canvas as it is shown,
  /// cursor and all, 1280 pixels wide, 30 times a second. Failures, also later ones, are reported
  /// through errorMessage() and errorDetails(); a cancelled choice is none.
  void toggleRecording();
  /// Whether a stopped recording is still being written. The end of the model waits for it.
  bool isFinishingRecording() const { return recorder_.isFinishing(); }
  /// At the end of the program, also where it ends without the model's own end: finishes the video
  /// of a running recording and returns when no video is being finished any more. Nothing is
  /// announced.
  void closeRecordings();

 private:
  void act(platform::CameraAuthorization authorization);
  void startCamera();
  void cameraFailed(const std::string& message, const std::string& details);
  void cameraReturned();
  void processFrame(const pixels::PixelBuffer& frame, double time);

  // The pen of the hand. The mouse always wins.
  void apply(const hand::HandOutput& output);
  void handleSpread(bool spread);
  void forgetSpread();
  void moveHandPen(const hand::PenSample& pen);
  void endHandStroke();
  void timeOutHand(double now);

  /// `work` as something that may run when the model has gone, and then does nothing. The result
  /// runs on the main thread; may be called on any.
  std::function<void()> whileAlive(std::function<void()> work) const;
  void postToMain(std::function<void()> work) const;

  void publishStrokeCount();
  void startRecording(const std::filesystem::path& path);
  void drawVideoFrame(const pixels::DrawingContext& context, pixels::Size size);
  void releaseVideoCanvas();
  void stopRecording();
  void finishRecordingAfterFailure(const std::string& message);
  void report(std::string message, std::optional<std::string> details);

  platform::Services services_;
  ObserverList observers_;

  Published<CameraState> cameraState_{observers_, Property::cameraState, {}};
  Published<int> colorIndex_{observers_, Property::colorIndex, 0};
  Published<render::CanvasBackground> background_{observers_, Property::background,
                                                  render::CanvasBackground::camera};
  Published<double> dim_{observers_, Property::dim, 0.35};
  Published<bool> glow_{observers_, Property::glow, true};
  Published<bool> widthFromDistance_{observers_, Property::widthFromDistance, true};
  Published<double> manualWidth_{observers_, Property::manualWidth, 14.0};
  Published<bool> fadeEnabled_{observers_, Property::fadeEnabled, false};
  Published<double> fadeSeconds_{observers_, Property::fadeSeconds, 6.0};
  Published<hand::ColorHand> colorHand_{observers_, Property::colorHand, hand::ColorHand::left};
  Published<std::string> handStatus_{observers_, Property::handStatus, "No hand"};
  Published<int> strokeCount_{observers_, Property::strokeCount, 0};
  Published<bool> isRecording_{observers_, Property::isRecording, false};
  Published<std::int64_t> recordSeconds_{observers_, Property::recordSeconds, 0};
  Published<bool> showClearConfirm_{observers_, Property::showClearConfirm, false};
  Published<bool> showSaveChoice_{observers_, Property::showSaveChoice, false};
  Published<std::optional<std::string>> errorMessage_{observers_, Property::errorMessage,
                                                      std::nullopt};
  Published<std::optional<std::string>> errorDetails_{observers_, Property::errorDetails,
                                                      std::nullopt};

  strokes::StrokeStore store_;
  std::optional<render::CursorState> mouseCursor_;  // Present while mouseDrawing_.
  bool mouseDrawing_ = false;                       // The hand then neither draws nor ends strokes.
  std::optional<render::CursorState> handCursor_;   // Present while a hand is seen.
  hand::HandOutput handOutput_;                     // Of the latest analysis.
  double lastHandTime_ = 0;                         // When that was applied.
  std::optional<double> spreadStart_;               // When the hand that is held open was opened.
  bool spreadLatched_ = false;                      // It has changed the colour already.
  bool reportedVisionError_ = false;                // Once in the life of the program.
  double recordStart_ = 0;  // Seconds on the clock; of the newest recording.

  int permissionQuestion_ = 0;  // Grows when an answer that is still due no longer counts.
  std::shared_ptr<const char> life_ = std::make_shared<const char>();

  // The road of a frame. The last to come are the first to end: each waits for what it runs, which
  // uses those before it.
  capture::FrameHub hub_;
  capture::BusyFlag visionBusy_;
  hand::HandTracker tracker_;
  std::unique_ptr<platform::SerialQueue> visionQueue_;
  capture::CameraSource camera_;

  render::LiveCanvas videoCanvas_;  // While recording, keeps what did not change in this:
  pixels::Surface videoPicture_;
  bool videoHasBegun_ = false;    // A frame has been drawn.
  recording::Recorder recorder_;  // Last: it draws the rest.
};

}  // namespace model
