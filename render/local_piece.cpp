#include "render/local_piece.h"

#include <algorithm>
#include <cmath>

namespace render {

LocalPiece localPiece(const CurvePiece& p, double step) {
  const double perPx = 1 / step;
  const auto local = [=](double v) { return static_cast<float>(v * perPx); };
  const double chordX = p.x2 - p.x0, chordY = p.y2 - p.y0;
  const double chord2 = (chordX * chordX + chordY * chordY) * perPx * perPx;
  LocalPiece result{};
  result.startX = static_cast<float>(p.x0 * perPx - 0.5);
  result.startY = static_cast<float>(p.y0 * perPx - 0.5);
  result.chordX = local(chordX);
  result.chordY = local(chordY);
  result.inverseChord2 = chord2 > 1e-12 ? static_cast<float>(1 / chord2) : 0;
  result.speedX = local(2 * (p.x1 - p.x0));
  result.speedY = local(2 * (p.y1 - p.y0));
  result.bendX = local(p.x0 - 2 * p.x1 + p.x2);
  result.bendY = local(p.y0 - 2 * p.y1 + p.y2);
  result.smallestSlope2 = static_cast<float>(std::max(chord2 * 0.25, 1e-6));
  result.bodyHalf = local(p.bodyHalf);
  result.coreHalf = local(p.coreHalf);
  result.bulge = p.isStraight ? 0 : 0.25f * std::hypot(result.bendX, result.bendY);
  result.isStraight = p.isStraight;
  const auto unit = [](double x, double y, float& unitX, float& unitY) {
    const double length = std::hypot(x, y);
    unitX = length > 0 ? static_cast<float>(x / length) : 0;
    unitY = length > 0 ? static_cast<float>(y / length) : 0;
  };
  const bool startsAtControl = p.x1 == p.x0 && p.y1 == p.y0;
  const bool endsAtControl = p.x1 == p.x2 && p.y1 == p.y2;
  unit(startsAtControl ? chordX : p.x1 - p.x0, startsAtControl ? chordY : p.y1 - p.y0,
       result.startDirectionX, result.startDirectionY);
  unit(endsAtControl ? chordX : p.x2 - p.x1, endsAtControl ? chordY : p.y2 - p.y1,
       result.endDirectionX, result.endDirectionY);
  // Cells wider than a pixel see borders farther away.
  result.startExtra = local(p.startExtra) + 0.75f;
  result.endExtra = local(p.endExtra) + 0.75f;
  return result;
}

}  // namespace render
