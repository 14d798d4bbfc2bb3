#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/scripted_hand_vision.h"
#include "tools/detect_hands/command_line.h"
#include "tools/detect_hands/hands_json.h"

namespace tools {
namespace {

platform::Result<CommandLine> parsed(std::vector<std::string> words) {
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  return parse(arguments);
}

PictureHands oneHand() {
  PictureHands found{
      .name = "a.png", .time = {}, .width = 640, .height = 480, .milliseconds = 3.5, .hands = {}};
  found.hands.push_back({.id = 4,
                         .landmarks = test_support::openHand({{320, 120}, 100, 0}, 0.75),
                         .chirality = platform::Chirality::left,
                         .score = 0.5});
  return found;
}

TEST(DetectHands, TakesPicturesAndOptionsInAnyOrder) {
  const auto line = parsed({"a.png", "--plain", "--overlay", "out", "b.png"});
  ASSERT_TRUE(line);
  EXPECT_EQ(line.value().pictures.size(), 2u);
  EXPECT_TRUE(line.value().isPlain);
  EXPECT_EQ(line.value().overlay, "out");
}

TEST(DetectHands, TakesEitherPicturesOrAClip) {
  EXPECT_TRUE(parsed({"--video", "a.webm"}));
  EXPECT_FALSE(parsed({"--video", "a.webm", "b.png"}));
  EXPECT_FALSE(parsed({}));
}

TEST(DetectHands, NamesTheOptionThatItDoesNotKnowOrThatLacksItsPath) {
  EXPECT_EQ(parsed({"--fast", "a.png"}).error().description, "There is no option --fast.");
  EXPECT_EQ(parsed({"a.png", "--overlay"}).error().description, "--overlay needs a path.");
}

TEST(DetectHands, PrintsJointsInSharesOfThePictureUpwards) {
  const auto line = nlohmann::json::parse(jsonLine(oneHand()));
  EXPECT_EQ(line["image"], "a.png");
  EXPECT_EQ(line["width"], 640);
  EXPECT_EQ(line["milliseconds"], 3.5);
  const auto& hand = line["hands"][0];
  EXPECT_EQ(hand["chirality"], "left");
  ASSERT_EQ(hand["landmarks"].size(), 21u);
  EXPECT_EQ(hand["landmarks"][12], nlohmann::json({0.5, 0.85417, 0.75}));  // The middle fingertip.
}

TEST(DetectHands, PrintsTimeAndIdentityOnlyForFramesOfAClip) {
  PictureHands found = oneHand();
  EXPECT_FALSE(nlohmann::json::parse(jsonLine(found)).contains("time"));
  EXPECT_FALSE(nlohmann::json::parse(jsonLine(found))["hands"][0].contains("id"));
  found.time = 1.5;
  EXPECT_EQ(nlohmann::json::parse(jsonLine(found))["time"], 1.5);
  EXPECT_EQ(nlohmann::json::parse(jsonLine(found))["hands"][0]["id"], 4);
}

}  // namespace
}  // namespace tools
