#include "studio.h"

#include "lighting.h"

namespace training::render {
namespace {

constexpr int kSamples = 2;        // Per pixel and axis.
constexpr float kNearest = 0.35f;  // Decimetres: nothing nearer is drawn.
constexpr float kFlesh = 0.16f;    // A joint lies at most so deep under the skin.
constexpr int kOpennessTaps = 10;
constexpr float kOpennessReach = 0.2f;

/// A person as the camera sees it: vertices and normals in its axes, clothes put on.
struct View {
  std::vector<Vec3> vertices, normals;
  std::vector<Projected> seen;
};

View viewOf(const Person& person, const Camera& camera, const Look& look,
            const std::vector<SurfacePoint>& surface, const std::vector<Triangle>& triangles) {
  View view;
  const size_t count = person.vertices.size();
  view.vertices.resize(count);
  view.normals.resize(count);
  view.seen.resize(count);
  std::vector<char> isCloth(count, 0);
  for (const Triangle& t : triangles) {
    if (t.material != Material::clothes) continue;
    for (const int corner : t.corner) isCloth[static_cast<size_t>(corner)] = 1;
  }
  for (size_t v = 0; v < count; ++v) {
    Vec3 p = person.vertices[v];
    if (isCloth[v] != 0) {
      p += person.normals[v] *
           (look.looseness * (1 + 0.4f * noiseAt(surface[v].place * 2.5f + look.place)));
    }
    view.vertices[v] = camera.fromSpace(p);
    view.normals[v] = camera.fromSpace.turned(person.normals[v]);
    view.seen[v] = camera.project(view.vertices[v]);
  }
  return view;
}

bool isHairThere(Vec3 place) {
  return place.z < 0.5f || place.y > 8.0f;
}

void draw(const View& view, const std::vector<Triangle>& triangles,
          const std::vector<SurfacePoint>& surface, const Look& look, Canvas& canvas) {
  for (size_t i = 0; i < triangles.size(); ++i) {
    const Triangle& t = triangles[i];
    if (t.material == Material::hair && (!look.hasLongHair || look.isBald)) continue;
    const auto a = static_cast<size_t>(t.corner[0]), b = static_cast<size_t>(t.corner[1]),
               c = static_cast<size_t>(t.corner[2]);
    if (std::min({view.vertices[a].z, view.vertices[b].z, view.vertices[c].z}) < kNearest) continue;
    const SurfacePoint &sa = surface[a], &sb = surface[b], &sc = surface[c];
    canvas.draw(static_cast<int>(i), view.seen[a], view.seen[b], view.seen[c],
                [&](float u, float v, float w) {
                  if (t.material == Material::skin || t.material == Material::eye) return true;
                  const Vec3 place = sa.place * u + sb.place * v + sc.place * w;
                  if (t.material == Material::hair) return isHairThere(place);
                  return look.isClothed(sa.arm * u + sb.arm * v + sc.arm * w, place);
                });
  }
}

/// The surface under a sample, interpolated; what cannot be mixed comes from the first corner.
SurfacePoint surfaceAt(const Sample& sample, const Triangle& t,
                       const std::vector<SurfacePoint>& surface) {
  const SurfacePoint &a = surface[static_cast<size_t>(t.corner[0])],
                     &b = surface[static_cast<size_t>(t.corner[1])],
                     &c = surface[static_cast<size_t>(t.corner[2])];
  const float u = sample.first, v = sample.second, w = 1 - u - v;
  SurfacePoint p = a;
  p.place = a.place * u + b.place * v + c.place * w;
  p.arm = a.arm * u + b.arm * v + c.arm * w;
  p.palmar = a.palmar * u + b.palmar * v + c.palmar * w;
  if (a.finger != b.finger || a.finger != c.finger) p.finger = -1;
  p.alongFinger = a.alongFinger * u + b.alongFinger * v + c.alongFinger * w;
  if (std::min({a.nailAlong, b.nailAlong, c.nailAlong}) < -5 || p.finger < 0) {
    p.nailAlong = -9;
  } else {
    p.nailAlong = a.nailAlong * u + b.nailAlong * v + c.nailAlong * w;
    p.nailAcross = a.nailAcross * u + b.nailAcross * v + c.nailAcross * w;
    p.nailUp = a.nailUp * u + b.nailUp * v + c.nailUp * w;
  }
  return p;
}

/// How little of the surroundings lies in front of a sample: 1 free .. 0 enclosed.
float opennessAt(const Canvas& canvas, int x, int y, float radius) {
  const float depth = canvas.at(x, y).depth;
  float enclosed = 0;
  for (int i = 0; i < kOpennessTaps; ++i) {
    const float angle = 2.399f * static_cast<float>(i),
                reach = radius * std::sqrt((static_cast<float>(i) + 0.5f) / kOpennessTaps);
    const int tx = x + static_cast<int>(std::lround(reach * std::cos(angle))),
              ty = y + static_cast<int>(std::lround(reach * std::sin(angle)));
    if (tx < 0 || ty < 0 || tx >= canvas.width() || ty >= canvas.height()) continue;
    const float nearer = depth - canvas.at(tx, ty).depth;
    if (nearer > 0.02f) enclosed += nearer < 0.35f ? smoothStep(0.02f, 0.12f, nearer) : 0.25f;
  }
  return 1 - std::clamp(1.25f * enclosed / kOpennessTaps, 0.0f, 0.85f);
}

uint8_t encoded(float linearValue, float share) {
  const float soft = linearValue > 0.75f
                         ? 0.75f + 0.25f * (1 - std::exp(-4 * (linearValue - 0.75f)))
                         : std::max(0.0f, linearValue);
  return static_cast<uint8_t>(std::lround(255 * share * std::pow(soft, 1 / 2.2f)));
}

}  // namespace

Record Studio::take(const Person& person, const Camera& camera, const Look& look, int width,
                    int height, Vec3 focus, float shadowReach, Random& random) const {
  const std::vector<Triangle>& triangles = human_.triangles();
  const View view = viewOf(person, camera, look, surface_, triangles);
  Canvas canvas(width * kSamples, height * kSamples);
  draw(view, triangles, surface_, look, canvas);
  Lighting lighting(random);
  lighting.castShadows(view.vertices, triangles, camera.fromSpace(focus), shadowReach);

  const auto colourAt = [&](int x, int y) {
    const Sample& sample = canvas.at(x, y);
    const Triangle& t = triangles[static_cast<size_t>(sample.triangle)];
    const auto a = static_cast<size_t>(t.corner[0]), b = static_cast<size_t>(t.corner[1]),
               c = static_cast<size_t>(t.corner[2]);
    const float u = sample.first, v = sample.second, w = 1 - u - v;
    const SurfacePoint point = surfaceAt(sample, t, surface_);
    const Look::Point look1 = look.at(point, t.material);
    const Vec3 place = view.vertices[a] * u + view.vertices[b] * v + view.vertices[c] * w;
    Vec3 normal = normalized(view.normals[a] * u + view.normals[b] * v + view.normals[c] * w);
    const float wave = t.material == Material::skin ? 22.0f : 7.0f;
    const Vec3 q = point.place * wave + look.place;
    normal = normalized(normal +
                        Vec3{noiseAt(q), noiseAt(q + Vec3{9, 2, 5}), noiseAt(q + Vec3{1, 7, 3})} *
                            look1.bump);
    const Vec3 towards = normalized(-place);
    if (dot(normal, towards) < 0) normal = normalized(normal - towards * dot(normal, towards));
    const float openness =
        1 - lighting.occlusionStrength() *
                (1 - opennessAt(canvas, x, y, kOpennessReach * camera.scaleAt(sample.depth)));
    return lighting.shade(look1, place, normal, openness, look.glossExponent,
                          t.material == Material::skin);
  };

  // One colour per pixel and surface: samples near each other in depth and of one material share
  // it.
  struct Pixel {
    Vec3 colour;
    float share = 0;
  };
  std::vector<Pixel> picture(static_cast<size_t>(width * height));
  double brightness = 0;
  int covered = 0;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      Pixel& pixel = picture[static_cast<size_t>(y * width + x)];
      int done = 0;
      for (int i = 0; i < kSamples * kSamples; ++i) {
        if (((done >> i) & 1) != 0) continue;
        const Sample& sample = canvas.at(x * kSamples + i % kSamples, y * kSamples + i / kSamples);
        if (sample.triangle < 0) continue;
        int same = 0;
        for (int k = i; k < kSamples * kSamples; ++k) {
          const Sample& other = canvas.at(x * kSamples + k % kSamples, y * kSamples + k / kSamples);
          if (((done >> k) & 1) != 0 || other.triangle < 0 ||
              std::abs(other.depth - sample.depth) > 0.03f ||
              triangles[static_cast<size_t>(other.triangle)].material !=
                  triangles[static_cast<size_t>(sample.triangle)].material) {
            continue;
          }
          done |= 1 << k;
          ++same;
        }
        const float share = static_cast<float>(same) / (kSamples * kSamples);
        pixel.colour += colourAt(x * kSamples + i % kSamples, y * kSamples + i / kSamples) * share;
        pixel.share += share;
      }
      if (pixel.share > 0.9f) {
        brightness += dot(pixel.colour, {0.3f, 0.6f, 0.1f});
        ++covered;
      }
    }
  }
  const float mean = covered > 0 ? static_cast<float>(brightness / covered) : 0.3f;
  const float wanted = random.between(0.10f, 0.55f) * (1 - 0.5f * look.darkness) + 0.02f;
  const float exposure = std::pow(wanted / std::max(mean, 0.01f), random.between(0.5f, 0.9f));

  Record record;
  record.pixels.resize(picture.size() * 4);
  for (size_t i = 0; i < picture.size(); ++i) {
    const Pixel& pixel = picture[i];
    if (pixel.share <= 0) continue;
    const Vec3 colour = pixel.colour * (exposure / pixel.share);
    record.pixels[4 * i] = encoded(colour.z, pixel.share);
    record.pixels[4 * i + 1] = encoded(colour.y, pixel.share);
    record.pixels[4 * i + 2] = encoded(colour.x, pixel.share);
    record.pixels[4 * i + 3] = static_cast<uint8_t>(std::lround(255 * pixel.share));
  }
  for (size_t side = 0; side < 2; ++side) label(person, camera, canvas, side, record.hands[side]);
  return record;
}

