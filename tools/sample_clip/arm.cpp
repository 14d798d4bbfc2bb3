#include "tools/sample_clip/arm.h"

#include <algorithm>
#include <cmath>

namespace sample_clip {
namespace {

using namespace training::render;

/// An angle that may be changed, with its limits in degrees.
struct Joint {
  float* angle;
  float low;
  float high;
};

float bentElbowFor(const HandRig& rig, float distance) {
  const Vec3 shoulder = rig.head[kUpperArm1];
  ArmTransforms t;
  float straight = radians(-5);
  float bent = radians(140);
  for (int i = 0; i < 20; ++i) {
    ArmPose trial;
    trial.elbow = 0.5f * (straight + bent);
    rig.pose(trial, t);
    const float reach = length(t[kWrist](rig.head[kWrist]) - shoulder);
    (reach > distance ? straight : bent) = trial.elbow;
  }
  return straight;
}

/// The angle about `axis` (of length 1) that brings `from` nearest to `to`.
float angleAbout(Vec3 axis, Vec3 from, Vec3 to) {
  const Vec3 a = from - axis * dot(from, axis);
  const Vec3 b = to - axis * dot(to, axis);
  return std::atan2(dot(cross(a, b), axis), dot(a, b));
}

}  // namespace

void reachFor(const HandRig& rig, Vec3 target, ArmPose& pose) {
  const Vec3 shoulder = rig.head[kUpperArm1];
  pose.elbow = bentElbowFor(rig, length(target - shoulder));
  ArmPose trial;
  trial.elbow = pose.elbow;
  ArmTransforms t;
  rig.pose(trial, t);
  const Vec3 wrist = t[kWrist](rig.head[kWrist]) - shoulder;
  const Vec3 axis = normalized(target - shoulder);
  const Rigid towards = aligning(wrist, axis);
  const Vec3 lowAndOutside{0.55f, -1, -0.1f};
  const Vec3 elbow = towards.turned(rig.head[kLowerArm1] - shoulder);
  pose.shoulder = about(shoulder, rotation(axis, angleAbout(axis, elbow, lowAndOutside)) * towards);
}

void turnHand(const HandRig& rig, Vec3 palm, Vec3 up, ArmPose& pose) {
  const Joint joints[] = {
      {&pose.twist, -120, 100}, {&pose.wristFlex, -60, 60}, {&pose.wristSide, -28, 28}};
  ArmTransforms t;
  const auto cost = [&] {
    rig.pose(pose, t);
    return -dot(t[kWrist].turned(rig.palm), palm) - 1.2f * dot(t[kWrist].turned(rig.up), up) +
           0.15f * pose.wristFlex * pose.wristFlex + 0.1f * pose.wristSide * pose.wristSide;
  };
  float least = cost();
  for (float step = 0.4f; step > 0.002f; step *= 0.7f) {
    for (const Joint& joint : joints) {
      for (const float way : {step, -step}) {
        const float before = *joint.angle;
        *joint.angle = std::clamp(before + way, radians(joint.low), radians(joint.high));
        const float now = cost();
        if (now < least) {
          least = now;
          break;
        }
        *joint.angle = before;
      }
    }
  }
}

}  // namespace sample_clip
