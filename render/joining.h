#pragma once

#include <cstdint>

namespace render {

/// Raises rows `first` up to `end` of `shares`, 0 to kFull, to those of `others`, row y starting at
/// 64 * y. In meetings[y] it adds, lowest bit first, the cells that both cover partly. The same on
/// every instruction set, bit for bit.
void joinRows(const std::int16_t* others, int first, int end, std::int16_t* shares,
              std::uint64_t* meetings);

}  // namespace render
