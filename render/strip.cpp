#include "render/strip.h"

#include <cmath>

namespace render {

namespace {

// A round end that shows farther beyond a joint, as a share of half the width, is a disc: its
// border meets the next strip's at more than 25 degrees.
constexpr double kShowingShare = 0.42;

// Borders are looked at this far outside.
constexpr float kSeenPx = 2;

bool isRound(double extra, double half) {
  return extra > kJointPx + kShowingShare * half;
}

Strip stripOf(const CurvePiece& p) {
  Strip strip{};
  const double chordX = p.x2 - p.x0, chordY = p.y2 - p.y0;
  const double length = std::sqrt(chordX * chordX + chordY * chordY);
  strip.startX = static_cast<float>(p.x0 - 0.5);
  strip.startY = static_cast<float>(p.y0 - 0.5);
  strip.endX = static_cast<float>(p.x2 - 0.5);
  strip.endY = static_cast<float>(p.y2 - 0.5);
  strip.bodyHalf = static_cast<float>(p.bodyHalf);
  strip.coreHalf = static_cast<float>(p.coreHalf);
  strip.startsRound = isRound(p.startExtra, p.bodyHalf);
  strip.endsRound = isRound(p.endExtra, p.bodyHalf);
  strip.startExtra = strip.startsRound ? 0 : static_cast<float>(p.startExtra);
  strip.endExtra = strip.endsRound ? 0 : static_cast<float>(p.endExtra);
  if (length < 1e-6) return strip;
  strip.length = static_cast<float>(length);
  strip.alongX = static_cast<float>(chordX / length);
  strip.alongY = static_cast<float>(chordY / length);
  if (p.isStraight) return strip;
  const double rise = ((p.y1 - p.y0) * chordX - (p.x1 - p.x0) * chordY) / length;
  strip.tilt = static_cast<float>(2 * rise / length);
  strip.bend = static_cast<float>(2 * rise / (length * length));
  return strip;
}

}  // namespace

void appendStrips(std::span<const CurvePiece> pieces, std::vector<Strip>& strips) {
  const std::size_t first = strips.size();
  for (const CurvePiece& piece : pieces) {
    Strip& strip = strips.emplace_back(stripOf(piece));
    if (strips.size() == first + 1) continue;
    Strip& before = strips[strips.size() - 2];
    const float sine = before.alongX * strip.alongY - before.alongY * strip.alongX;
    const float halfWay = 0.5f * (before.length + strip.length);
    strip.turn = std::abs(sine);
    strip.isCorner =
        before.endsRound || strip.startsRound || strip.turn * (strip.bodyHalf + kSeenPx) > halfWay;
    const bool isTwice = before.endsRound && strip.startsRound && before.endX == strip.startX &&
                         before.endY == strip.startY;
    // Of two discs around one joint the smaller lies in the larger.
    if (isTwice) (before.bodyHalf < strip.bodyHalf ? before.endsRound : strip.startsRound) = false;
  }
}

}  // namespace render
