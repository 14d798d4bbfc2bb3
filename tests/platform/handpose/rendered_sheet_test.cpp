#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <vector>

#include "platform/handpose/network_vision.h"
#include "platform/handpose/still_picture.h"
#include "platform/png/read_png.h"

namespace platform::handpose {
namespace {

constexpr Joint kSeven[] = {Joint::wrist,     Joint::thumbTip, Joint::indexTip, Joint::middleMCP,
                            Joint::middleTip, Joint::ringTip,  Joint::littleTip};

struct LabelledHand {
  Landmarks landmarks;
  Chirality chirality = Chirality::unknown;
};

struct Tile {
  pixels::Image picture;
  std::vector<LabelledHand> hands;
};

/// The sheet of rendered scenes that training/make_sheet.py writes: people whom no network was
/// trained on, with the places of their joints known exactly.
std::vector<Tile> renderedSheet() {
  const std::string folder = WAVESCRIBE_RENDERED_SHEET;
  const pixels::Image sheet = readPng(folder + "/sheet.png").value();
  std::vector<Tile> tiles;
  for (const auto& tile : nlohmann::json::parse(std::ifstream(folder + "/sheet.json"))) {
    const int x = tile["x"];
    const int y = tile["y"];
    std::vector<LabelledHand> hands;
    for (const auto& label : tile["hands"]) {
      LabelledHand hand{.landmarks = {},
                        .chirality = label["right"] ? Chirality::right : Chirality::left};
      for (std::size_t i = 0; i < kJointCount; ++i) {
        hand.landmarks[i] = {{label["joints"][i][0], label["joints"][i][1]}, 1};
      }
      hands.push_back(hand);
    }
    tiles.push_back({pixels::Image::copyOf(sheet.row(y) + 4 * x, tile["width"], tile["height"],
                                           sheet.strideBytes()),
                     hands});
  }
  return tiles;
}

/// What the shipped networks make of the sheet.
struct Figures {
  int labelled = 0;
  int found = 0;
  int rightSide = 0;
  int falseHands = 0;
  std::vector<double> errors;  ///< Of the seven joints, in hand sizes.

  double medianError() {
    std::nth_element(errors.begin(), errors.begin() + errors.size() / 2, errors.end());
    return errors[errors.size() / 2];
  }
};

bool isAbout(const LabelledHand& label, const TrackedHand& hand) {
  const HandBox there = boxOf(label.landmarks);
  return distance(there.centre, boxOf(hand.landmarks).centre) < 0.5 * there.size;
}

Figures figuresOf(const std::vector<Tile>& tiles) {
  NetworkVision vision = NetworkVision::load().value();
  Figures figures;
  for (const Tile& tile : tiles) {
    const auto hands = handsInStillPicture(vision, tile.picture, 2).value();
    std::size_t matched = 0;
    for (const LabelledHand& label : tile.hands) {
      ++figures.labelled;
      const auto hand = std::find_if(hands.begin(), hands.end(), [&](const TrackedHand& candidate) {
        return isAbout(label, candidate);
      });
      if (hand == hands.end()) continue;
      ++matched;
      ++figures.found;
      figures.rightSide += hand->chirality == label.chirality;
      for (Joint joint : kSeven) {
        figures.errors.push_back(
            distance(at(hand->landmarks, joint).at, at(label.landmarks, joint).at) /
            handSize(label.landmarks));
      }
    }
    figures.falseHands += static_cast<int>(hands.size() - std::min(hands.size(), matched));
  }
  return figures;
}

TEST(RenderedSheet, TheShippedNetworksAreAsGoodAsRecorded) {
  Figures figures = figuresOf(renderedSheet());

  ASSERT_EQ(figures.labelled, 19);
  EXPECT_GE(figures.found, 17);
  EXPECT_LE(figures.falseHands, 1);
  EXPECT_GE(figures.rightSide, 16);
  EXPECT_LE(figures.medianError(), 0.10);
}

}  // namespace
}  // namespace platform::handpose
