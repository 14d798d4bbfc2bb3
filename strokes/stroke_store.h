#pragma once

#include <vector>

#include "strokes/stroke.h"

namespace strokes {

/// Owns every stroke of the painting and turns pen positions into strokes.
/// Reads no clock and starts no thread: the same calls give the same strokes (but for their ids).
/// `now`: seconds on the monotonic clock. Main thread only.
class StrokeStore {
 public:
  /// The farthest a pen can travel between two positions, in canvas units.
  static constexpr double maxJump = 0.25;
  /// The shortest step worth a point, in canvas units.
  static constexpr double minStep = 0.0015;
  /// Seconds that a stroke takes from full strength to nothing once it begins to fade.
  static constexpr double fadeLength = 1.0;

  /// Oldest first; while isDrawing() the last one is open.
  const std::vector<Stroke>& strokes() const { return strokes_; }
  bool isDrawing() const { return isDrawing_; }

  /// Opens a stroke at `point`. Does not close one that is still open.
  void begin(const StrokePoint& point, int colorIndex, double now);

  /// Continues the open stroke; ignored when none is open. A step shorter than minStep only keeps
  /// the stroke fresh; one longer than maxJump starts a new stroke of the same colour.
  void add(const StrokePoint& point, double now);

  /// Closes the open stroke; its fading counts from `now`.
  void end(double now);

  /// Keeps the open stroke from fading while the pen rests.
  void touch(double now);

  /// Removes the closed strokes that have faded out: fadeSeconds + fadeLength after their latest
  /// activity. True when any was removed.
  bool pruneFaded(double now, double fadeSeconds);

  /// Removes the newest stroke, open or not. There is no redo.
  void undo();

  /// Removes every stroke.
  void clear();

 private:
  std::vector<Stroke> strokes_;
  bool isDrawing_ = false;
};

}  // namespace strokes
