#pragma once

namespace platform::gstreamer {

/// Decides when a camera that was lost may be tried again. It counts looks, which are made at
/// regular times, so that a machine which slept or was slow changes nothing.
class ReturnWatch {
 public:
  /// First wait for a camera that stopped although it is still connected; doubles at each stop.
  static constexpr int kFirstWait = 10;
  static constexpr int kLongestWait = 300;

  /// The camera is lost. `connected`: it still shows among the cameras.
  void lose(bool connected);
  /// The camera has worked for a while, so the next loss is a new story.
  void forgive() { failures_ = 0; }
  /// Somebody starts the camera now.
  void settle() { lost_ = false; }

  bool isWaiting() const { return lost_; }
  /// One look at whether a camera is connected. True once after each loss: it may be tried.
  bool look(bool connected);

 private:
  bool lost_ = false;
  int wait_ = 0;      // Looks to go.
  int failures_ = 0;  // Losses of a connected camera in a row.
};

}  // namespace platform::gstreamer
