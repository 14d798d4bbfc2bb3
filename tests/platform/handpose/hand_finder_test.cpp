#include "platform/handpose/hand_finder.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "platform/handpose/embedded_networks.h"

namespace platform::handpose {
namespace {

constexpr int kRows = 5;
constexpr int kColumns = 6;

/// The finder's output with a few cells that say something.
class Output {
 public:
  void put(int row, int column, double score, const HandBox& box, double right = 0.5) {
    const double values[] = {score,    box.centre.x,        box.centre.y,
                             box.size, std::cos(box.angle), std::sin(box.angle),
                             right};
    for (int channel = 0; channel < 7; ++channel) {
      values_[static_cast<std::size_t>((channel * kRows + row) * kColumns + column)] =
          static_cast<float>(values[channel]);
    }
  }
  std::vector<HandCandidate> candidates() const {
    return candidatesIn(values_.data(), kRows, kColumns);
  }

 private:
  std::vector<float> values_ = std::vector<float>(7 * kRows * kColumns, 0);
};

TEST(HandFinder, AnEmptyPictureHasNoCandidates) {
  EXPECT_TRUE(Output().candidates().empty());
}

TEST(HandFinder, ReadsPlaceSizeDirectionAndSideOfAHand) {
  Output output;
  output.put(2, 3, 0.8, {{27, 20}, 15, -0.5}, 0.9);
  const auto candidates = output.candidates();
  ASSERT_EQ(candidates.size(), 1u);
  EXPECT_NEAR(candidates[0].score, 0.8, 1e-6);
  EXPECT_NEAR(candidates[0].box.centre.x, 27, 1e-6);
  EXPECT_NEAR(candidates[0].box.centre.y, 20, 1e-6);
  EXPECT_NEAR(candidates[0].box.size, 15, 1e-6);
  EXPECT_NEAR(candidates[0].box.angle, -0.5, 1e-6);
  EXPECT_NEAR(candidates[0].right, 0.9, 1e-6);
}

TEST(HandFinder, ACellBesideABetterOneIsNoCandidate) {
  Output output;
  output.put(2, 3, 0.8, {{27, 20}, 2, 0});
  output.put(2, 4, 0.7, {{40, 20}, 2, 0});
  EXPECT_EQ(output.candidates().size(), 1u);
}

TEST(HandFinder, OfTwoEqualNeighboursOneIsACandidate) {
  Output output;
  output.put(2, 3, 0.8, {{27, 20}, 2, 0});
  output.put(2, 4, 0.8, {{40, 20}, 2, 0});
  EXPECT_EQ(output.candidates().size(), 1u);
}

TEST(HandFinder, TwoPeaksOnOneHandAreOneCandidate) {
  Output output;
  output.put(1, 1, 0.8, {{20, 20}, 30, 0});
  output.put(1, 4, 0.9, {{28, 20}, 30, 0});
  const auto candidates = output.candidates();
  ASSERT_EQ(candidates.size(), 1u);
  EXPECT_NEAR(candidates[0].score, 0.9, 1e-6);
}

TEST(HandFinder, TheBestCandidateComesFirst) {
  Output output;
  output.put(0, 0, 0.5, {{4, 4}, 5, 0});
  output.put(4, 5, 0.9, {{44, 36}, 5, 0});
  const auto candidates = output.candidates();
  ASSERT_EQ(candidates.size(), 2u);
  EXPECT_GT(candidates[0].score, candidates[1].score);
}

TEST(HandFinder, NumbersThatAreNoneMakeNoCandidate) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  for (const double bad : {std::numeric_limits<double>::quiet_NaN(), kInfinite, -kInfinite}) {
    Output output;
    output.put(0, 0, bad, {{4, 4}, 5, 0});
    output.put(0, 4, 0.9, {{20, 4}, bad, 0});
    output.put(2, 2, 0.9, {{bad, 20}, 5, 0});
    output.put(2, 5, 0.9, {{44, bad}, 5, 0});
    output.put(4, 0, 0.9, {{4, 36}, 5, 0}, bad);
    output.put(4, 4, 0.9, {{4, 4}, -5, 0});
    EXPECT_TRUE(output.candidates().empty()) << bad;
  }
}

TEST(HandFinder, SearchesPicturesOfAnyShape) {
  auto loaded = HandFinder::load(handFinderFile());
  ASSERT_TRUE(loaded);
  HandFinder finder = std::move(loaded).value();
  for (const auto& [width, height] : {std::pair(1, 1), {37, 1001}, {1280, 720}}) {
    const std::size_t stride = 4u * static_cast<std::size_t>(width) + 12;
    const std::vector<std::uint8_t> grey(stride * static_cast<std::size_t>(height), 90);
    const auto picture = pixels::Image::copyOf(grey.data(), width, height, stride);
    EXPECT_TRUE(finder.find(picture, {0, 0, 1.0 * width, 1.0 * height}));
  }
}

}  // namespace
}  // namespace platform::handpose
