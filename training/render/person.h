#pragma once

#include "hand_poses.h"

namespace training::render {

/// A posed person: every vertex and both hands' labelled joints in space.
struct Person {
  std::vector<Vec3> vertices, normals;
  std::array<std::array<Vec3, 21>, 2> joints;  ///< Left hand, right hand.
  std::array<Gesture, 2> gestures{};
  std::array<bool, 2> isRaised{};
  Vec3 shoulder, neck;
  float handSize = 0;
};

/// How a person holds themselves.
struct PersonPose {
  Rigid head;
  std::array<ArmPose, 2> arms;  ///< Left arm; right arm as the left one of the mirror image.
};

/// `body` in a pose. Gestures and raised hands are left as they are.
Person posedPerson(const Human& human, const Body& body, const HandRig& rig,
                   const PersonPose& pose);

/// Why somebody holds up a hand.
enum class Occasion {
  webcam,    ///< Anything that people do before one.
  close,     ///< The same, and hands shown in every direction.
  painting,  ///< One hand paints; the other one may do anything.
};

/// Draws a body, turns the head, raises one or both hands and skins the mesh.
Person randomPerson(const Human& human, Occasion occasion, Random& random);

/// Vertex normals of `vertices`.
std::vector<Vec3> normalsOf(const std::vector<Vec3>& vertices,
                            const std::vector<Triangle>& triangles);

}  // namespace training::render
