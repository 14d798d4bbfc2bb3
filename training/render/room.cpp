#include "room.h"

#include "look.h"
#include "studio.h"

namespace training::render {
namespace {

/// Colours 0..1, sRGB.
class Picture {
 public:
  Picture(int width, int height)
      : width_(width), height_(height), colours_(static_cast<size_t>(width * height)) {}
  int width() const { return width_; }
  int height() const { return height_; }
  Vec3& at(int x, int y) { return colours_[static_cast<size_t>(y * width_ + x)]; }

 private:
  int width_, height_;
  std::vector<Vec3> colours_;
};

struct Placement {
  float x = 0, y = 0, halfWidth = 1, halfHeight = 1, angle = 0;
};

/// Calls `paint(colour, u, v)` for the pixels of a turned box, u and v in -1..1.
template <class Paint>
void paintBox(Picture& picture, const Placement& p, Paint paint) {
  const float c = std::cos(p.angle), s = std::sin(p.angle),
              reach = std::hypot(p.halfWidth, p.halfHeight) + 1;
  const int x0 = std::max(0, static_cast<int>(p.x - reach)),
            x1 = std::min(picture.width() - 1, static_cast<int>(p.x + reach));
  const int y0 = std::max(0, static_cast<int>(p.y - reach)),
            y1 = std::min(picture.height() - 1, static_cast<int>(p.y + reach));
  for (int y = y0; y <= y1; ++y) {
    for (int x = x0; x <= x1; ++x) {
      const float dx = static_cast<float>(x) - p.x, dy = static_cast<float>(y) - p.y;
      const float u = (c * dx + s * dy) / p.halfWidth, v = (-s * dx + c * dy) / p.halfHeight;
      if (std::abs(u) <= 1 && std::abs(v) <= 1) paint(picture.at(x, y), u, v);
    }
  }
}

Placement anywhere(const Picture& picture, float least, float most, Random& random) {
  const float size = static_cast<float>(picture.width()) * random.scale(least, most);
  return {random.between(-0.1f, 1.1f) * static_cast<float>(picture.width()),
          random.between(-0.1f, 1.1f) * static_cast<float>(picture.height()), size,
          size * random.scale(0.2f, 1.4f),
          random.chance(0.6f) ? random.normal(0.06f) : random.between(0, 3.14f)};
}

void paintWall(Picture& picture, Random& random) {
  const bool isPlain = random.chance(0.4f);
  const float grey = random.between(0.3f, 1);
  const Vec3 a =
      isPlain ? Vec3{grey, grey * random.between(0.93f, 1.02f), grey * random.between(0.8f, 1.02f)}
              : randomColour(random);
  const Vec3 b = random.chance(0.7f) ? a * random.between(0.55f, 1.1f) : randomColour(random);
  const float angle = random.between(0, 6.28f), waves = random.between(1, 6),
              grain = random.chance(0.5f) ? random.between(0, 0.12f) : 0;
  const Vec3 place = random.offset(50);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const float u = static_cast<float>(x) / static_cast<float>(picture.width()),
                  v = static_cast<float>(y) / static_cast<float>(picture.height());
      const float t = 0.5f + (u - 0.5f) * std::cos(angle) + (v - 0.5f) * std::sin(angle);
      const Vec3 q = Vec3{u * waves, v * waves, 0} + place;
      picture.at(x, y) = mix(a, b, std::clamp(t, 0.0f, 1.0f)) *
                         (1 + 0.1f * noiseAt(q) + grain * noiseAt(q * 17.0f));
    }
  }
}

void paintShelf(Picture& picture, Random& random) {
  const Placement p = anywhere(picture, 0.12f, 0.5f, random);
  const Vec3 wood = randomColour(random) * 0.7f;
  const int boards = 2 + random.below(4), books = 6 + random.below(20);
  const Vec3 place = random.offset(50);
  paintBox(picture, p, [&](Vec3& colour, float u, float v) {
    const float row = (v + 1) * 0.5f * static_cast<float>(boards),
                column = (u + 1) * 0.5f * static_cast<float>(books);
    const Vec3 cell = Vec3{std::floor(column) * 3.7f, std::floor(row) * 5.3f, 0} + place;
    const bool isBook =
        row - std::floor(row) > 0.15f + 0.3f * std::abs(noiseAt(cell + Vec3{0, 0, 9}));
    colour =
        isBook ? Vec3{0.5f + 0.5f * noiseAt(cell), 0.45f + 0.5f * noiseAt(cell + Vec3{0.5f, 0, 3}),
                      0.4f + 0.5f * noiseAt(cell + Vec3{0, 0.5f, 6})}
               : wood;
  });
}

