#include "hand_poses.h"

#include <limits>

#include "finger_collision.h"
#include "thumb_reach.h"

namespace training::render {
namespace {

enum class Curl { open, relaxed, folded, any, hooked };

/// A pose still without the check for collisions.
struct Draft {
  HandPose pose;
  float miss = 0;    ///< By how far the thumb missed its target.
  int contact = -1;  ///< The finger that the thumb may touch.
};

void curl(HandPose& pose, int finger, Curl kind, Random& random) {
  float root = 0, middle = 0, end = 0;  // Degrees.
  switch (kind) {
    case Curl::open:
      root = random.normal(9) + 2;
      middle = std::abs(random.normal(8)) + 2;
      end = std::abs(random.normal(5)) + 1;
      break;
    case Curl::relaxed:
      root = random.between(5, 45);
      middle = random.between(12, 55);
      end = middle * random.between(0.4f, 0.8f);
      break;
    case Curl::folded:
      root = random.between(60, 95);
      middle = random.between(85, 112);
      end = random.between(35, 80);
      break;
    case Curl::any:
      root = random.between(-20, 95);
      middle = random.between(0, 112);
      end = middle * random.between(0.2f, 0.9f);
      break;
    case Curl::hooked:
      root = random.between(-10, 25);
      middle = random.between(70, 112);
      end = middle * random.between(0.4f, 0.8f);
      break;
  }
  pose.flex[finger][0] = radians(root);
  pose.flex[finger][1] = radians(middle);
  pose.flex[finger][2] = radians(end);
}

void curlAll(HandPose& pose, Curl kind, Random& random) {
  for (int f = 1; f < kFingers; ++f) curl(pose, f, kind, random);
}

Curl randomCurl(Random& random) {
  return static_cast<Curl>(random.below(5));
}

void fanOut(HandPose& pose, float amount, Random& random) {
  pose.spread[1] = amount * radians(random.between(6, 14));
  pose.spread[2] = amount * radians(random.between(-2, 4));
  pose.spread[3] = -amount * radians(random.between(3, 10));
  pose.spread[4] = -amount * radians(random.between(8, 20));
}

void thumbOut(HandPose& pose, Random& random) {
  pose.thumbFlex = radians(random.between(-28, 5));
  pose.thumbSide = radians(random.between(-25, 20));
  pose.thumbTwist = radians(random.between(-12, 12));
  pose.flex[0][1] = radians(random.between(-8, 18));
  pose.flex[0][2] = radians(random.between(-18, 15));
}

void thumbAnywhere(HandPose& pose, Random& random) {
  pose.thumbFlex = radians(random.between(-25, 35));
  pose.thumbSide = radians(random.between(-30, 30));
  pose.thumbTwist = radians(random.between(-20, 30));
  pose.flex[0][1] = radians(random.between(-8, 50));
  pose.flex[0][2] = radians(random.between(-15, 70));
}

Draft foldedHand(const HandRig& rig, bool isPointing, Random& random) {
  Draft draft;
  HandPose& pose = draft.pose;
  const float root = random.between(70, 94), middle = random.between(96, 112),
              end = random.between(50, 80);
  for (int f = 1; f < kFingers; ++f) {
    pose.flex[f][0] = radians(root + random.normal(5));
    pose.flex[f][1] = radians(std::min(112.0f, middle + random.normal(4)));
    pose.flex[f][2] = radians(end + random.normal(6));
  }
  fanOut(pose, random.between(-0.1f, 0.05f), random);
  if (isPointing) curl(pose, 1, random.chance(0.75f) ? Curl::open : Curl::relaxed, random);
  thumbAnywhere(pose, random);
  const float choice = random.unit();
  if (choice < 0.7f) {
    draft.contact = isPointing || random.chance(0.5f) ? 2 : 1;
    ThumbTarget target = onFinger(rig, draft.contact, 1, random.between(0.2f, 0.9f));
    target.gap = random.chance(0.8f) ? 0 : random.between(0, 0.3f);
    draft.miss = reach(rig, pose, target);
  } else if (choice < 0.86f) {
    thumbOut(pose, random);
  }
  return draft;
}

Draft pinching(const HandRig& rig, Gesture gesture, Random& random) {
  Draft draft;
  HandPose& pose = draft.pose;
  curlAll(pose, gesture == Gesture::okSign ? Curl::open : randomCurl(random), random);
  if (gesture != Gesture::okSign && random.chance(0.4f)) {
    for (int f = 2; f < kFingers; ++f) curl(pose, f, randomCurl(random), random);
  }
  fanOut(pose, random.between(-0.1f, 0.9f), random);
  pose.flex[1][0] = radians(random.between(10, 68));
  pose.flex[1][1] = radians(random.between(15, 78));
  pose.flex[1][2] = radians(random.between(3, 48));
  thumbAnywhere(pose, random);
  pose.thumbFlex = radians(random.between(-10, 30));
  pose.thumbSide = radians(random.between(-10, 30));
  pose.thumbTwist = radians(random.between(-5, 30));
  ThumbTarget target;
  target.finger = draft.contact = 1;
  target.gap = gesture == Gesture::nearPinch ? random.between(0.03f, 0.8f) * rig.size
                                             : std::max(0.0f, random.normal(0.012f));
  draft.miss = reach(rig, pose, target);
  return draft;
}

Draft touchingOther(const HandRig& rig, Random& random) {
  Draft draft;
  HandPose& pose = draft.pose;
  const int finger = 2 + random.below(3);
  curlAll(pose, random.chance(0.7f) ? Curl::open : randomCurl(random), random);
  pose.flex[finger][0] = radians(random.between(30, 80));
  pose.flex[finger][1] = radians(random.between(30, 90));
  pose.flex[finger][2] = radians(random.between(10, 50));
  thumbAnywhere(pose, random);
  fanOut(pose, random.between(0, 1), random);
  if (random.chance(0.4f)) {
    for (int f = finger + 1; f < kFingers; ++f)
      curl(pose, f, random.chance(0.5f) ? Curl::relaxed : Curl::folded, random);
  }
  ThumbTarget target;
  target.finger = draft.contact = finger;
  target.gap = random.chance(0.8f) ? 0 : random.between(0, 0.4f) * rig.size;
  draft.miss = reach(rig, pose, target);
  return draft;
}

Draft thumbInPalm(const HandRig& rig, Random& random) {
  Draft draft;
  curlAll(draft.pose, random.chance(0.8f) ? Curl::open : Curl::any, random);
  fanOut(draft.pose, random.between(-0.2f, 1), random);
  thumbAnywhere(draft.pose, random);
  ThumbTarget target;
  target.bone = kMetacarpal + random.below(4);
  const auto bone = static_cast<size_t>(target.bone);
  target.place = mix(rig.head[bone], rig.tail[bone], random.between(0.4f, 1.1f)) + rig.palm * 0.16f;
  target.normal = rig.palm;
  target.gap = random.between(0, 0.15f);
  draft.miss = 0.3f * reach(rig, draft.pose, target);
  return draft;
}

Draft counting(const HandRig& rig, Random& random) {
  Draft draft;
  HandPose& pose = draft.pose;
  int folded = 0;
  for (int f = 1; f < kFingers; ++f) {
    const bool isUp = random.chance(0.55f);
    const bool isFolded = !isUp && random.chance(0.75f);
    curl(pose, f, isUp ? Curl::open : isFolded ? Curl::folded : Curl::relaxed, random);
    if (isFolded && (folded == 0 || random.chance(0.5f))) folded = f;
  }
  fanOut(pose, random.between(-0.1f, 1.2f), random);
  if (random.chance(0.45f))
    thumbOut(pose, random);
  else
    thumbAnywhere(pose, random);
  if (folded > 0 && random.chance(0.65f)) {
    draft.contact = folded;
    draft.miss =
        0.5f * reach(rig, pose,
                     onFinger(rig, folded, random.chance(0.7f) ? 1 : 2, random.between(0.2f, 1)));
  }
  return draft;
}

Draft simpleHand(Gesture gesture, Random& random) {
  Draft draft;
  HandPose& pose = draft.pose;
  switch (gesture) {
    case Gesture::openSpread:
      curlAll(pose, Curl::open, random);
      thumbOut(pose, random);
      fanOut(pose, random.between(0.7f, 1.6f), random);
      break;
    case Gesture::openTogether:
      curlAll(pose, Curl::open, random);
      if (random.chance(0.5f))
        thumbOut(pose, random);
      else
        thumbAnywhere(pose, random);
      fanOut(pose, random.between(-0.35f, 0.15f), random);
      break;
    case Gesture::relaxed: {
      const float root = random.between(0, 45), middle = random.between(8, 60);
      for (int f = 1; f < kFingers; ++f) {
        pose.flex[f][0] =
            radians(root + static_cast<float>(f - 2) * random.between(0, 8) + random.normal(6));
        pose.flex[f][1] = radians(middle + random.normal(8));
        pose.flex[f][2] = pose.flex[f][1] * random.between(0.4f, 0.8f);
      }
      if (random.chance(0.5f))
        thumbOut(pose, random);
      else
        thumbAnywhere(pose, random);
      fanOut(pose, random.between(-0.2f, 0.7f), random);
      break;
    }
    default:
      for (int f = 1; f < kFingers; ++f) curl(pose, f, randomCurl(random), random);
      thumbAnywhere(pose, random);
      fanOut(pose, random.between(-0.3f, 1.2f), random);
  }
  return draft;
}

Draft draftOf(const HandRig& rig, Gesture gesture, Random& random) {
  switch (gesture) {
    case Gesture::fist:
      return foldedHand(rig, false, random);
    case Gesture::pointing:
      return foldedHand(rig, true, random);
    case Gesture::pinch:
    case Gesture::nearPinch:
    case Gesture::okSign:
      return pinching(rig, gesture, random);
    case Gesture::otherTouch:
      return touchingOther(rig, random);
    case Gesture::thumbInPalm:
      return thumbInPalm(rig, random);
    case Gesture::counting:
      return counting(rig, random);
    default:
      return simpleHand(gesture, random);
  }
}

}  // namespace

Gesture randomGesture(Random& random) {
  constexpr float kShares[] = {12, 7, 9, 8, 9, 14, 12, 6, 6, 4, 11, 8};
  static_assert(std::size(kShares) == static_cast<size_t>(Gesture::count));
  float left = random.unit() * 106;
  int gesture = 0;
  while (gesture + 1 < static_cast<int>(Gesture::count) && left > kShares[gesture])
    left -= kShares[gesture++];
  return static_cast<Gesture>(gesture);
}

HandPose randomHandPose(const HandRig& rig, Gesture gesture, Random& random) {
  HandPose best;
  float least = std::numeric_limits<float>::max();
  for (int attempt = 0; attempt < 7 && least > 0.06f; ++attempt) {
    Draft draft = draftOf(rig, gesture, random);
    for (int f = 1; f < kFingers; ++f) draft.pose.roll[f] = radians(random.normal(3));
    const float fault =
        penetration(rig, draft.pose, draft.contact) + (draft.miss > 0.04f ? 0.5f : 0.0f);
    if (fault < least) {
      least = fault;
      best = draft.pose;
    }
  }
  best.cup = random.chance(0.4f) ? random.unit() : 0;
  return best;
}

HandPose between(const HandPose& a, const HandPose& b, float t) {
  const auto mixed = [t](float x, float y) { return x + (y - x) * t; };
  HandPose pose;
  for (int f = 0; f < kFingers; ++f) {
    for (int j = 0; j < 3; ++j) pose.flex[f][j] = mixed(a.flex[f][j], b.flex[f][j]);
    pose.spread[f] = mixed(a.spread[f], b.spread[f]);
    pose.roll[f] = mixed(a.roll[f], b.roll[f]);
  }
  pose.thumbFlex = mixed(a.thumbFlex, b.thumbFlex);
  pose.thumbSide = mixed(a.thumbSide, b.thumbSide);
  pose.thumbTwist = mixed(a.thumbTwist, b.thumbTwist);
  pose.cup = mixed(a.cup, b.cup);
  return pose;
}

HandPose stretched(HandPose pinched) {
  pinched.thumbFlex = radians(-18);
  pinched.flex[0][1] = radians(5);
  pinched.flex[0][2] = radians(5);
  pinched.flex[1][0] = radians(8);
  pinched.flex[1][1] = radians(14);
  pinched.flex[1][2] = radians(6);
  return pinched;
}

HandPose paintingHandPose(const HandRig& rig, Random& random) {
  if (random.chance(0.18f)) return randomHandPose(rig, Gesture::openSpread, random);
  HandPose pose = randomHandPose(rig, Gesture::pinch, random);
  if (random.chance(0.6f)) {  // All other fingers alike: straight, or folded, or in between.
    const float together = random.unit();
    for (int f = 2; f < kFingers; ++f) {
      pose.flex[f][0] =
          radians(2 + 40 * together + 8.0f * static_cast<float>(f - 2) + random.normal(5));
      pose.flex[f][1] = radians(10 + 60 * together + random.normal(6));
      pose.flex[f][2] = radians(4 + 40 * together + random.normal(4));
      pose.spread[f] = radians(random.normal(4));
    }
  }
  if (random.chance(0.45f)) {  // Closed.
    return between(pose, stretched(pose), std::max(0.0f, random.between(-0.02f, 0.05f)));
  }
  if (random.chance(0.3f)) {  // The whole hand opens, not the two fingers alone.
    constexpr Gesture kOpen[] = {Gesture::openSpread, Gesture::openTogether, Gesture::relaxed};
    const Gesture opened = kOpen[random.below(static_cast<int>(std::size(kOpen)))];
    return between(pose, randomHandPose(rig, opened, random), random.between(0.15f, 1));
  }
  return between(pose, stretched(pose), random.between(0.05f, 0.75f));
}

}  // namespace training::render
