#pragma once

#include "platform/handpose/chirality_vote.h"
#include "platform/handpose/hand_vision.h"

namespace platform::handpose {

/// A hand as the detector reports it.
struct TrackedHand {
  int id = 0;           ///< The same as long as the hand is followed; never used again.
  Landmarks landmarks;  ///< Picture pixels, plain convention.
  Chirality chirality = Chirality::unknown;
  double score = 0;  ///< 0 to 1.
};

/// One hand, from frame to frame.
class HandTrack {
 public:
  /// `vote`: what is known beforehand about its side.
  HandTrack(int id, const HandReading& first, const ChiralityVote& vote);

  const HandBox& box() const { return box_; }
  Chirality chirality() const { return vote_.chirality(); }
  TrackedHand report() const;

  /// Where to look for the hand in the next frame. It does not shrink much at once: an unsure
  /// network draws its joints together, and a crop made of those would collapse.
  HandCrop crop() const;

  /// How badly a reading goes with this hand: how far it has moved, in hands, and more when it is
  /// of the other side.
  double strangeness(const HandReading& reading) const;

  /// The hand has been read again. `beside`: what has been read of the other hand, if anything.
  void follow(const HandReading& reading, const HandReading* beside = nullptr);

  /// The hand could not be read. It stays as it was, for one frame.
  void miss();
  /// How many frames in a row it has not been read.
  int misses() const { return misses_; }

  /// The whole picture has been searched. `found`: how surely something like a hand was seen here,
  /// 0 to 1; 0 for nothing.
  void confirm(double found);
  /// Whether it has turned out to be no hand: for some searches the two networks have not agreed on
  /// it, and the closer look alone was not sure enough. A crop made from joints draws whatever is
  /// there, even a face, towards looking like a hand.
  bool isPhantom() const;

 private:
  int id_;
  Landmarks landmarks_;  // Steadied; the box, and so the next crop, is as it was read.
  HandBox box_;
  double cropSize_;
  double score_;
  ChiralityVote vote_;
  int misses_ = 0;
  int doubts_ = 0;  // Searches in a row that did not confirm it.
};

}  // namespace platform::handpose
