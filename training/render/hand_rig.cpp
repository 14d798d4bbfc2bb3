#include "hand_rig.h"

namespace training::render {
namespace {

// The mesh's joints against those in labelled pictures, in shares of the neighbouring bone: found
// by comparing the bones of labelled open hands with the mesh's, and the joints that a network
// trained on labelled hands alone sees in rendered ones.
constexpr float kKnuckleInwards[4] = {0.14f, 0.09f, 0.12f, 0.16f};
constexpr float kFingertipInwards = 0.20f, kThumbTipInwards = 0.16f;
constexpr float kWristOutwards = 0.07f;
constexpr float kThumbRootInwards = 0.15f, kThumbKnuckleOutwards = 0.12f;
// The direction in which the thumb bends, in the palm's axes; the file's plane for it is unusable.
constexpr float kThumbAcross = -0.62f, kThumbPalm = 0.78f;

}  // namespace

HandRig::HandRig(const Body& body, const Human& human) : head(body.boneHead), tail(body.boneTail) {
  for (int m = 0; m < 4; ++m) {
    Vec3& knuckle = head[static_cast<size_t>(fingerBone(m + 1, 0))];
    knuckle = mix(knuckle, head[static_cast<size_t>(kMetacarpal + m)], kKnuckleInwards[m]);
    tail[static_cast<size_t>(kMetacarpal + m)] = knuckle;
  }
  measureAxes();
  measureRadii(body, human);
  placeLabels();
}

void HandRig::measureAxes() {
  const Vec3 wrist = head[kWrist], middle = head[fingerBone(2, 0)];
  up = normalized(middle - wrist);
  palm = normalized(cross(up, head[fingerBone(1, 0)] - head[fingerBone(4, 0)]));
  across = cross(palm, up);
  size = length(middle - wrist);
  for (int f = 0; f < kFingers; ++f) {
    const Vec3 bends = f == 0 ? normalized(across * kThumbAcross + palm * kThumbPalm) : palm;
    for (int j = 0; j < 3; ++j) {
      const auto bone = static_cast<size_t>(fingerBone(f, j));
      along[f][j] = normalized(tail[bone] - head[bone]);
      bendAxis[f][j] = normalized(cross(along[f][j], bends));
      padNormal[f][j] = normalized(cross(bendAxis[f][j], along[f][j]));
      const Vec3 axis = bendAxis[f][j];
      const Vec3 before = j > 0 ? along[f][j - 1] : f > 0 ? up : along[f][0];
      const Vec3 a = normalized(before - axis * dot(before, axis)), b = along[f][j];
      restFlex_[f][j] = std::atan2(dot(cross(a, b), axis), dot(a, b));
    }
  }
}

void HandRig::measureRadii(const Body& body, const Human& human) {
  float sum[kFingers][3] = {}, count[kFingers][3] = {};
  for (size_t v = 0; v < body.vertices.size(); ++v) {
    const Binding& binding = human.bindings()[v];
    const int bone = binding.bone[0] - kLeftArm;
    if (bone < kFinger || bone >= kArmBones || binding.weight[0] < 0.6f) continue;
    const int f = (bone - kFinger) / 3, j = (bone - kFinger) % 3;
    const Vec3 way = body.vertices[v] - head[static_cast<size_t>(bone)];
    const float x = dot(way, along[f][j]),
                reach = length(tail[static_cast<size_t>(bone)] - head[static_cast<size_t>(bone)]);
    if (x < 0.15f * reach || x > 0.85f * reach) continue;
    sum[f][j] += length(way - along[f][j] * x);
    count[f][j] += 1;
  }
  for (int f = 0; f < kFingers; ++f) {
    for (int j = 0; j < 3; ++j) radius[f][j] = count[f][j] > 0 ? sum[f][j] / count[f][j] : 0.08f;
  }
}

void HandRig::placeLabels() {
  const Vec3 wrist = head[kWrist];
  labels_[0] = mix(wrist, head[fingerBone(2, 0)], kWristOutwards);
  for (int f = 0; f < kFingers; ++f) {
    for (int j = 0; j < 3; ++j)
      labels_[static_cast<size_t>(1 + 4 * f + j)] = head[static_cast<size_t>(fingerBone(f, j))];
    const auto last = static_cast<size_t>(fingerBone(f, 2));
    labels_[static_cast<size_t>(4 + 4 * f)] =
        mix(tail[last], head[last], f == 0 ? kThumbTipInwards : kFingertipInwards);
  }
  labels_[1] = mix(labels_[1], labels_[0], kThumbRootInwards);
  labels_[2] = mix(labels_[2], labels_[3], kThumbKnuckleOutwards);
}

int HandRig::labelBone(int label) {
  if (label <= 1) return kWrist;  // The thumb's root turns in place.
  return fingerBone((label - 1) / 4, std::min(2, (label - 1) % 4));
}

Vec3 HandRig::pad(int finger) const {
  const auto bone = static_cast<size_t>(fingerBone(finger, 2));
  return mix(head[bone], tail[bone], 0.72f) + padNormal[finger][2] * (0.88f * radius[finger][2]);
}

void HandRig::pose(const ArmPose& pose, ArmTransforms& t) const {
  const Vec3 forearm = normalized(head[kWrist] - head[kLowerArm1]);
  const Vec3 elbowAxis = normalized(cross(forearm, Vec3{0, 0, 1}));
  const Vec3 wristAxis = normalized(cross(up, palm));
  t[kUpperArm1] = t[kUpperArm2] = pose.shoulder;
  t[kLowerArm1] = t[kUpperArm2] * about(head[kLowerArm1], rotation(elbowAxis, pose.elbow));
  t[kLowerArm2] = t[kLowerArm1] * about(head[kLowerArm2], rotation(forearm, 0.5f * pose.twist));
  t[kWrist] = t[kLowerArm2] * about(head[kWrist], rotation(forearm, 0.5f * pose.twist) *
                                                      rotation(wristAxis, pose.wristFlex) *
                                                      rotation(palm, pose.wristSide));
  constexpr float kCup[4] = {0, 0, 0.07f, 0.16f};
  for (int m = 0; m < 4; ++m) {
    const auto bone = static_cast<size_t>(kMetacarpal + m);
    t[bone] = t[kWrist] * about(head[bone], rotation(wristAxis, kCup[m] * pose.hand.cup));
  }
  for (int f = 0; f < kFingers; ++f) poseFinger(pose.hand, f, t);
}

void HandRig::poseFinger(const HandPose& pose, int f, ArmTransforms& t) const {
  const auto first = static_cast<size_t>(fingerBone(f, 0));
  if (f == 0) {
    t[first] = t[kWrist] * about(head[first], rotation(bendAxis[0][0], pose.thumbFlex) *
                                                  rotation(padNormal[0][0], pose.thumbSide) *
                                                  rotation(along[0][0], pose.thumbTwist));
  } else {
    t[first] = t[static_cast<size_t>(kMetacarpal + f - 1)] *
               about(head[first], rotation(palm, pose.spread[f]) *
                                      rotation(bendAxis[f][0], pose.flex[f][0] - restFlex_[f][0]) *
                                      rotation(along[f][0], pose.roll[f]));
  }
  for (int j = 1; j < 3; ++j) {
    const size_t bone = first + static_cast<size_t>(j);
    t[bone] = t[bone - 1] *
              about(head[bone], rotation(bendAxis[f][j], pose.flex[f][j] - restFlex_[f][j]));
  }
}

}  // namespace training::render
