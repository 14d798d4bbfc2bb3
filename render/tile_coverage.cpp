#include "render/tile_coverage.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "render/coverage.h"
#include "render/strip_painting.h"

namespace render {

namespace {

constexpr int kTile = PaintTile::kSide;
// Lines thinner than twice this are sampled more finely: both their borders, or their round ends,
// share pixels.
constexpr double kThinHalfPx = 1.25;
constexpr int kFineness = 4;
constexpr int kSamples = kFineness * kFineness;
// Beyond half its width, what a piece can touch.
constexpr float kReachPx = 4;
constexpr float kFarPx = 1e9f;

const float* depthRow(const DistanceField& field, int y, bool ofCore) {
  if (y < field.firstRow() || y >= field.endRow()) return nullptr;
  return ofCore ? field.coreRow(y) : field.bodyRow(y);
}

// A path that turns less than this in all cannot come back to itself: half a circle.
constexpr float kLargestTurn = 3.0f;
// With more runs than this, all pieces are painted at once.
constexpr std::size_t kMostRuns = 4;

bool isPartial(std::int16_t share) {
  return share > 0 && share < kFull;
}

/// Whether a strip can touch a pixel.
bool isNear(const Strip& strip, int x, int y) {
  const float dx = static_cast<float>(x) - strip.startX, dy = static_cast<float>(y) - strip.startY;
  const float reach = strip.length + strip.bodyHalf + kReachPx;
  return dx * dx + dy * dy <= reach * reach;
}

/// Raises a row's shares to those of `other`. The pixels, lowest bit first, that both cover partly.
std::uint64_t joinRow(const std::int16_t* other, std::int16_t* row) {
  std::int16_t meet = 0;
  for (int x = 0; x < kTile; ++x)
    meet = static_cast<std::int16_t>(meet | (isPartial(row[x]) & isPartial(other[x])));
  std::uint64_t meetings = 0;
  for (int x = 0; meet && x < kTile; ++x) {
    if (isPartial(row[x]) && isPartial(other[x])) meetings |= std::uint64_t{1} << x;
  }
  for (int x = 0; x < kTile; ++x) row[x] = std::max(row[x], other[x]);
  return meetings;
}

}  // namespace

void TileCoverage::paint(std::span<const CurvePiece> pieces, std::span<const Strip> strips,
                         std::span<const int> numbers, int tileX, int tileY, bool withCore) {
  pieces_ = pieces;
  strips_ = strips;
  numbers_ = numbers;
  fine_.clear();
  const int left = tileX * kTile, top = tileY * kTile;
  findRuns(strips);
  if (runs_.size() <= kMostRuns) {
    openRows(strips, top);
    paintRuns(strips, left, top, false);
    if (withCore) paintRuns(strips, left, top, true);
    return;
  }
  const bool isThin = std::any_of(numbers.begin(), numbers.end(), [=](int number) {
    const CurvePiece& piece = pieces[static_cast<std::size_t>(number)];
    return (withCore ? piece.coreHalf : piece.bodyHalf) < kThinHalfPx;
  });
  if (isThin) {
    paintFinely(left, top, withCore);
  } else {
    paintCoarsely(left, top, withCore);
  }
}

void TileCoverage::findRuns(std::span<const Strip> strips) {
  runs_.clear();
  float turned = 0;
  for (const int number : numbers_) {
    const Strip& strip = strips[static_cast<std::size_t>(number)];
    turned += strip.turn;
    const bool goesOn =
        !runs_.empty() && runs_.back().end == number && !strip.isCorner && turned < kLargestTurn;
    if (goesOn) {
      runs_.back().end = number + 1;
    } else {
      runs_.push_back({number, number + 1});
      turned = 0;
    }
  }
}

void TileCoverage::openRows(std::span<const Strip> strips, int top) {
  float above = kFarPx, below = -kFarPx;
  for (const int number : numbers_) {
    const Strip& strip = strips[static_cast<std::size_t>(number)];
    const float reach = strip.bodyHalf + kReachPx;
    above = std::min({above, strip.startY - reach, strip.endY - reach});
    below = std::max({below, strip.startY + reach, strip.endY + reach});
  }
  const auto row = [top](float y) {
    return static_cast<int>(
        std::clamp(y - static_cast<float>(top), 0.0f, static_cast<float>(kTile)));
  };
  firstRow_ = row(above);
  endRow_ = std::max(row(below + 1), firstRow_);
}

void TileCoverage::paintRuns(std::span<const Strip> strips, int left, int top, bool ofCore) {
  std::int16_t* mask = ofCore ? core_ : body_;
  const auto cells = static_cast<std::size_t>((endRow_ - firstRow_) * kTile);
  std::uint64_t meetings[kTile] = {};
  bool isFirst = true;
  for (const Run& run : runs_) {
    std::int16_t* painted = isFirst ? mask : another_;
    std::memset(painted + firstRow_ * kTile, 0, cells * sizeof *painted);
    const CellMask target{painted, kTile, left, top, kTile, kTile, kFull};
    for (int number = run.first; number < run.end; ++number) {
      const Strip& strip = strips[static_cast<std::size_t>(number)];
      paintPiece(strip, ofCore ? strip.coreHalf : strip.bodyHalf, target);
    }
    for (int y = firstRow_; !isFirst && y < endRow_; ++y)
      meetings[y] |= joinRow(another_ + y * kTile, mask + y * kTile);
    isFirst = false;
  }
  for (int y = firstRow_; y < endRow_; ++y) {
    if (meetings[y]) refine(left, top, y, meetings[y], ofCore);
  }
}

void TileCoverage::localiseFinely() {
  if (!fine_.empty()) return;
  for (const int number : numbers_)
    fine_.push_back(localPiece(pieces_[static_cast<std::size_t>(number)], 1.0 / kFineness));
}

void TileCoverage::paintCoarsely(int left, int top, bool withCore) {
  field_.reset(left, top, withCore);
  for (const int number : numbers_)
    field_.spread(localPiece(pieces_[static_cast<std::size_t>(number)], 1));
  field_.continueOutwards();
  firstRow_ = field_.firstRow();
  endRow_ = field_.endRow();
  const auto cover = [&](const float* depths, std::int16_t* mask, bool ofCore) {
    std::uint64_t meetings[kTile];
    edgeRows(depths, firstRow_, endRow_, kFull, mask, meetings);
    for (int y = firstRow_; y < endRow_; ++y) {
      if (meetings[y]) refine(left, top, y, meetings[y], ofCore);
    }
  };
  cover(field_.bodyRow(0), body_, false);
  if (withCore) cover(field_.coreRow(0), core_, true);
}

void TileCoverage::refine(int left, int top, int y, std::uint64_t pixels, bool ofCore) {
  localiseFinely();
  for (; pixels; pixels &= pixels - 1) {
    const int x = std::countr_zero(pixels);
    fineField_.reset((left + x) * kFineness, (top + y) * kFineness, ofCore);
    fineField_.limit(kFineness, kFineness);
    for (std::size_t i = 0; i < fine_.size(); ++i) {
      const Strip& strip = strips_[static_cast<std::size_t>(numbers_[i])];
      if (isNear(strip, left + x, top + y)) fineField_.spread(fine_[i]);
    }
    int sum = 0;
    for (int row = fineField_.firstRow(); row < fineField_.endRow(); ++row) {
      std::int16_t fine[kTile];
      rampRow(depthRow(fineField_, row, ofCore), kFull, fine);
      for (int i = 0; i < kFineness; ++i) sum += fine[i];
    }
    std::int16_t* mask = ofCore ? core_ : body_;
    mask[y * kTile + x] = static_cast<std::int16_t>(sum / kSamples);
  }
}

void TileCoverage::paintFinely(int left, int top, bool withCore) {
  localiseFinely();
  constexpr int kBlock = kTile / kFineness;
  firstRow_ = 0;
  endRow_ = kTile;
  std::memset(body_, 0, sizeof body_);
  if (withCore) std::memset(core_, 0, sizeof core_);
  const auto average = [this](bool ofCore, std::int16_t* corner) {
    for (int y = fineField_.firstRow() / kFineness; y * kFineness < fineField_.endRow(); ++y) {
      int sums[kBlock] = {};
      for (int row = y * kFineness; row < (y + 1) * kFineness; ++row) {
        if (row < fineField_.firstRow() || row >= fineField_.endRow()) continue;
        std::int16_t fine[kTile];
        rampRow(depthRow(fineField_, row, ofCore), kFull, fine);
        for (int x = 0; x < kTile; ++x) sums[x / kFineness] += fine[x];
      }
      for (int x = 0; x < kBlock; ++x)
        corner[y * kTile + x] = static_cast<std::int16_t>(sums[x] / kSamples);
    }
  };
  for (int y0 = 0; y0 < kTile; y0 += kBlock) {
    for (int x0 = 0; x0 < kTile; x0 += kBlock) {
      fineField_.reset((left + x0) * kFineness, (top + y0) * kFineness, withCore);
      for (const LocalPiece& piece : fine_) fineField_.spread(piece);
      average(false, body_ + y0 * kTile + x0);
      if (withCore) average(true, core_ + y0 * kTile + x0);
    }
  }
}

}  // namespace render