void Studio::label(const Person& person, const Camera& camera, const Canvas& canvas, size_t side,
                   HandLabel& hand) const {
  int inside = 0;
  float visible = 0;
  hand.right = static_cast<float>(side);
  for (size_t i = 0; i < 21; ++i) {
    const Vec3 p = camera.fromSpace(person.joints[side][i]);
    if (p.z < 2 * kNearest) {
      hand.valid = 0;
      return;
    }
    const Projected at = camera.project(p);
    hand.joints[i][0] = at.x / kSamples;
    hand.joints[i][1] = at.y / kSamples;
    const int x = static_cast<int>(std::floor(at.x)), y = static_cast<int>(std::floor(at.y));
    if (x < 0 || y < 0 || x >= canvas.width() || y >= canvas.height()) continue;
    ++inside;
    const Sample& sample = canvas.at(x, y);
    if (sample.triangle < 0 || sample.depth > p.z - kFlesh) {
      hand.visible[i] = 1;
    } else {
      const SurfacePoint& cover = surface_[static_cast<size_t>(
          human_.triangles()[static_cast<size_t>(sample.triangle)].corner[0])];
      hand.visible[i] = cover.side == static_cast<int>(side) && cover.arm > 1.9f ? 0.5f : 0.0f;
    }
    visible += hand.visible[i];
  }
  hand.valid = inside >= 14 && visible >= 9 ? 1.0f : inside >= 6 && visible >= 3 ? 0.5f : 0.0f;
}

