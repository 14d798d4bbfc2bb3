#include "platform/handpose/hand_pose_detector.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/scripted_hand_vision.h"

namespace platform::handpose {
namespace {

using test_support::ScriptedHandVision;

pixels::PixelBuffer frame(int width, int height, double time, int padding = 0) {
  const std::size_t stride = 4u * static_cast<std::size_t>(width + padding);
  std::vector<std::uint8_t> data(stride * static_cast<std::size_t>(height), 120);
  return {pixels::Image::copyOf(data.data(), width, height, stride), time};
}

HandPoseDetector::LoadVision scripted(const ScriptedHandVision& world) {
  return [world] {
    return Result(std::unique_ptr<HandVision>(std::make_unique<ScriptedHandVision>(world)));
  };
}

TEST(HandPoseDetector, ReportsTheHandsOfAFrame) {
  ScriptedHandVision world;
  world.hands = {{.box = {{320, 180}, 100, 0}, .right = 0.02}};
  HandPoseDetector detector(scripted(world));
  const auto hands = detector.perform(frame(640, 360, 0));
  ASSERT_TRUE(hands);
  ASSERT_EQ(hands.value().size(), 1u);
  EXPECT_EQ(hands.value()[0].chirality, Chirality::left);
  ASSERT_TRUE(hands.value()[0][HandJoint::middleTip]);
  EXPECT_NEAR(hands.value()[0][HandJoint::middleTip]->x, 0.5, 1e-9);
  EXPECT_NEAR(hands.value()[0][HandJoint::middleTip]->y, 1 - 130.0 / 360, 1e-9);
}

TEST(HandPoseDetector, AFrameWithoutAPictureIsAFailure) {
  HandPoseDetector detector(scripted({}));
  const auto hands = detector.perform({});
  ASSERT_FALSE(hands);
  EXPECT_EQ(hands.error().description, "The camera frame holds no picture.");
}

TEST(HandPoseDetector, TellsWhyTheNetworksCannotBeLoadedAndTriesAgain) {
  int loads = 0;
  HandPoseDetector detector([&]() -> Result<std::unique_ptr<HandVision>> {
    if (++loads == 1) return Error{"The network is damaged."};
    return std::unique_ptr<HandVision>(std::make_unique<ScriptedHandVision>());
  });
  const auto first = detector.perform(frame(64, 64, 0));
  ASSERT_FALSE(first);
  EXPECT_EQ(first.error().description, "The network is damaged.");
  EXPECT_TRUE(detector.perform(frame(64, 64, 0.1)));
  EXPECT_TRUE(detector.perform(frame(64, 64, 0.2)));
  EXPECT_EQ(loads, 2);
}

TEST(HandPoseDetector, TakesFramesOfAnySizeAndStrideWithTheShippedNetworks) {
  HandPoseDetector detector;
  double time = 0;
  for (const auto& [width, height, padding] :
       {std::tuple(1, 1, 0), {37, 1001, 0}, {1001, 37, 3}, {640, 480, 5}, {1280, 720, 0}}) {
    const auto hands = detector.perform(frame(width, height, time += 0.033, padding));
    ASSERT_TRUE(hands) << hands.error().description;
    EXPECT_LE(hands.value().size(), HandPoseRequest::maximumHandCount);
  }
}

}  // namespace
}  // namespace platform::handpose
