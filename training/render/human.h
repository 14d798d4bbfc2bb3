#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "random.h"
#include "vec.h"

namespace training::render {

/// The bones of one arm in the order of the transforms.
enum ArmBone {
  kUpperArm1,
  kUpperArm2,
  kLowerArm1,
  kLowerArm2,
  kWrist,
  kMetacarpal,
  kFinger = kMetacarpal + 4
};
constexpr int kArmBones = kFinger + 15;
/// Bone `joint` (0 at the palm .. 2 at the tip) of `finger` (0 thumb .. 4 little).
constexpr int fingerBone(int finger, int joint) {
  return kFinger + 3 * finger + joint;
}

/// Transforms of a person: the trunk, the head, the left arm's bones, the right arm's.
constexpr int kTrunk = 0, kHead = 1, kLeftArm = 2, kRightArm = kLeftArm + kArmBones;
constexpr int kTransforms = kRightArm + kArmBones;

enum class Material : unsigned char { skin, clothes, hair, eye };

struct Triangle {
  int corner[3] = {};
  Material material = Material::skin;
};

/// Up to four bones move a vertex.
struct Binding {
  std::array<int, 4> bone{};
  std::array<float, 4> weight{};
};

/// One person's body at rest: arms down and out, palms towards the thighs, facing +z, y up.
struct Body {
  std::vector<Vec3> vertices;
  std::array<Vec3, kArmBones> boneHead, boneTail;  ///< Of the left arm.
  Vec3 neck;
};

/// The mesh with everything that makes different people of it. Decimetres.
class Human {
 public:
  /// Reads base.obj, default.mhskel, default_weights.mhw and targets/ below `folder`.
  /// Throws std::runtime_error when something is missing.
  explicit Human(const std::string& folder);

  const std::vector<Triangle>& triangles() const { return triangles_; }
  const std::vector<Binding>& bindings() const { return bindings_; }
  const std::vector<Vec3>& neutral() const { return vertices_; }

  /// A body of random age, sex, build, origin and hands.
  Body randomBody(Random& random) const;
  /// The mesh as it is in the file.
  Body neutralBody() const;

 private:
  struct Morph {
    std::string name;
    std::vector<std::pair<int, Vec3>> moves;
  };

  void readMesh(const std::string& path);
  void readSkeleton(const std::string& folder);
  void readMorphs(const std::string& folder);
  void apply(const std::string& name, float amount, std::vector<Vec3>& vertices) const;
  void placeBones(Body& body) const;

  std::vector<Vec3> vertices_;
  std::vector<Triangle> triangles_;
  std::vector<Binding> bindings_;
  std::vector<Morph> morphs_;  // Sorted by name.
  std::array<std::vector<int>, kArmBones> headVertices_, tailVertices_;
  std::vector<int> neckVertices_;
};

}  // namespace training::render