void paintWindow(Picture& picture, Random& random) {
  const Placement p = anywhere(picture, 0.12f, 0.45f, random);
  const Vec3 sky = random.chance(0.7f) ? Vec3{0.9f, 0.95f, 1} * random.between(0.6f, 1.1f)
                                       : randomColour(random) * 0.3f;
  const Vec3 frame = randomColour(random);
  const float blinds = random.chance(0.4f) ? random.between(10, 40) : 0;
  paintBox(picture, p, [&](Vec3& colour, float u, float v) {
    const bool isFrame = std::abs(u) > 0.93f || std::abs(v) > 0.93f || std::abs(u) < 0.03f;
    colour =
        isFrame ? frame : sky * (blinds > 0 ? 0.8f + 0.2f * std::sin(v * blinds) : 1 - 0.2f * v);
  });
}

/// A poster, cushion, screen, lamp or box: a soft-edged shape with a texture.
void paintThing(Picture& picture, Vec3 a, Vec3 b, const Placement& p, Random& random) {
  const bool isRound = random.chance(0.45f);
  const int texture = random.below(5);
  const float frequency = random.between(2, 14);
  const float softness = random.between(0.02f, 0.2f),
              opacity = random.chance(0.85f) ? 1 : random.between(0.3f, 1);
  const Vec3 place = random.offset(50);
  paintBox(picture, p, [&](Vec3& colour, float u, float v) {
    const float inside = isRound ? 1 - std::hypot(u, v) : 1 - std::max(std::abs(u), std::abs(v));
    float share = 0.5f + 0.5f * v;
    if (texture == 1) share = std::sin(u * frequency) > 0 ? 1.0f : 0.0f;
    if (texture == 2) share = std::sin(u * frequency) * std::sin(v * frequency) > 0 ? 1.0f : 0.0f;
    if (texture == 3) share = 0.5f + 0.5f * noiseAt(Vec3{u * frequency, v * frequency, 0} + place);
    if (texture == 4) share = inside < 0.1f ? 1.0f : 0.0f;
    colour = mix(colour, mix(a, b, share), opacity * std::clamp(inside / softness, 0.0f, 1.0f));
  });
}

/// Skin-coloured ovals and bars: faces far away, arms, wood, and no hand.
void paintDecoy(Picture& picture, Random& random) {
  const Vec3 skin = randomSkin(random) * random.between(0.4f, 1.1f);
  Placement p = anywhere(picture, 0.04f, 0.25f, random);
  paintThing(picture, skin, skin * random.between(0.6f, 1), p, random);
  if (random.chance(0.4f)) {
    const float step = p.halfWidth * random.between(0.3f, 0.7f);
    for (int i = 0, bars = 2 + random.below(4); i < bars; ++i) {
      Placement bar{p.x + step * static_cast<float>(i), p.y + random.normal(0.2f * step),
                    0.4f * step, p.halfHeight, p.angle + random.normal(0.1f)};
      paintThing(picture, skin, skin * 0.8f, bar, random);
    }
  }
}

}  // namespace

Record randomRoom(Random& random, int width, int height) {
  Picture picture(width, height);
  paintWall(picture, random);
  const int things = random.chance(0.2f) ? 0 : 1 + random.below(random.chance(0.5f) ? 6 : 22);
  for (int i = 0; i < things; ++i) {
    const float choice = random.unit();
    if (choice < 0.1f) {
      paintShelf(picture, random);
    } else if (choice < 0.2f) {
      paintWindow(picture, random);
    } else if (choice < 0.32f) {
      paintDecoy(picture, random);
    } else {
      const Vec3 a = randomColour(random),
                 b = random.chance(0.5f) ? a * random.between(0.6f, 1.3f) : randomColour(random);
      paintThing(picture, a, b, anywhere(picture, 0.03f, 0.5f, random), random);
    }
  }
  Record record;
  record.pixels.resize(static_cast<size_t>(4 * width * height));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const Vec3 c = picture.at(x, y);
      uint8_t* pixel = &record.pixels[static_cast<size_t>(4 * (y * width + x))];
      const auto byte = [](float v) {
        return static_cast<uint8_t>(std::lround(255 * std::clamp(v, 0.0f, 1.0f)));
      };
      pixel[0] = byte(c.z);
      pixel[1] = byte(c.y);
      pixel[2] = byte(c.x);
      pixel[3] = 255;
    }
  }
  return record;
}

}  // namespace training::render
