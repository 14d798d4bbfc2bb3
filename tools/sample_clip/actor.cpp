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

// The detector reports the wrist and the middle knuckle a little nearer to each other than the
// labels are; see the training's description of its joints.
constexpr float kWristInwards = 0.12f;
constexpr float kKnuckleInwards = 0.10f;

/// The joints of the detector among the 21 labels, by platform::HandJoint.
constexpr std::array<std::size_t, 7> kLabels{0, 4, 8, 9, 12, 16, 20};

/// Thumb and index finger touch, the others are at ease: straight, or folded, or in between.
HandPose pinchedFrom(const HandRig& rig, float curl, Random& random) {
  HandPose pose = randomHandPose(rig, Gesture::pinch, random);
  for (int f = 2; f < kFingers; ++f) {
    pose.flex[f][0] = radians(2 + 40 * curl + 8.0f * static_cast<float>(f - 2));
    pose.flex[f][1] = radians(10 + 60 * curl);
    pose.flex[f][2] = radians(4 + 40 * curl);
    pose.spread[f] = 0;
  }
  return pose;
}

/// `apart`: 0 as somebody holds the fingers who shows five and 1 as far apart as they easily go; -2
/// side by side. The fingers of the resting mesh are apart already.
void fanOut(HandPose& pose, float apart) {
  const float five[] = {0, -6, 0, 4, -5};
  const float further[] = {0, 5, 1, -3, -7};
  for (int f = 1; f < kFingers; ++f) pose.spread[f] = radians(five[f] + apart * further[f]);
}

/// A hand that wants to be seen spread: the fingers straight, and no nearer to each other than
/// those of real people who show five.
HandPose spreadFrom(const HandRig& rig, Random& random) {
  HandPose pose = randomHandPose(rig, Gesture::openSpread, random);
  const float root = random.normal(3);
  for (int f = 1; f < kFingers; ++f) {
    pose.flex[f][0] = radians(root + random.normal(3));
    pose.flex[f][1] = radians(4 + std::abs(random.normal(4)));
    pose.flex[f][2] = radians(2 + std::abs(random.normal(3)));
  }
  fanOut(pose, random.unit());
  return pose;
}

