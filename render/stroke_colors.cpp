#include "render/stroke_colors.h"

#include <cmath>

#include "strokes/palette.h"

namespace render {

namespace {

// How far the core's colour is moved towards white.
constexpr double kCoreLightness = 0.65;

std::int16_t channel(double component) {
  return static_cast<std::int16_t>(std::lround(component * kFull));
}

}  // namespace

StrokeColors strokeColors(int colorIndex) {
  const strokes::PaletteColor& color = strokes::Palette::colorAt(colorIndex);
  StrokeColors result{};
  int i = 0;
  for (const double c : {color.b, color.g, color.r, 1.0}) {
    result.body[i] = channel(c);
    result.core[i] = channel(c + (1 - c) * kCoreLightness);
    ++i;
  }
  return result;
}

}  // namespace render
