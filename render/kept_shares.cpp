#include "render/kept_shares.h"

#include <bit>
#include <cstring>

namespace render {

void KeptShares::keep(const StrokeShares& shares) {
  rows_.clear();
  std::size_t count = 0;
  const auto reserve = [&count](std::uint64_t painted) {
    Rows rows;
    if (painted == 0) return rows;
    rows.first = static_cast<std::uint8_t>(std::countr_zero(painted));
    rows.end = static_cast<std::uint8_t>(PaintTile::kSide - std::countl_zero(painted));
    rows.start = static_cast<std::uint16_t>(count);
    count += static_cast<std::size_t>(rows.end - rows.first);
    return rows;
  };
  for (int half = 0; half < 2; ++half) {
    body_[half] = reserve(shares.bodyRows[half]);
    core_[half] = reserve(shares.coreRows[half]);
  }
  rows_.resize(count);
  const auto copy = [this](const Rows& rows, const std::int16_t(*from)[PaintTile::kSide],
                           int half) {
    for (int y = rows.first; y < rows.end; ++y) {
      const auto place = static_cast<std::size_t>(rows.start + y - rows.first);
      std::memcpy(rows_[place].share, from[y] + half * StrokeShares::kHalf, sizeof(Row));
    }
  };
  for (int half = 0; half < 2; ++half) {
    copy(body_[half], shares.body, half);
    copy(core_[half], shares.core, half);
  }
}

void KeptShares::lay(const StrokeColors& colors, double alpha, PaintTile& tile) const {
  ShareColumns halves[2];
  const auto rowsOf = [this](const Rows& rows) {
    return ShareRows{rows_.empty() ? nullptr : rows_[rows.start].share, rows.first, rows.end};
  };
  for (int half = 0; half < 2; ++half) halves[half] = {rowsOf(body_[half]), rowsOf(core_[half])};
  layShares(halves, colors, alpha, tile);
}

}  // namespace render
