#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "pixels/surface.h"
#include "platform/hand_pose_request.h"
#include "tools/sample_clip/choreography.h"
#include "training/render/person.h"
#include "training/render/studio.h"

namespace sample_clip {

/// One frame as the camera takes it.
struct Shot {
  pixels::Surface picture;                       ///< Over nothing: where no person is, transparent.
  std::vector<platform::HandObservation> hands;  ///< Those in the picture, where they really are.
};

/// A rendered person who performs before a camera. The same seed gives the same person and light.
class Actor {
 public:
  /// Reads the rigged mesh in `humanFolder`; throws std::runtime_error when something is missing.
  Actor(const std::string& humanFolder, std::uint64_t seed);

  /// Follows from the moment filmed before: a hand moves on from where it was.
  Shot film(const Moment& moment, int width, int height);

 private:
  training::render::Camera cameraFor(const Moment& moment, int height) const;
  void write(const WritingHand& right, const training::render::Camera& camera);
  void raise(double raised, const training::render::Camera& camera);

  std::uint64_t seed_;
  training::render::Human human_;
  training::render::Studio studio_;
  training::render::Random random_;
  training::render::Body body_;
  training::render::HandRig rig_;
  training::render::Look look_;
  training::render::HandPose pinched_;
  training::render::HandPose opened_;
  training::render::HandPose spread_;
  training::render::PersonPose pose_;
};

}  // namespace sample_clip
