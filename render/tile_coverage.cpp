#include "render/tile_coverage.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "render/coverage.h"

namespace render {

namespace {

constexpr int kTile = PaintTile::kSide;
// Lines thinner than twice this are sampled more finely: both their borders, or their round ends,
// share pixels.
constexpr double kThinHalfPx = 1.25;
constexpr int kFineness = 4;
constexpr int kSamples = kFineness * kFineness;

const float* depthRow(const DistanceField& field, int y, bool ofCore) {
  if (y < field.firstRow() || y >= field.endRow()) return nullptr;
  return ofCore ? field.coreRow(y) : field.bodyRow(y);
}

}  // namespace

void TileCoverage::paint(std::span<const CurvePiece> pieces, std::span<const LocalPiece> local,
                         std::span<const int> numbers, int tileX, int tileY, bool withCore) {
  pieces_ = pieces;
  numbers_ = numbers;
  fine_.clear();
  const bool isThin = std::any_of(numbers.begin(), numbers.end(), [=](int number) {
    const CurvePiece& piece = pieces[static_cast<std::size_t>(number)];
    return (withCore ? piece.coreHalf : piece.bodyHalf) < kThinHalfPx;
  });
  if (isThin) {
    paintFinely(tileX * kTile, tileY * kTile, withCore);
  } else {
    paintCoarsely(local, tileX * kTile, tileY * kTile, withCore);
  }
}

void TileCoverage::localiseFinely() {
  if (!fine_.empty()) return;
  for (const int number : numbers_)
    fine_.push_back(localPiece(pieces_[static_cast<std::size_t>(number)], 1.0 / kFineness));
}

void TileCoverage::paintCoarsely(std::span<const LocalPiece> local, int left, int top,
                                 bool withCore) {
  field_.reset(left, top, withCore);
  for (const int number : numbers_) field_.spread(local[static_cast<std::size_t>(number)]);
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
    for (const LocalPiece& piece : fine_) fineField_.spread(piece);
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
