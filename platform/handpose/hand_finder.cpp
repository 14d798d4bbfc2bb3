#include "platform/handpose/hand_finder.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "platform/handpose/sampling.h"

namespace platform::handpose {
namespace {

constexpr int kWidth = 192;
constexpr int kHeight = 144;
constexpr int kCell = 8;  // Network pixels along a cell of the output.
constexpr int kRows = kHeight / kCell;
constexpr int kColumns = kWidth / kCell;
constexpr int kChannels = 7;
// Low, because every candidate gets a closer look.
constexpr float kLeastScore = 0.2f;
// Centres nearer than this share of the larger hand are one hand.
constexpr double kApart = 0.5;

/// No neighbour has a higher score; of equal ones the first counts.
bool isPeak(const float* scores, int rows, int columns, int row, int column) {
  const float score = scores[row * columns + column];
  for (int y = std::max(0, row - 1); y <= std::min(rows - 1, row + 1); ++y) {
    for (int x = std::max(0, column - 1); x <= std::min(columns - 1, column + 1); ++x) {
      const bool before = y < row || (y == row && x < column);
      const float other = scores[y * columns + x];
      if (other > score || (before && other == score)) return false;
    }
  }
  return true;
}

bool isNew(const HandCandidate& candidate, const std::vector<HandCandidate>& better) {
  return std::none_of(better.begin(), better.end(), [&](const HandCandidate& other) {
    return distance(candidate.box.centre, other.box.centre) <
           kApart * std::max(candidate.box.size, other.box.size);
  });
}

}  // namespace

std::vector<HandCandidate> candidatesIn(const float* output, int rows, int columns) {
  const std::ptrdiff_t cells = std::ptrdiff_t{rows} * columns;
  std::vector<HandCandidate> peaks;
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      const float* const cell = output + std::ptrdiff_t{row} * columns + column;
      const auto channel = [&](int i) { return static_cast<double>(cell[i * cells]); };
      const bool isUsable = std::isfinite(channel(0)) && std::isfinite(channel(1)) &&
                            std::isfinite(channel(2)) && std::isfinite(channel(3)) &&
                            std::isfinite(channel(6)) && channel(3) > 0;
      if (!(*cell > kLeastScore) || !isUsable || !isPeak(output, rows, columns, row, column))
        continue;
      const double angle = std::atan2(channel(5), channel(4));
      peaks.push_back(
          {.box = {{channel(1), channel(2)}, channel(3), std::isfinite(angle) ? angle : 0},
           .score = channel(0),
           .right = channel(6)});
    }
  }
  std::stable_sort(peaks.begin(), peaks.end(),
                   [](const auto& a, const auto& b) { return a.score > b.score; });
  std::vector<HandCandidate> candidates;
  for (const HandCandidate& peak : peaks) {
    if (candidates.size() == HandFinder::kMostCandidates) break;
    if (isNew(peak, candidates)) candidates.push_back(peak);
  }
  return candidates;
}

HandFinder::HandFinder(Network network) : network_(std::move(network)) {}

Result<HandFinder> HandFinder::load(std::span<const std::uint8_t> file) {
  auto network = Network::load(file, {.name = "hand_finder",
                                      .width = kWidth,
                                      .height = kHeight,
                                      .outputs = {{"hands", {1, kChannels, kRows, kColumns}}}});
  if (!network) return network.error();
  return HandFinder(std::move(network).value());
}

Result<std::vector<HandCandidate>> HandFinder::find(const pixels::Image& picture,
                                                    const Region& region) {
  const auto outputs = network_.look(sample(picture, region, kWidth, kHeight));
  if (!outputs) return outputs.error();
  const Letterbox letterbox = Letterbox::fit(region, kWidth, kHeight);
  auto candidates = candidatesIn(outputs.value()[0].ptr<float>(), kRows, kColumns);
  for (HandCandidate& candidate : candidates) {
    candidate.box.centre = letterbox.toPicture(candidate.box.centre);
    candidate.box.size /= letterbox.scale;
  }
  return candidates;
}

}  // namespace platform::handpose
