#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/sample_clip/performance.h"

namespace sample_clip {

/// Plays a performance one action after the other.
class Painter {
 public:
  /// `start`: the writing hand before the first frame, as wide open as it will be between strokes.
  explicit Painter(const WritingHand& start);

  /// How long closing or opening the fingers takes.
  void setPinchSeconds(double seconds) { pinchSeconds_ = seconds; }
  void setPinchedGap(double gap) { pinchedGap_ = gap; }

  int frames() const { return static_cast<int>(played_.moments.size()); }
  strokes::Point pen() const { return now_.right.pen; }

  void wait(double seconds);
  void moveTo(strokes::Point target, double seconds);
  /// Another hand rises, is held for a while and goes down again.
  void changeColor(double holdSeconds);
  void fidget(double holdSeconds);
  /// Pinches, follows `line` while the hand's size goes to `size`, rests and opens the hand again.
  void draw(const std::string& name, const std::vector<strokes::Point>& line, double seconds,
            double size, double restSeconds);

  Performance take() { return std::move(played_); }

 private:
  template <class Change>
  void during(double seconds, Change change);
  void showLeft(OtherHand hand, double holdSeconds);
  void show();

  Moment now_;
  double open_;
  double pinchedGap_ = kPinched;
  double pinchSeconds_ = 0.15;
  int colorIndex_ = 0;
  bool penDown_ = false;
  Performance played_;
};

}  // namespace sample_clip
