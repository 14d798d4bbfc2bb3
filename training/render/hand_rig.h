#pragma once

#include <array>

#include "human.h"

namespace training::render {

constexpr int kFingers = 5;  ///< 0 thumb, 1 index .. 4 little.

/// The angles of a hand, radians. `flex` is absolute: 0 is a straight joint.
struct HandPose {
  float flex[kFingers][3] =
      {};  ///< At the palm, in the middle, at the tip; the thumb's first is unused.
  float spread[kFingers] = {};  ///< Sideways at the palm; positive towards the thumb.
  float roll[kFingers] = {};    ///< About the finger's length.
  float thumbFlex = 0;          ///< At the thumb's root, towards the palm, from rest.
  float thumbSide = 0;          ///< At the thumb's root, sideways, from rest.
  float thumbTwist = 0;         ///< At the thumb's root, about its length, from rest.
  float cup = 0;                ///< 0 flat palm .. 1 the little finger's side drawn in.
};

/// The angles of a whole arm, radians, from rest.
struct ArmPose {
  Rigid shoulder;
  float elbow = 0;
  float twist = 0;      ///< Of the forearm.
  float wristFlex = 0;  ///< Towards the palm.
  float wristSide = 0;  ///< Towards the thumb.
  HandPose hand;
};

using ArmTransforms = std::array<Rigid, kArmBones>;

/// The joints and axes of a body's left arm at rest, and its forward kinematics.
/// The right arm is its mirror image.
class HandRig {
 public:
  HandRig(const Body& body, const Human& human);

  /// All transforms from rest.
  void pose(const ArmPose& pose, ArmTransforms& transforms) const;
  /// Only those of `finger`; the palm's must be there.
  void poseFinger(const HandPose& pose, int finger, ArmTransforms& transforms) const;

  /// The 21 joints at rest, where people who label pictures put them, and the bone that moves each.
  const std::array<Vec3, 21>& labels() const { return labels_; }
  static int labelBone(int label);

  Vec3 up, across, palm;  ///< Wrist to middle MCP; towards the thumb; out of the palm. Orthonormal.
  float size = 0;         ///< Wrist to middle MCP.
  std::array<Vec3, kArmBones> head, tail;
  Vec3 along[kFingers][3], bendAxis[kFingers][3], padNormal[kFingers][3];
  float radius[kFingers][3] = {};

  /// The middle of the finger pad at rest.
  Vec3 pad(int finger) const;

 private:
  void measureAxes();
  void measureRadii(const Body& body, const Human& human);
  void placeLabels();

  float restFlex_[kFingers][3] = {};
  std::array<Vec3, 21> labels_;
};

}  // namespace training::render
