#pragma once

#include <cstdint>

namespace render {

// From the depths of a DistanceField's row, 64 cells, to the painted share of each cell, 0 to
// `full`. The same on every instruction set, bit for bit.

/// By a filter one cell wide along the way to the nearest line: right on average, for masks that
/// are blurred. Lines may be thinner than a cell.
void rampRow(const float* depths, std::int16_t full, std::int16_t* coverage);

/// The exact share of the square cell for a straight border; its direction is taken from the rows
/// above and below and the cells to the sides. Null stands for a row beyond the field. Returns the
/// cells, lowest bit first, in which borders of different directions meet and the share is only
/// that of the nearest one.
std::uint64_t edgeRow(const float* above, const float* depths, const float* below,
                      std::int16_t full, std::int16_t* coverage);

}  // namespace render
