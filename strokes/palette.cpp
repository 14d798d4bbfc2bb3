#include "strokes/palette.h"

#include <cstddef>

namespace strokes::Palette {

constinit const std::array<PaletteColor, 8> colors{{
    {0, "Cyan", 0.1, 0.9, 1.0},
    {1, "Magenta", 1.0, 0.15, 0.8},
    {2, "Lime", 0.45, 1.0, 0.2},
    {3, "Orange", 1.0, 0.55, 0.1},
    {4, "Yellow", 1.0, 0.92, 0.15},
    {5, "Red", 1.0, 0.2, 0.25},
    {6, "Violet", 0.6, 0.35, 1.0},
    {7, "White", 1.0, 1.0, 1.0},
}};

const PaletteColor& colorAt(int index) {
  const int count = static_cast<int>(colors.size());
  return colors[static_cast<std::size_t>(((index % count) + count) % count)];
}

}  // namespace strokes::Palette
