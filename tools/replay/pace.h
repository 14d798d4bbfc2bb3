#pragma once

namespace replay {

/// How fast the frames of a clip follow each other.
class Pace {
 public:
  virtual ~Pace() = default;
  /// Waits until the moment of the frame at `time`, seconds from the beginning. False: that moment
  /// has passed by so far that a camera would have dropped the frame for a newer one.
  virtual bool waitFor(double time) = 0;
};

/// As fast as the machine allows; every frame is in time.
class FullSpeed final : public Pace {
 public:
  bool waitFor(double) override { return true; }
};

/// As fast as they were taken.
class RealTime final : public Pace {
 public:
  bool waitFor(double time) override;

 private:
  double start_ = 0;  ///< On the machine's clock; set with the first frame.
  bool started_ = false;
};

}  // namespace replay
