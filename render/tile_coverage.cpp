#include "render/tile_coverage.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "render/joining.h"

namespace render {

namespace {

constexpr int kTile = PaintTile::kSide;
// Beyond half its width, what a piece can touch.
constexpr float kReachPx = 4;
// A path that turns less than this in all cannot come back to itself: half a circle.
constexpr float kLargestTurn = 3.0f;

/// The row of a tile that begins with row `top` of the canvas.
int rowOf(float y, int top) {
  return static_cast<int>(std::clamp(y - static_cast<float>(top), 0.0f, static_cast<float>(kTile)));
}

}  // namespace

void TileCoverage::paint(std::span<const Strip> strips, std::span<const int> numbers, int tileX,
                         int tileY, bool withCore) {
  const int left = tileX * kTile, top = tileY * kTile;
  findRuns(strips, numbers, top);
  std::memset(bodyMeetings_, 0, sizeof bodyMeetings_);
  std::memset(coreMeetings_, 0, sizeof coreMeetings_);
  for (const Run& run : runs_) {
    const bool isFirst = &run == runs_.data();
    // The first of them clears the rows of all.
    const CellSpan rows = isFirst ? CellSpan{firstRow_, endRow_} : run.rows;
    std::int16_t* bodies = isFirst ? body_ : otherBody_;
    std::int16_t* cores = isFirst ? core_ : otherCore_;
    const int start = rows.first * kTile;
    const std::size_t bytes =
        static_cast<std::size_t>((rows.end - rows.first) * kTile) * sizeof *body_;
    std::memset(bodies + start, 0, bytes);
    if (withCore) std::memset(cores + start, 0, bytes);
    const auto first = static_cast<std::size_t>(run.first);
    paintPieces(strips.subspan(first, static_cast<std::size_t>(run.end) - first), 1,
                {bodies, kTile, left, top, kTile, kTile, kFull, true}, withCore ? cores : nullptr);
    if (isFirst) continue;
    joinRows(bodies, rows.first, rows.end, body_, bodyMeetings_);
    if (withCore) joinRows(cores, rows.first, rows.end, core_, coreMeetings_);
  }
  refineMeetings(strips, numbers, left, top);
}

void TileCoverage::findRuns(std::span<const Strip> strips, std::span<const int> numbers, int top) {
  runs_.clear();
  float turned = 0;
  for (const int number : numbers) {
    const Strip& strip = strips[static_cast<std::size_t>(number)];
    turned += strip.turn;
    const bool goesOn =
        !runs_.empty() && runs_.back().end == number && !strip.isCorner && turned < kLargestTurn;
    if (!goesOn) {
      runs_.push_back({number, number, strip.startY, strip.startY, {}});
      turned = 0;
    }
    Run& run = runs_.back();
    const float reach = strip.bodyHalf + kReachPx;
    run.end = number + 1;
    run.above = std::min(run.above, std::min(strip.startY, strip.endY) - reach);
    run.below = std::max(run.below, std::max(strip.startY, strip.endY) + reach);
  }
  firstRow_ = runs_.empty() ? 0 : kTile;
  endRow_ = 0;
  for (Run& run : runs_) {
    run.rows.first = rowOf(run.above, top);
    run.rows.end = std::max(rowOf(run.below + 1, top), run.rows.first);
    firstRow_ = std::min(firstRow_, run.rows.first);
    endRow_ = std::max(endRow_, run.rows.end);
  }
}

void TileCoverage::refineMeetings(std::span<const Strip> strips, std::span<const int> numbers,
                                  int left, int top) {
  bool isReady = false;
  const auto refine = [&](std::int16_t* row, int y, std::uint64_t pixels, bool ofCore) {
    if (!pixels) return;
    if (!isReady) sampled_.take(strips, numbers);
    isReady = true;
    for (; pixels; pixels &= pixels - 1) {
      const int x = std::countr_zero(pixels);
      // A run of later may cover it alone.
      if (row[x] == kFull) continue;
      row[x] = sampled_.share(left + x, top + y, ofCore, kFull);
    }
  };
  for (int y = firstRow_; y < endRow_; ++y) {
    refine(body_ + y * kTile, y, bodyMeetings_[y], false);
    refine(core_ + y * kTile, y, coreMeetings_[y], true);
  }
}

}  // namespace render
