// Makes the sample clip's raw material in a folder: frames.bgra (640x360 pixels, 30 a second),
// hands.jsonl (what a careful detector sees) and path.json (the lines the painter means).
// usage: sample_clip FOLDER

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <vector>

#include "platform/recorded/hand_log.h"
#include "tools/sample_clip/choreography.h"
#include "tools/sample_clip/posture.h"
#include "tools/sample_clip/sketch.h"

namespace sample_clip {
namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 360;

/// Enough digits for a picture of any size.
double rounded(double value) {
  return std::round(value * 1e5) / 1e5;
}

/// How unsure a good detector is of a joint, in shares of the hand's size.
constexpr double kJointNoise = 0.006;

void writeFrames(const Performance& performance, const std::filesystem::path& path) {
  std::ofstream file(path, std::ios::binary);
  for (const Moment& moment : performance.moments) {
    const pixels::Surface picture = sketch(moment, kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
      file.write(reinterpret_cast<const char*>(picture.row(y)), kWidth * 4);
    }
  }
}

void writeHands(const Performance& performance, const std::filesystem::path& path) {
  std::ofstream file(path);
  std::mt19937 random(20);
  std::normal_distribution<double> noise;
  for (std::size_t i = 0; i < performance.moments.size(); ++i) {
    std::vector<platform::HandObservation> seen;
    for (const HandPosture& hand : handsAt(performance.moments[i])) {
      if (hand.wrist.y < 0) continue;
      seen.push_back(observed(hand));
      for (auto& joint : seen.back().points) {
        joint->x = rounded(joint->x + noise(random) * kJointNoise * hand.size / kAspect);
        joint->y = rounded(joint->y + noise(random) * kJointNoise * hand.size);
      }
    }
    file << platform::toLine({rounded(static_cast<double>(i) / kFramesPerSecond), seen}) << '\n';
  }
}

void writePath(const Performance& performance, const std::filesystem::path& path) {
  nlohmann::ordered_json json;
  json["framesPerSecond"] = kFramesPerSecond;
  for (const PlannedStroke& stroke : performance.strokes) {
    nlohmann::ordered_json line{{"name", stroke.name}, {"color", stroke.colorIndex}};
    for (const strokes::Point& point : stroke.points)
      line["points"].push_back({rounded(point.x), rounded(point.y)});
    json["strokes"].push_back(line);
  }
  std::ofstream(path) << json.dump() << '\n';
}

}  // namespace
}  // namespace sample_clip

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: sample_clip FOLDER\n");
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  const sample_clip::Performance performance = sample_clip::perform();
  sample_clip::writeFrames(performance, folder / "frames.bgra");
  sample_clip::writeHands(performance, folder / "hands.jsonl");
  sample_clip::writePath(performance, folder / "path.json");
  return 0;
}
