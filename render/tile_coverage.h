#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "render/paint_tile.h"
#include "render/sampled_share.h"
#include "render/strip.h"
#include "render/strip_painting.h"

namespace render {

/// The sharp masks of one stroke in one tile, antialiased, 0 to kFull: its body and, where it
/// glows, its core.
class TileCoverage {
 public:
  /// Paints the strips with these numbers, which are all those that come within a few pixels of the
  /// tile.
  void paint(std::span<const Strip> strips, std::span<const int> numbers, int tileX, int tileY,
             bool withCore);

  /// Nothing is painted outside these rows, and their masks are undefined.
  int firstRow() const { return firstRow_; }
  int endRow() const { return endRow_; }

  /// 64 values a row.
  const std::int16_t* body() const { return body_; }
  /// Undefined without core.
  const std::int16_t* core() const { return core_; }

 private:
  /// Strips whose numbers follow each other and that form one smooth path, so that borders in it
  /// share no pixel unless they run alike.
  struct Run {
    int first = 0;
    int end = 0;
    float above = 0, below = 0;  // The canvas's rows that it can touch lie between.
    CellSpan rows;               // Those of the tile.
  };

  void findRuns(std::span<const Strip> strips, std::span<const int> numbers, int top);
  void refineMeetings(std::span<const Strip> strips, std::span<const int> numbers, int left,
                      int top);

  std::vector<Run> runs_;
  SampledStrips sampled_;  // Where runs meet.
  int firstRow_ = 0;
  int endRow_ = 0;
  // For each row, lowest bit first, the pixels that two runs cover partly.
  std::uint64_t bodyMeetings_[PaintTile::kSide];
  std::uint64_t coreMeetings_[PaintTile::kSide];
  alignas(64) std::int16_t body_[PaintTile::kSide * PaintTile::kSide];
  alignas(64) std::int16_t core_[PaintTile::kSide * PaintTile::kSide];
  // Of another run.
  alignas(64) std::int16_t otherBody_[PaintTile::kSide * PaintTile::kSide];
  alignas(64) std::int16_t otherCore_[PaintTile::kSide * PaintTile::kSide];
};

}  // namespace render
