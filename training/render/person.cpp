#include "person.h"

#include <limits>

namespace training::render {
namespace {

/// Bends the elbow and turns the shoulder until the wrist lies at `target`, elbow low and outside.
void reachFor(const HandRig& rig, Vec3 target, ArmPose& pose, Random& random) {
  const Vec3 shoulder = rig.head[kUpperArm1];
  const float wanted = length(target - shoulder);
  ArmTransforms t;
  const auto reachAt = [&](float elbow) {
    ArmPose trial;
    trial.elbow = elbow;
    rig.pose(trial, t);
    return length(t[kWrist](rig.head[kWrist]) - shoulder);
  };
  float straight = radians(-10), bent = radians(140);
  for (int i = 0; i < 12; ++i) {
    const float middle = 0.5f * (straight + bent);
    (reachAt(middle) > wanted ? straight : bent) = middle;
  }
  pose.elbow = straight;
  reachAt(straight);
  const Vec3 wrist = t[kWrist](rig.head[kWrist]) - shoulder;
  const Vec3 elbow = rig.head[kLowerArm1] - shoulder;
  const Rigid towards = aligning(wrist, target - shoulder);
  const float outwards = random.between(0.2f, 0.8f), depth = random.normal(0.25f);
  float best = std::numeric_limits<float>::max();
  for (int i = 0; i < 24; ++i) {
    const Rigid turn =
        rotation(target - shoulder, radians(15.0f * static_cast<float>(i))) * towards;
    const Vec3 e = turn.turned(elbow) + shoulder;
    float fault = e.y - outwards * e.x + depth * e.z;
    if (e.z < -1.2f) fault += 2;
    if (std::abs(e.x) < 0.9f * shoulder.x && e.z < 1.3f) fault += 3;
    if (fault < best) {
      best = fault;
      pose.shoulder = about(shoulder, turn);
    }
  }
}

/// Chooses forearm and wrist angles by how well palm and hand then point.
void orientHand(const HandRig& rig, Vec3 palm, Vec3 up, float palmWeight, ArmPose& pose,
                Random& random) {
  ArmTransforms t;
  ArmPose best = pose;
  float highest = -std::numeric_limits<float>::max();
  for (int i = 0; i < 16; ++i) {
    pose.twist = radians(random.between(-120, 100));
    pose.wristFlex = radians(std::clamp(random.normal(25), -60.0f, 60.0f));
    pose.wristSide = radians(std::clamp(random.normal(10), -25.0f, 25.0f));
    rig.pose(pose, t);
    const float score = palmWeight * dot(t[kWrist].turned(rig.palm), palm) +
                        dot(t[kWrist].turned(rig.up), up) - 0.3f * std::abs(pose.wristFlex);
    if (score > highest) {
      highest = score;
      best = pose;
    }
  }
  pose = best;
}

Vec3 targetFor(bool isRaised, Vec3 shoulder, Random& random) {
  if (!isRaised) {
    return shoulder + Vec3{random.between(0.1f, 1.2f), -random.between(3.6f, 5.0f),
                           random.between(-0.3f, 1.8f)};
  }
  if (random.chance(0.2f)) {  // Beside the head and above.
    return shoulder +
           Vec3{random.between(0.5f, 3.5f), random.between(-1, 3.5f), random.between(-0.3f, 2)};
  }
  return {shoulder.x + random.between(-3.2f, 2.8f), shoulder.y + random.between(-2.2f, 2.6f),
          random.between(1.2f, 4.6f)};
}

ArmPose randomArm(const HandRig& rig, bool isRaised, Occasion occasion, Gesture gesture,
                  Random& random) {
  ArmPose pose;
  pose.hand = randomHandPose(rig, gesture, random);
  const Vec3 shoulder = rig.head[kUpperArm1];
  const Vec3 way = targetFor(isRaised, shoulder, random) - shoulder;
  const float distance = std::clamp(length(way), 1.6f, 5.1f);
  reachFor(rig, shoulder + normalized(way) * distance, pose, random);
  const bool isFree = occasion == Occasion::close && random.chance(0.4f);
  const Vec3 palm = isFree || random.chance(0.35f)
                        ? random.direction()
                        : normalized({random.normal(0.4f), random.normal(0.3f), 1});
  const Vec3 up = isFree || random.chance(0.22f)
                      ? random.direction()
                      : normalized({random.normal(0.5f), 1, random.normal(0.5f)});
  if (isRaised) {
    orientHand(rig, palm, up, random.between(0.3f, 1.1f), pose, random);
  } else {
    pose.twist = radians(random.normal(25));
    pose.wristFlex = radians(random.normal(10));
  }
  return pose;
}

/// An arm stretched out to paint: the fingers up or towards the camera, the palm towards it or to
/// the side.
ArmPose paintingArm(const HandRig& rig, Random& random) {
  ArmPose pose;
  pose.hand = paintingHandPose(rig, random);
  const Vec3 shoulder = rig.head[kUpperArm1];
  const Vec3 way = random.chance(0.3f) ? targetFor(true, shoulder, random) - shoulder
                                       : Vec3{random.between(-2, 2.5f), random.between(-2, 2.2f),
                                              random.between(2.2f, 4)};
  reachFor(rig, shoulder + normalized(way) * std::clamp(length(way), 1.6f, 5.1f), pose, random);
  const Vec3 palm = normalized(
      {random.between(-1.3f, 0.5f), random.between(-0.7f, 0.4f), random.between(0.25f, 1.2f)});
  const Vec3 up = normalized({random.between(-0.7f, 0.4f), 1, random.between(-0.2f, 0.9f)});
  orientHand(rig, palm, up, random.between(0.5f, 1.2f), pose, random);
  return pose;
}

}  // namespace

std::vector<Vec3> normalsOf(const std::vector<Vec3>& vertices,
                            const std::vector<Triangle>& triangles) {
  std::vector<Vec3> normals(vertices.size());
  for (const Triangle& t : triangles) {
    const auto a = static_cast<size_t>(t.corner[0]), b = static_cast<size_t>(t.corner[1]),
               c = static_cast<size_t>(t.corner[2]);
    const Vec3 n = cross(vertices[b] - vertices[a], vertices[c] - vertices[a]);
    normals[a] += n;
    normals[b] += n;
    normals[c] += n;
  }
  for (Vec3& n : normals) n = normalized(n);
  return normals;
}

Person posedPerson(const Human& human, const Body& body, const HandRig& rig,
                   const PersonPose& pose) {
  Person person;
  person.neck = body.neck;
  person.shoulder = body.boneHead[kUpperArm1];
  person.handSize = rig.size;
  std::array<Rigid, kTransforms> transforms;
  transforms[kHead] = pose.head;
  for (int side = 0; side < 2; ++side) {
    const auto s = static_cast<size_t>(side);
    ArmTransforms t;
    rig.pose(pose.arms[s], t);
    for (size_t bone = 0; bone < kArmBones; ++bone) {
      transforms[static_cast<size_t>(side == 0 ? kLeftArm : kRightArm) + bone] =
          side == 0 ? t[bone] : mirrored(t[bone]);
    }
    for (int i = 0; i < 21; ++i) {
      const Vec3 joint =
          t[static_cast<size_t>(HandRig::labelBone(i))](rig.labels()[static_cast<size_t>(i)]);
      person.joints[s][static_cast<size_t>(i)] = side == 0 ? joint : mirrored(joint);
    }
  }
  person.vertices.resize(body.vertices.size());
  for (size_t v = 0; v < body.vertices.size(); ++v) {
    const Binding& binding = human.bindings()[v];
    Vec3 sum;
    for (size_t k = 0; k < 4 && binding.weight[k] > 0; ++k) {
      sum += transforms[static_cast<size_t>(binding.bone[k])](body.vertices[v]) * binding.weight[k];
    }
    person.vertices[v] = sum;
  }
  person.normals = normalsOf(person.vertices, human.triangles());
  return person;
}

Person randomPerson(const Human& human, Occasion occasion, Random& random) {
  const Body body = human.randomBody(random);
  const HandRig rig(body, human);
  PersonPose pose;
  pose.head = about(body.neck, rotation({0, 1, 0}, radians(random.normal(18))) *
                                   rotation({1, 0, 0}, radians(random.normal(8))) *
                                   rotation({0, 0, 1}, radians(random.normal(7))));
  const int raised = random.chance(0.3f)    ? 2
                     : random.chance(0.06f) ? 3
                                            : random.below(2);  // 2: both, 3: none.
  std::array<bool, 2> isRaised{};
  std::array<Gesture, 2> gestures{};
  for (int side = 0; side < 2; ++side) {
    const auto s = static_cast<size_t>(side);
    isRaised[s] = raised == 2 || raised == side;
    gestures[s] = isRaised[s] ? randomGesture(random) : Gesture::relaxed;
    pose.arms[s] = randomArm(rig, isRaised[s], occasion, gestures[s], random);
  }
  if (occasion == Occasion::painting) {
    const auto painter = static_cast<size_t>(random.below(2));
    isRaised = {painter == 0, painter == 1};
    gestures[painter] = Gesture::pinch;
    pose.arms[painter] = paintingArm(rig, random);
  }
  Person person = posedPerson(human, body, rig, pose);
  person.isRaised = isRaised;
  person.gestures = gestures;
  return person;
}

}  // namespace training::render
