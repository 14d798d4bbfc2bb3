#include "vec.h"

namespace training::render {

Rigid Rigid::operator*(const Rigid& o) const {
  Rigid product;
  for (int i = 0; i < 3; ++i) {
    product.row[i] = o.row[0] * row[i].x + o.row[1] * row[i].y + o.row[2] * row[i].z;
  }
  product.shift = (*this)(o.shift);
  return product;
}

Rigid rotation(Vec3 axis, float angle) {
  const Vec3 a = normalized(axis);
  const float c = std::cos(angle), s = std::sin(angle);
  const auto column = [&](Vec3 v) { return v * c + cross(a, v) * s + a * (dot(a, v) * (1 - c)); };
  const Vec3 x = column({1, 0, 0}), y = column({0, 1, 0}), z = column({0, 0, 1});
  Rigid result;
  result.row[0] = {x.x, y.x, z.x};
  result.row[1] = {x.y, y.y, z.y};
  result.row[2] = {x.z, y.z, z.z};
  return result;
}

Rigid about(Vec3 pivot, const Rigid& turn) {
  Rigid result = turn;
  result.shift = pivot - turn.turned(pivot);
  return result;
}

Rigid aligning(Vec3 from, Vec3 to) {
  const Vec3 a = normalized(from), b = normalized(to);
  const Vec3 axis = cross(a, b);
  const float cosine = dot(a, b);
  if (length(axis) < 1e-6f) {
    return cosine > 0
               ? Rigid{}
               : rotation(std::abs(a.y) < 0.9f ? Vec3{0, 1, 0} : Vec3{1, 0, 0}, radians(180));
  }
  return rotation(axis, std::acos(std::clamp(cosine, -1.0f, 1.0f)));
}

Rigid mirrored(const Rigid& t) {
  Rigid m = t;
  m.row[0].y = -m.row[0].y;
  m.row[0].z = -m.row[0].z;
  m.row[1].x = -m.row[1].x;
  m.row[2].x = -m.row[2].x;
  m.shift.x = -m.shift.x;
  return m;
}

}  // namespace training::render
