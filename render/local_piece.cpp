#include "render/local_piece.h"

#include <algorithm>
#include <cmath>

namespace render {

namespace {

int cellAt(float position, int first, int end) {
  return static_cast<int>(
      std::clamp(std::floor(position), static_cast<float>(first), static_cast<float>(end)));
}

}  // namespace

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

CellSpan rowsNear(const LocalPiece& p, float reach, int first, int end) {
  const float all = reach + p.bulge;
  return {cellAt(std::min(p.startY, p.startY + p.chordY) - all, first, end),
          cellAt(std::max(p.startY, p.startY + p.chordY) + all + 1, first, end)};
}

CellSpan cellsNear(const LocalPiece& p, int y, float reach, int first, int end) {
  // The chord's part that is near enough in y, then the reach to both sides of it.
  const float all = reach + p.bulge;
  const float above = static_cast<float>(y) - all - p.startY;
  const float below = static_cast<float>(y) + all - p.startY;
  float from = 0, to = 1;
  if (std::abs(p.chordY) > 1e-3f) {
    const float a = above / p.chordY, b = below / p.chordY;
    from = std::max(from, std::min(a, b));
    to = std::min(to, std::max(a, b));
    if (from > to) return {};
  } else if (above > 0.01f || below < -0.01f) {
    return {};
  }
  const float x0 = p.startX + from * p.chordX, x1 = p.startX + to * p.chordX;
  float left = std::min(x0, x1) - all, right = std::max(x0, x1) + all;
  const float row = static_cast<float>(y);
  const auto keepUpTo = [&](float directionX, float slack) {
    // directionX * x <= slack.
    if (directionX > 1e-3f) {
      right = std::min(right, slack / directionX);
    } else if (directionX < -1e-3f) {
      left = std::max(left, slack / directionX);
    } else if (slack < -1.0f - 1e-3f * (std::abs(left) + std::abs(right))) {
      right = left - 2;
    }
  };
  keepUpTo(p.endDirectionX, p.endExtra + p.endDirectionX * (p.startX + p.chordX) +
                                p.endDirectionY * (p.startY + p.chordY - row));
  keepUpTo(-p.startDirectionX, p.startExtra - p.startDirectionX * p.startX -
                                   p.startDirectionY * (p.startY - row));
  if (right < left) return {};
  return {cellAt(left, first, end), cellAt(right + 1, first, end)};
}

}  // namespace render
