#include "tools/detect_hands/hands_json.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace tools {
namespace {

using Json = nlohmann::ordered_json;
using platform::Chirality;
using platform::handpose::Landmark;
using platform::handpose::TrackedHand;

double rounded(double value) {
  return std::round(value * 1e5) / 1e5;
}

const char* nameOf(Chirality chirality) {
  switch (chirality) {
    case Chirality::left:
      return "left";
    case Chirality::right:
      return "right";
    case Chirality::unknown:
      break;
  }
  return "unknown";
}

Json jsonOf(const TrackedHand& hand, const PictureHands& found) {
  Json landmarks = Json::array();
  for (const Landmark& landmark : hand.landmarks) {
    landmarks.push_back({rounded(landmark.at.x / found.width),
                         rounded(1 - landmark.at.y / found.height), rounded(landmark.confidence)});
  }
  Json json{{"chirality", nameOf(hand.chirality)}, {"score", rounded(hand.score)}};
  if (found.time) json["id"] = hand.id;
  json["landmarks"] = std::move(landmarks);
  return json;
}

}  // namespace

std::string jsonLine(const PictureHands& found) {
  Json line{{"image", found.name}};
  if (found.time) line["time"] = rounded(*found.time);
  line["width"] = found.width;
  line["height"] = found.height;
  line["milliseconds"] = rounded(found.milliseconds);
  line["hands"] = Json::array();
  for (const TrackedHand& hand : found.hands) line["hands"].push_back(jsonOf(hand, found));
  return line.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace tools
