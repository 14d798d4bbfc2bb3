#pragma once

#include "platform/hand_pose_request.h"

namespace platform::handpose {

/// Decides from many frames whether a hand is a left or a right one. A hand does not change sides,
/// so the answer, once given, changes only when what is seen contradicts it for about half a
/// second.
class ChiralityVote {
 public:
  ChiralityVote() = default;
  /// A hand seen beside another one: most likely the other hand of the same person.
  static ChiralityVote besides(Chirality other);

  /// `right`: probability of a right hand, 0 to 1. `weight`: 0 to 1, how much it counts. `beside`:
  /// the same probability of the other hand in the picture. They are one person's, so what speaks
  /// for a right hand there speaks for a left one here.
  void add(double right, double weight, double beside = 0.5);

  Chirality chirality() const { return chirality_; }

 private:
  double evidence_ = 0;  // Sum of log odds; positive: right.
  Chirality chirality_ = Chirality::unknown;
};

}  // namespace platform::handpose
