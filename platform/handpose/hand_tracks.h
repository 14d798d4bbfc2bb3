#pragma once

#include <optional>
#include <vector>

#include "platform/handpose/hand_track.h"
#include "platform/handpose/hand_vision.h"

namespace platform::handpose {

/// Follows up to two hands through the pictures of one camera. A followed hand is looked for where
/// it was last seen; now and then the whole picture is searched, for a missing hand and to see
/// whether those that are followed are hands at all.
/// Calls must not overlap.
class HandTracks {
 public:
  /// `vision` outlives this.
  explicit HandTracks(HandVision& vision);

  /// The hands in the next picture, best first. `time`: when it was taken, in seconds; a gap or a
  /// step back makes a new beginning, as does another size of the picture. A failure of the vision
  /// leaves the hands to be followed on in the next picture.
  Result<std::vector<TrackedHand>> follow(const pixels::Image& picture, double time);

 private:
  using Readings = std::vector<std::optional<HandReading>>;  // One for each track.

  void beginAnewAfterBreak(const pixels::Image& picture, double time);
  Result<Readings> readTracks(const pixels::Image& picture);
  void keepHandsApart(Readings& readings);
  void apply(const Readings& readings);
  bool hasLostHand() const;
  bool searchIsDue(double time) const;
  Result<void> search(const pixels::Image& picture);
  void confirmTracks(const std::vector<HandCandidate>& candidates);
  void take(const HandReading& reading);
  bool isFollowed(const HandBox& box) const;
  bool wasRefused(const HandBox& box) const;
  std::vector<TrackedHand> report() const;

  HandVision& vision_;
  std::vector<HandTrack> tracks_;  // At most HandPoseRequest::maximumHandCount.
  std::vector<HandBox> refused_;   // Looked like hands in recent searches, and were none.
  int nextId_ = 1;
  int width_ = 0;
  int height_ = 0;
  std::optional<double> lastTime_;
  std::optional<double> lastSearch_;
};

}  // namespace platform::handpose
