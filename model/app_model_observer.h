#pragma once

namespace model {

/// The published properties of AppModel.
enum class Property {
  cameraState,
  colorIndex,
  background,
  dim,
  glow,
  widthFromDistance,
  manualWidth,
  fadeEnabled,
  fadeSeconds,
  colorHand,
  handStatus,
  strokeCount,
  isRecording,
  recordSeconds,
  showClearConfirm,
  showSaveChoice,
  errorMessage,
  errorDetails,
};

/// Hears of every change of a published property just before it is written, so the model still
/// shows the old value. Main thread only.
class AppModelObserver {
 public:
  virtual ~AppModelObserver() = default;
  virtual void willChange(Property property) = 0;
};

}  // namespace model
