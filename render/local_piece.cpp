#include "render/local_piece.h"

#include <algorithm>
#include <cmath>

namespace render {

LocalPiece localPiece(const CurvePiece& p, double step) {
  const double perPx = 1 / step;
  const auto local = [=](double v) { return static_cast<float>(v * perPx); };
  const double chordX = p.x2 - p.x0, chordY = p.y2 - p.y0;
  const double length2 = chordX * chordX + chordY * chordY;
  const double chord2 = length2 * perPx * perPx;
  // The control point across from the chord's middle, as Strip has it: then the way along the curve
  // is the way along the chord, which the search for the nearest point begins with.
  const double across = (p.y1 - p.y0) * chordX - (p.x1 - p.x0) * chordY;
  const double risen = p.isStraight || length2 == 0 ? 0 : across / length2;
  const double riseX = -risen * chordY, riseY = risen * chordX;
  LocalPiece result{};
  result.startX = static_cast<float>(p.x0 * perPx - 0.5);
  result.startY = static_cast<float>(p.y0 * perPx - 0.5);
  result.chordX = local(chordX);
  result.chordY = local(chordY);
  result.inverseChord2 = chord2 > 1e-12 ? static_cast<float>(1 / chord2) : 0;
  result.speedX = local(chordX + 2 * riseX);
  result.speedY = local(chordY + 2 * riseY);
  result.bendX = local(-2 * riseX);
  result.bendY = local(-2 * riseY);
  result.smallestSlope2 = static_cast<float>(std::max(chord2 * 0.25, 1e-6));
  result.bodyHalf = local(p.bodyHalf);
  result.coreHalf = local(p.coreHalf);
  result.bulge = 0.25f * std::sqrt(result.bendX * result.bendX + result.bendY * result.bendY);
  result.isStraight = p.isStraight;
  const auto unit = [](double x, double y, float& unitX, float& unitY) {
    const double length = std::sqrt(x * x + y * y);
    unitX = length > 0 ? static_cast<float>(x / length) : 0;
    unitY = length > 0 ? static_cast<float>(y / length) : 0;
  };
  unit(chordX + 2 * riseX, chordY + 2 * riseY, result.startDirectionX, result.startDirectionY);
  unit(chordX - 2 * riseX, chordY - 2 * riseY, result.endDirectionX, result.endDirectionY);
  // Cells wider than a pixel see borders farther away.
  result.startExtra = local(p.startExtra) + 0.75f;
  result.endExtra = local(p.endExtra) + 0.75f;
  return result;
}

}  // namespace render
