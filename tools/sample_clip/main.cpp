// Makes the sample clip's raw material in a folder: frames.bgra (kWidth x kHeight pixels, 30 a
// second), hands.jsonl (what a careful detector would see) and path.json (the lines that the pen
// really took).
// usage: sample_clip HUMAN_FOLDER FOLDER

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <vector>

#include "platform/recorded/hand_log.h"
#include "tools/sample_clip/actor.h"
#include "tools/sample_clip/choreography.h"
#include "tools/sample_clip/room.h"

namespace sample_clip {
namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 360;

/// Somebody whose pinch is easy to see: the palm to the camera, thumb and index finger in profile.
const Casting kCasting{
    .seed = 25, .palm = {-0.21f, 0.12f, 0.97f}, .up = {-0.12f, 0.99f, 0}, .curl = 0.48f};

/// How unsure a good detector is of a joint, in picture heights.
constexpr double kJointNoise = 0.0008;

/// Enough digits for a picture of any size.
double rounded(double value) {
  return std::round(value * 1e5) / 1e5;
}

void addNoise(std::mt19937& random, platform::HandObservation& hand) {
  std::normal_distribution<double> noise(0, kJointNoise);
  for (auto& joint : hand.points) {
    joint->x = rounded(joint->x + noise(random) / kAspect);
    joint->y = rounded(joint->y + noise(random));
  }
}

void film(const Performance& performance, Actor& actor, const std::filesystem::path& folder) {
  std::ofstream frames(folder / "frames.bgra", std::ios::binary);
  std::ofstream hands(folder / "hands.jsonl");
  std::mt19937 random(20);
  const pixels::Surface empty = room(kWidth, kHeight);
  for (std::size_t i = 0; i < performance.moments.size(); ++i) {
    Shot shot = actor.film(performance.moments[i], kWidth, kHeight);
    pixels::Surface picture = empty;
    putOver(shot.picture, picture);
    for (int y = 0; y < kHeight; ++y) {
      frames.write(reinterpret_cast<const char*>(picture.row(y)), kWidth * 4);
    }
    for (platform::HandObservation& hand : shot.hands) addNoise(random, hand);
    hands << platform::toLine({rounded(static_cast<double>(i) / kFramesPerSecond), shot.hands})
          << '\n';
  }
}

void writePath(const Performance& performance, const std::filesystem::path& path) {
  nlohmann::ordered_json json;
  json["framesPerSecond"] = kFramesPerSecond;
  for (const PlannedStroke& stroke : performance.strokes) {
    nlohmann::ordered_json line{{"name", stroke.name}, {"color", stroke.colorIndex}};
    for (const strokes::Point& point : stroke.points) {
      line["points"].push_back({rounded(point.x), rounded(point.y)});
    }
    json["strokes"].push_back(line);
  }
  std::ofstream(path) << json.dump() << '\n';
}

}  // namespace
}  // namespace sample_clip

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: sample_clip HUMAN_FOLDER FOLDER\n");
    return 2;
  }
  try {
    const std::filesystem::path folder = argv[2];
    sample_clip::Actor actor(argv[1], sample_clip::kCasting);
    const sample_clip::Performance performance = sample_clip::perform();
    sample_clip::film(performance, actor, folder);
    sample_clip::writePath(performance, folder / "path.json");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "sample_clip: %s\n", error.what());
    return 1;
  }
  return 0;
}
