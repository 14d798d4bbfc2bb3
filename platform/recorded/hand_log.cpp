#include "platform/recorded/hand_log.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

namespace platform {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::array kAllChiralities{Chirality::left, Chirality::unknown, Chirality::right};

/// The double with the fewest digits that rounds to `value`, so that 0.9F is written as 0.9.
double shortest(float value) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  double number = 0;
  std::from_chars(text.data(), end, number);
  return number;
}

Json toJson(const HandObservation& hand) {
  Json json;
  json["chirality"] = name(hand.chirality);
  for (const HandJoint joint : kAllHandJoints) {
    if (const auto& seen = hand[joint]) {
      json[name(joint)] = {seen->x, seen->y, shortest(seen->confidence)};
    }
  }
  return json;
}

/// Throws Json::exception.
HandObservation handFrom(const Json& json) {
  HandObservation hand;
  const auto chirality = std::ranges::find(kAllChiralities, json.at("chirality").get<std::string>(),
                                           [](Chirality known) { return name(known); });
  if (chirality == kAllChiralities.end()) {
    throw Json::other_error::create(501, "no such chirality", nullptr);
  }
  hand.chirality = *chirality;
  for (const HandJoint joint : kAllHandJoints) {
    const auto found = json.find(name(joint));
    if (found == json.end()) continue;
    hand[joint] = RecognizedPoint{found->at(0).get<double>(), found->at(1).get<double>(),
                                  found->at(2).get<float>()};
  }
  return hand;
}

}  // namespace

std::string name(Chirality chirality) {
  switch (chirality) {
    case Chirality::left:
      return "left";
    case Chirality::unknown:
      return "unknown";
    case Chirality::right:
      return "right";
  }
  return {};
}

std::string name(HandJoint joint) {
  switch (joint) {
    case HandJoint::wrist:
      return "wrist";
    case HandJoint::thumbTip:
      return "thumbTip";
    case HandJoint::indexTip:
      return "indexTip";
    case HandJoint::middleMCP:
      return "middleMCP";
    case HandJoint::middleTip:
      return "middleTip";
    case HandJoint::ringTip:
      return "ringTip";
    case HandJoint::littleTip:
      return "littleTip";
  }
  return {};
}

std::string toLine(const HandLogEntry& entry) {
  Json json;
  json["time"] = entry.time;
  if (entry.answer) {
    json["hands"] = Json::array();
    for (const HandObservation& hand : entry.answer.value()) json["hands"].push_back(toJson(hand));
  } else {
    json["error"] = entry.answer.error().description;
  }
  return json.dump();
}

Result<HandLogEntry> fromLine(const std::string& line) {
  try {
    const Json json = Json::parse(line);
    HandLogEntry entry;
    entry.time = json.at("time").get<double>();
    if (const auto error = json.find("error"); error != json.end()) {
      entry.answer = Error{error->get<std::string>()};
      return entry;
    }
    std::vector<HandObservation> hands;
    for (const Json& hand : json.at("hands")) hands.push_back(handFrom(hand));
    entry.answer = std::move(hands);
    return entry;
  } catch (const Json::exception& problem) {
    return Error{problem.what()};
  }
}

Result<std::vector<HandLogEntry>> readHandLog(const std::filesystem::path& path) {
  std::ifstream file(path);
  if (!file) return Error{path.string() + " cannot be read."};
  std::vector<HandLogEntry> entries;
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    Result<HandLogEntry> entry = fromLine(line);
    if (!entry) {
      return Error{path.string() + ", line " + std::to_string(number) + ": " +
                   entry.error().description};
    }
    entries.push_back(std::move(entry).value());
  }
  return entries;
}

}  // namespace platform
