#include "tools/sample_clip/actor.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "tools/sample_clip/arm.h"

namespace sample_clip {
namespace {

using namespace training::render;

constexpr int kLeft = 0;
constexpr int kRight = 1;
constexpr int kSamplesPerPixel = 2;  // Each way, as the studio draws.

/// Focal length of a webcam in picture heights.
constexpr float kFocalLength = 1.1f;
/// The hands are held so far before the shoulders, and the camera stands so far above them.
constexpr float kHandsInFront = 3.0f;
constexpr float kCameraAbove = 0.7f;

// The detector reports the wrist and the middle knuckle a little nearer to each other than the
// labels are; see the training's description of its joints.
constexpr float kWristInwards = 0.12f;
constexpr float kKnuckleInwards = 0.10f;

/// The joints of the detector among the 21 labels, by platform::HandJoint.
constexpr std::array<std::size_t, 7> kLabels{0, 4, 8, 9, 12, 16, 20};

/// The pinched hand, thumb and index finger stretched away from each other.
HandPose openedFrom(HandPose pose) {
  pose.thumbFlex = radians(-18);
  pose.flex[0][1] = radians(5);
  pose.flex[0][2] = radians(5);
  pose.flex[1][0] = radians(8);
  pose.flex[1][1] = radians(14);
  pose.flex[1][2] = radians(6);
  return pose;
}

HandPose pinchedWithCurledFingers(const HandRig& rig, Random& random) {
  HandPose pose = randomHandPose(rig, Gesture::pinch, random);
  for (int f = 2; f < kFingers; ++f) {
    pose.flex[f][0] = radians(40 + 12.0f * static_cast<float>(f - 2));
    pose.flex[f][1] = radians(72);
    pose.flex[f][2] = radians(40);
  }
  return pose;
}

/// What the detector would say of a hand where nothing hides it.
platform::HandObservation observed(const HandLabel& label, std::size_t side, int width,
                                   int height) {
  platform::HandObservation seen;
  seen.chirality = side == kLeft ? platform::Chirality::left : platform::Chirality::right;
  for (std::size_t i = 0; i < kLabels.size(); ++i) {
    const float* at = label.joints[kLabels[i]];
    seen.points[i] = platform::RecognizedPoint{at[0] / static_cast<double>(width),
                                               1 - at[1] / static_cast<double>(height), 0.9F};
  }
  platform::RecognizedPoint& wrist = *seen[platform::HandJoint::wrist];
  platform::RecognizedPoint& knuckle = *seen[platform::HandJoint::middleMCP];
  const double across = knuckle.x - wrist.x;
  const double up = knuckle.y - wrist.y;
  wrist.x += kWristInwards * across;
  wrist.y += kWristInwards * up;
  knuckle.x -= kKnuckleInwards * across;
  knuckle.y -= kKnuckleInwards * up;
  return seen;
}

}  // namespace

Actor::Actor(const std::string& humanFolder, std::uint64_t seed)
    : seed_(seed),
      human_(humanFolder),
      studio_(human_),
      random_(seed),
      body_(human_.randomBody(random_)),
      rig_(body_, human_),
      look_(random_),
      pinched_(pinchedWithCurledFingers(rig_, random_)),
      opened_(openedFrom(pinched_)),
      spread_(randomHandPose(rig_, Gesture::openSpread, random_)) {
  pose_.head = about(body_.neck, rotation({1, 0, 0}, radians(4)));
  for (ArmPose& arm : pose_.arms) arm.wristFlex = radians(10);
}

Shot Actor::film(const Moment& moment, int width, int height) {
  const Camera camera = cameraFor(moment, height);
  write(moment.right, camera);
  raise(moment.leftRaised, camera);
  const Person person = posedPerson(human_, body_, rig_, pose_);
  Random light(seed_);
  const Record record =
      studio_.take(person, camera, look_, width, height, person.shoulder + Vec3{0, 0, 2}, 6, light);
  Shot shot{pixels::Surface(width, height), {}};
  for (int y = 0; y < height; ++y) {
    const std::size_t bytes = 4 * static_cast<std::size_t>(width);
    std::copy_n(record.pixels.data() + static_cast<std::size_t>(y) * bytes, bytes,
                shot.picture.view().row(y));
  }
  for (const std::size_t side : {std::size_t{kRight}, std::size_t{kLeft}}) {
    if (record.hands[side].valid >= 1) {
      shot.hands.push_back(observed(record.hands[side], side, width, height));
    }
  }
  return shot;
}

/// Stands before the person, nearer for a larger hand.
Camera Actor::cameraFor(const Moment& moment, int height) const {
  const float handLength = rig_.size * (1 - kWristInwards - kKnuckleInwards);
  const float depth = kFocalLength * handLength / static_cast<float>(moment.right.size);
  const Vec3 shoulder = rig_.head[kUpperArm1];
  const Vec3 from{0, shoulder.y + kCameraAbove, shoulder.z + kHandsInFront + depth};
  Camera camera;
  camera.fromSpace.row[0] = {1, 0, 0};
  camera.fromSpace.row[1] = {0, -1, 0};
  camera.fromSpace.row[2] = {0, 0, -1};
  camera.fromSpace.shift = -camera.fromSpace.turned(from);
  const auto samples = static_cast<float>(height * kSamplesPerPixel);
  camera.xx = camera.yy = kFocalLength * samples;
  camera.originX = 0.5f * static_cast<float>(kAspect) * samples;
  camera.originY = 0.5f * samples;
  return camera;
}

void Actor::write(const WritingHand& right, const Camera& camera) {
  ArmPose& arm = pose_.arms[kRight];
  const auto opening = static_cast<float>((right.opening - kPinched) / (kOpen - kPinched));
  arm.hand = between(pinched_, opened_, opening);

  // In the mirror image, where the right arm is a left one and the canvas is the picture.
  const Vec3 camera0 = camera.fromSpace.turnedBack(-camera.fromSpace.shift);
  const float shoulderZ = rig_.head[kUpperArm1].z;
  const float depth = camera0.z - (shoulderZ + kHandsInFront);
  const Vec3 pen{depth / kFocalLength * static_cast<float>((right.pen.x - 0.5) * kAspect),
                 camera0.y - depth / kFocalLength * static_cast<float>(right.pen.y - 0.5),
                 shoulderZ + kHandsInFront};
  Vec3 wrist = pen - Vec3{0, 1.1f * rig_.size, 0};
  for (int i = 0; i < 6; ++i) {
    reachFor(rig_, wrist, arm);
    turnHand(rig_, normalized({-0.35f, -0.1f, 1}), normalized({-0.15f, 1, 0.15f}), arm);
    ArmTransforms t;
    rig_.pose(arm, t);
    const auto joint = [&](std::size_t label) {
      return t[static_cast<std::size_t>(HandRig::labelBone(static_cast<int>(label)))](
          rig_.labels()[label]);
    };
    const Vec3 tips = (joint(4) + joint(8)) * 0.5f;
    // Along the line of sight, so that the tips are seen at the right place at once.
    const float nearer = (camera0.z - tips.z) / depth;
    wrist += Vec3{pen.x * nearer, camera0.y + (pen.y - camera0.y) * nearer, tips.z} - tips;
  }
}

void Actor::raise(double raised, const Camera& camera) {
  ArmPose& arm = pose_.arms[kLeft];
  arm.hand = spread_;
  const Vec3 camera0 = camera.fromSpace.turnedBack(-camera.fromSpace.shift);
  const float shoulderZ = rig_.head[kUpperArm1].z;
  const float depth = camera0.z - (shoulderZ + kHandsInFront - 0.6f);
  const auto up = static_cast<float>(-0.95 + 0.72 * raised);
  const Vec3 wrist{0.33f * static_cast<float>(kAspect) * depth / kFocalLength,
                   camera0.y + up * depth / kFocalLength, shoulderZ + kHandsInFront - 0.6f};
  reachFor(rig_, wrist, arm);
  turnHand(rig_, {0, 0, 1}, normalized({0.1f, 1, 0.1f}), arm);
}

}  // namespace sample_clip
