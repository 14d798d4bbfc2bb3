#pragma once

#include <iosfwd>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace frame_to_line {

/// Counts from 1, in the order in which the camera's frames reached the program.
using FrameNumber = int;

/// When what happened to each frame of the camera, from its arrival to the screen. Seconds on the
/// monotonic clock. Any thread.
class Timeline {
 public:
  FrameNumber frameDelivered(double now);
  void frameCaptured(FrameNumber frame, double captureTime);
  void analysisBegan(FrameNumber frame, double now);
  void analysisEnded(FrameNumber frame, double now);
  /// The result has reached the model. `addedPoint`: and made the painting longer.
  void resultApplied(FrameNumber frame, double now, bool addedPoint);
  /// The window's timer took what was there into its picture.
  void pictureDrawn(double now);
  /// The picture that was drawn last has gone to the screen.
  void pictureShown(double now);
  /// The event loop was busy with one thing.
  void mainThreadBusy(const std::string& what, double seconds, double cpuSeconds);

  /// Forgets what was before, when the program was still finding its feet.
  void startOver();
  /// Writes a table of the figures.
  void report(std::ostream& out) const;

 private:
  struct Frame {
    std::optional<double> delivered;  ///< Without one, it came before the last startOver.
    std::optional<double> captured;
    std::optional<double> analysisBegan;
    std::optional<double> analysisEnded;
    std::optional<double> applied;
    bool addedPoint = false;
    std::optional<double> drawn;  ///< As the camera's picture behind the strokes.
    std::optional<double> shown;
    std::optional<double> pointShown;
  };
  struct Busy {
    std::vector<double> milliseconds;
    std::vector<double> cpuMilliseconds;
  };

  mutable std::mutex lock_;
  std::map<FrameNumber, Frame> frames_;
  FrameNumber newest_ = 0;
  std::vector<FrameNumber> pointsToDraw_;
  std::vector<FrameNumber> pointsToShow_;
  std::optional<FrameNumber> pictureToShow_;
  std::map<std::string, Busy> busy_;
};

}  // namespace frame_to_line
