#pragma once

#include <cstdint>

namespace render {

// From the depths of a DistanceField's row, 64 cells, to the painted share of each cell, 0 to
// `full`. The same on every instruction set, bit for bit.

/// By a filter one cell wide along the way to the nearest line: right on average, for masks that
/// are blurred. Lines may be thinner than a cell.
void rampRow(const float* depths, std::int16_t full, std::int16_t* coverage);

/// The exact share of each square cell for a straight border, whose direction is taken from the
/// cells around it: rows `first` up to `end` of a field, `depths` being its row 0 and row y of the
/// coverage starting at 64 * y. The cells beside and around those rows must be readable. For each
/// row, meetings[y] says, lowest bit first, in which cells borders of different directions meet, so
/// that the share is only that of the nearest one.
void edgeRows(const float* depths, int first, int end, std::int16_t full, std::int16_t* coverage,
              std::uint64_t* meetings);

/// Raises rows `first` up to `end` of `shares`, 0 to kFull, to those of `others`, row y starting at
/// 64 * y. In meetings[y] it adds, lowest bit first, the cells that both cover partly.
void joinRows(const std::int16_t* others, int first, int end, std::int16_t* shares,
              std::uint64_t* meetings);

}  // namespace render