/// A hand that does nothing: the fingers half bent, the more the nearer to the little one.
HandPose idleFrom(const HandRig& rig, Random& random) {
  HandPose pose = randomHandPose(rig, Gesture::relaxed, random);
  const float root = random.between(20, 45);
  const float middle = random.between(25, 50);
  for (int f = 1; f < kFingers; ++f) {
    pose.flex[f][0] = radians(root + 4.0f * static_cast<float>(f - 2) + random.normal(4));
    pose.flex[f][1] = radians(middle + random.normal(5));
    pose.flex[f][2] = 0.5f * pose.flex[f][1];
  }
  fanOut(pose, random.between(-2, -0.5f));
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

Actor::Actor(const std::string& humanFolder, const Casting& casting)
    : casting_(casting),
      human_(humanFolder),
      studio_(human_),
      random_(casting.seed),
      body_(human_.randomBody(random_)),
      rig_(body_, human_),
      look_(random_),
      pinched_(pinchedFrom(rig_, casting.curl, random_)),
      opened_(between(pinched_, stretched(pinched_), 0.5f)),
      spread_(spreadFrom(rig_, random_)),
      idle_(idleFrom(rig_, random_)) {
  for (ArmPose& arm : pose_.arms) arm.wristFlex = radians(10);
}

Shot Actor::film(const Moment& moment, int width, int height) {
  const Camera camera = cameraFor(moment, height);
  pose_.head = about(body_.neck, rotation({0, 1, 0}, static_cast<float>(moment.headTurned)) *
                                     rotation({1, 0, 0}, radians(4)));
  write(moment.right, camera);
  raise(moment, camera);
  const Person person = posedPerson(human_, body_, rig_, pose_);
  Random light(casting_.seed);
  const Record record =
      studio_.take(person, camera, look_, width, height, person.shoulder + Vec3{0, 0, 2}, 6, light);
  Shot shot{pixels::Surface(width, height), {}};
  for (int y = 0; y < height; ++y) {
    const std::size_t bytes = 4 * static_cast<std::size_t>(width);
    std::copy_n(record.pixels.data() + static_cast<std::size_t>(y) * bytes, bytes,
                shot.picture.view().row(y));
  }
  for (const std::size_t side : {std::size_t{kRight}, std::size_t{kLeft}}) {
    if (record.hands[side].valid > 0) {
      shot.hands.push_back(observed(record.hands[side], side, width, height));
    }
  }
  return shot;
}

/// Stands before the person, nearer for a larger hand.
Camera Actor::cameraFor(const Moment& moment, int height) const {
  const float handLength = rig_.size * (1 - kWristInwards - kKnuckleInwards);
  const float depth = casting_.focalLength * handLength / static_cast<float>(moment.right.size);
  const Vec3 shoulder = rig_.head[kUpperArm1];
  const Vec3 from{0, shoulder.y + casting_.cameraAbove, shoulder.z + casting_.handsInFront + depth};
  Rigid straight;
  straight.row[0] = {1, 0, 0};
  straight.row[1] = {0, -1, 0};
  straight.row[2] = {0, 0, -1};
  Camera camera;
  camera.fromSpace = rotation({0, 0, 1}, casting_.cameraRoll) *
                     rotation({1, 0, 0}, casting_.cameraDown) *
                     rotation({0, 1, 0}, casting_.cameraLeft) * straight;
  camera.fromSpace.shift = -camera.fromSpace.turned(from);
  const auto samples = static_cast<float>(height * kSamplesPerPixel);
  camera.xx = camera.yy = casting_.focalLength * samples;
  camera.originX = 0.5f * static_cast<float>(kAspect) * samples;
  camera.originY = 0.5f * samples;
  return camera;
}

Vec3 Actor::placeAt(strokes::Point onCanvas, float depth, const Camera& camera) const {
  const Vec3 seen{static_cast<float>((0.5 - onCanvas.x) * kAspect) / casting_.focalLength,
                  static_cast<float>(onCanvas.y - 0.5) / casting_.focalLength, 1};
  return camera.fromSpace.turnedBack(seen * depth - camera.fromSpace.shift);
}

void Actor::write(const WritingHand& right, const Camera& camera) {
  ArmPose& arm = pose_.arms[kRight];
  const auto opening = static_cast<float>((right.opening - kPinched) / (kOpen - kPinched));
  arm.hand = between(pinched_, opened_, opening);

  // The right arm is posed as the left one of the mirror image.
  const Vec3 inFront{0, rig_.head[kUpperArm1].y, rig_.head[kUpperArm1].z + casting_.handsInFront};
  Vec3 wrist = mirrored(placeAt(right.pen, camera.fromSpace(inFront).z, camera)) -
               Vec3{0, 1.1f * rig_.size, 0};
  for (int i = 0; i < 6; ++i) {
    reachFor(rig_, wrist, arm);
    turnHand(rig_, casting_.palm, casting_.up, arm);
    ArmTransforms t;
    rig_.pose(arm, t);
    const auto joint = [&](std::size_t label) {
      return t[static_cast<std::size_t>(HandRig::labelBone(static_cast<int>(label)))](
          rig_.labels()[label]);
    };
    const Vec3 tips = (joint(4) + joint(8)) * 0.5f;
    // To where the tips are seen at the right point, as deep as they are.
    const float depth = camera.fromSpace(mirrored(tips)).z;
    wrist += mirrored(placeAt(right.pen, depth, camera)) - tips;
  }
}

Vec3 Actor::inView(Vec3 wrist, const Camera& camera) const {
  const Vec3 seen = camera.fromSpace(wrist);
  const double scale = casting_.focalLength / seen.z;
  const double palm = scale * rig_.size;  // In canvas heights, as all that follows.
  const double x = 0.5 * kAspect - scale * seen.x;
  const double y = 0.5 + scale * seen.y;
  const double side = 1.3 * palm;
  const double above = 2.2 * palm;
  const double below = 0.3 * palm;
  return placeAt({std::clamp(x, side, kAspect - side) / kAspect, std::clamp(y, above, 1 - below)},
                 seen.z, camera);
}

void Actor::raise(const Moment& moment, const Camera& camera) {
  ArmPose& arm = pose_.arms[kLeft];
  const auto raised = static_cast<float>(moment.leftRaised);
  const bool isSpread = moment.left == OtherHand::spread;
  arm.hand = between(idle_, isSpread ? spread_ : idle_, smoothStep(0.2f, 0.7f, raised));
  const Vec3 shoulder = rig_.head[kUpperArm1];
  const Vec3 down = shoulder + Vec3{0.7f, -4.4f, 0.8f};
  const Vec3 up = inView(shoulder + casting_.otherWrist, camera);
  reachFor(rig_, mix(down, up, raised), arm);
  const Vec3 palm = isSpread ? casting_.otherPalm : casting_.idlePalm;
  turnHand(rig_, normalized(mix({-1, 0, -0.3f}, palm, raised)),
           normalized(mix({0.1f, -1, 0.4f}, {0.1f, 1, 0.1f}, smoothStep(0, 0.6f, raised))), arm);
}

}  // namespace sample_clip