Record Studio::crop(Occasion occasion, Random& random) const {
  const float fromFront = occasion == Occasion::painting ? 0.92f : 0.62f;
  for (;;) {
    const Person person = randomPerson(human_, occasion, random);
    const size_t side = person.isRaised[0] && (!person.isRaised[1] || random.chance(0.5f)) ? 0 : 1;
    const Look look(random);
    const Camera camera =
        cameraForHand(person, side, kCropSize * kSamples, kCropMargin, fromFront, random);
    Record record =
        take(person, camera, look, kCropSize, kCropSize, person.joints[side][9], 1.7f, random);
    float seen = 0;
    for (const float v : record.hands[side].visible) seen += v;
    if (record.hands[side].valid < 1 || seen < 12) continue;
    if (side == 1) std::swap(record.hands[0], record.hands[1]);
    record.gesture = static_cast<float>(person.gestures[side]);
    return record;
  }
}

Record Studio::scene(Random& random) const {
  const Person person = randomPerson(human_, Occasion::webcam, random);
  const Look look(random);
  const Camera camera =
      cameraForPerson(person, kSceneWidth * kSamples, kSceneHeight * kSamples, random);
  return take(person, camera, look, kSceneWidth, kSceneHeight, person.shoulder + Vec3{0, 0, 2}, 6,
              random);
}

}  // namespace training::render
