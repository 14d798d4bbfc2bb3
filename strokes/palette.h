#pragma once

#include <array>
#include <string_view>

namespace strokes {

/// One colour a person can paint with. Components from 0 to 1, sRGB.
struct PaletteColor {
  int id = 0;             ///< Its index in Palette::colors.
  std::string_view name;  ///< For the person, in English.
  double r = 0;
  double g = 0;
  double b = 0;

  friend bool operator==(const PaletteColor&, const PaletteColor&) = default;
};

namespace Palette {

/// The colours to choose from, bright enough to glow on a dark picture. Never changes: any thread.
extern const std::array<PaletteColor, 8> colors;

/// The colour of any index, negative ones too: 9 is colour 1, -1 is colour 7.
const PaletteColor& colorAt(int index);

}  // namespace Palette
}  // namespace strokes
