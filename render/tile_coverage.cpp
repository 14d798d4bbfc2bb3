#include "render/tile_coverage.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "render/coverage.h"
#include "render/sampled_share.h"
#include "render/strip_painting.h"

namespace render {

namespace {

constexpr int kTile = PaintTile::kSide;
// Lines thinner than twice this are sampled more finely: both their borders, or their round ends,
// share pixels.
constexpr double kThinHalfPx = 1.25;
constexpr int kFineness = kSamplesAlong;
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
constexpr std::size_t kMostRuns = 16;

}  // namespace

void TileCoverage::paint(std::span<const CurvePiece> pieces, std::span<const Strip> strips,
                         std::span<const int> numbers, int tileX, int tileY, bool withCore) {
  pieces_ = pieces;
  numbers_ = numbers;
  fine_.clear();
  const int left = tileX * kTile, top = tileY * kTile;
  findRuns(strips);
  if (runs_.size() <= kMostRuns) {
    openRows(strips, top);
    paintRuns(strips, left, top, withCore);
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

void TileCoverage::paintRuns(std::span<const Strip> strips, int left, int top, bool withCore) {
  const std::size_t bytes = static_cast<std::size_t>((endRow_ - firstRow_) * kTile) * sizeof *body_;
  const int start = firstRow_ * kTile;
  std::uint64_t bodyMeetings[kTile] = {}, coreMeetings[kTile] = {};
  for (std::size_t i = 0; i < runs_.size(); ++i) {
    std::int16_t* bodies = i == 0 ? body_ : otherBody_;
    std::int16_t* cores = i == 0 ? core_ : otherCore_;
    std::memset(bodies + start, 0, bytes);
    if (withCore) std::memset(cores + start, 0, bytes);
    const auto first = static_cast<std::size_t>(runs_[i].first);
    const auto count = static_cast<std::size_t>(runs_[i].end - runs_[i].first);
    paintPieces(strips.subspan(first, count), 1, {bodies, kTile, left, top, kTile, kTile, kFull},
                withCore ? cores : nullptr);
    if (i == 0) continue;
    joinRows(bodies, firstRow_, endRow_, body_, bodyMeetings);
    if (withCore) joinRows(cores, firstRow_, endRow_, core_, coreMeetings);
  }
  for (int y = firstRow_; y < endRow_; ++y) {
    if (bodyMeetings[y]) refine(left, top, y, bodyMeetings[y], false);
    if (coreMeetings[y]) refine(left, top, y, coreMeetings[y], true);
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
  std::int16_t* row = (ofCore ? core_ : body_) + y * kTile;
  for (; pixels; pixels &= pixels - 1) {
    const int x = std::countr_zero(pixels);
    row[x] = sampledShare(fine_, left + x, top + y, ofCore, kFull);
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
