#include "surface.h"

#include "person.h"

namespace training::render {
namespace {

float armCoordinate(const HandRig& rig, Vec3 p) {
  const Vec3 shoulder = rig.head[kUpperArm1], elbow = rig.head[kLowerArm1],
             wrist = rig.head[kWrist];
  const auto share = [&](Vec3 from, Vec3 to) {
    return dot(p - from, to - from) / dot(to - from, to - from);
  };
  const float lower = share(elbow, wrist);
  return lower > 0 ? 1 + lower : std::min(1.0f, share(shoulder, elbow));
}

}  // namespace

std::vector<SurfacePoint> surfaceOf(const Human& human) {
  const Body body = human.neutralBody();
  const HandRig rig(body, human);
  const std::vector<Vec3> normals = normalsOf(body.vertices, human.triangles());
  std::vector<SurfacePoint> surface(body.vertices.size());
  for (size_t v = 0; v < surface.size(); ++v) {
    SurfacePoint& s = surface[v];
    s.place = body.vertices[v];
    int bone = human.bindings()[v].bone[0];
    if (bone < kLeftArm) continue;
    s.side = bone >= kRightArm ? 1 : 0;
    bone -= s.side == 1 ? kRightArm : kLeftArm;
    const Vec3 p = s.side == 1 ? mirrored(s.place) : s.place;
    const Vec3 n = s.side == 1 ? mirrored(normals[v]) : normals[v];
    s.arm = armCoordinate(rig, p);
    s.palmar = dot(n, rig.palm);
    if (bone < kFinger) continue;
    const int f = (bone - kFinger) / 3, j = (bone - kFinger) % 3;
    const Vec3 way = p - rig.head[static_cast<size_t>(bone)];
    const float share = dot(way, rig.along[f][j]) / length(rig.tail[static_cast<size_t>(bone)] -
                                                           rig.head[static_cast<size_t>(bone)]);
    s.finger = f;
    s.alongFinger = static_cast<float>(j) + share;
    s.palmar = dot(n, rig.padNormal[f][j]);
    if (j == 2) {
      s.nailAlong = share;
      s.nailAcross = dot(way, rig.bendAxis[f][j]) / rig.radius[f][j];
      s.nailUp = -dot(way, rig.padNormal[f][j]) / rig.radius[f][j];
    }
  }
  return surface;
}

}  // namespace training::render
