#pragma once

#include <string>
#include <vector>

#include "pixels/surface.h"
#include "platform/hand_pose_request.h"
#include "tools/sample_clip/casting.h"
#include "tools/sample_clip/performance.h"
#include "training/render/person.h"
#include "training/render/studio.h"

namespace sample_clip {

/// One frame as the camera takes it.
struct Shot {
  pixels::Surface picture;                       ///< Over nothing: where no person is, transparent.
  std::vector<platform::HandObservation> hands;  ///< Those in the picture, where they really are.
};

/// A rendered person who performs before a camera. The same casting gives the same pictures.
class Actor {
 public:
  /// Reads the rigged mesh in `humanFolder`; throws std::runtime_error when something is missing.
  Actor(const std::string& humanFolder, const Casting& casting);

  /// Follows from the moment filmed before: a hand moves on from where it was.
  Shot film(const Moment& moment, int width, int height);

 private:
  training::render::Camera cameraFor(const Moment& moment, int height) const;
  /// The place that is seen at a point of the canvas, so deep before the camera.
  training::render::Vec3 placeAt(strokes::Point onCanvas, float depth,
                                 const training::render::Camera& camera) const;
  /// The same place, or so near to it that a hand upright there is seen whole.
  training::render::Vec3 inView(training::render::Vec3 wrist,
                                const training::render::Camera& camera) const;
  void write(const WritingHand& right, const training::render::Camera& camera);
  void raise(const Moment& moment, const training::render::Camera& camera);

  Casting casting_;
  training::render::Human human_;
  training::render::Studio studio_;
  training::render::Random random_;
  training::render::Body body_;
  training::render::HandRig rig_;
  training::render::Look look_;
  training::render::HandPose pinched_;
  training::render::HandPose opened_;
  training::render::HandPose spread_;
  training::render::HandPose idle_;
  training::render::PersonPose pose_;
};

}  // namespace sample_clip
