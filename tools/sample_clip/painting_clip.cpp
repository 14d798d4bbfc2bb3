// Films somebody who paints, each seed somebody else in another room: writes the frames to the
// standard output (16 : 9, BGRA pixels, 30 a second) and what is known of them into a folder:
// hands.jsonl (where the joints really are) and events.json (what the person did when).
// usage: painting_clip HUMAN_FOLDER FOLDER SEED SECONDS HEIGHT

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "platform/recorded/hand_log.h"
#include "tools/sample_clip/actor.h"
#include "tools/sample_clip/improvisation.h"
#include "tools/sample_clip/room.h"
#include "tools/sample_clip/webcam.h"
#include "training/render/room.h"

namespace sample_clip {
namespace {

using training::render::Random;

pixels::Surface anyRoom(int width, int height, Random& random) {
  const training::render::Record record = training::render::randomRoom(random, width, height);
  pixels::Surface room(width, height);
  for (int y = 0; y < height; ++y) {
    const std::size_t bytes = std::size_t{4} * static_cast<std::size_t>(width);
    std::copy_n(record.pixels.data() + static_cast<std::size_t>(y) * bytes, bytes,
                room.view().row(y));
  }
  return room;
}

void film(const Performance& performance, Actor& actor, std::uint64_t seed, int height,
          const std::filesystem::path& folder) {
  const int width = static_cast<int>(std::lround(kAspect * height));
  std::ofstream hands(folder / "hands.jsonl");
  Random random(seed * 31 + 3);
  const pixels::Surface empty = anyRoom(width, height, random);
  const Webcam webcam(random);
  for (std::size_t i = 0; i < performance.moments.size(); ++i) {
    const Shot shot = actor.film(performance.moments[i], width, height);
    pixels::Surface picture = empty;
    putOver(shot.picture, picture);
    webcam.develop(picture, static_cast<int>(i));
    for (int y = 0; y < height; ++y) {
      const auto pixels = static_cast<std::size_t>(width);
      if (std::fwrite(picture.row(y), 4, pixels, stdout) != pixels) {
        throw std::runtime_error("the frames cannot be written");
      }
    }
    hands << platform::toLine({static_cast<double>(i) / kFramesPerSecond, shot.hands}) << '\n';
  }
}

nlohmann::json spansOf(const std::vector<Span>& spans) {
  nlohmann::json json = nlohmann::json::array();
  for (const Span& span : spans) json.push_back({span.first, span.end});
  return json;
}

void writeEvents(const Performance& performance, const std::filesystem::path& path) {
  std::ofstream(path) << nlohmann::json{{"colorChanges", spansOf(performance.colorChanges)},
                                        {"rests", spansOf(performance.rests)},
                                        {"frames", performance.moments.size()}}
                      << '\n';
}

}  // namespace
}  // namespace sample_clip

int main(int argc, char** argv) {
  if (argc != 6) {
    std::fprintf(stderr, "usage: painting_clip HUMAN_FOLDER FOLDER SEED SECONDS HEIGHT\n");
    return 2;
  }
  try {
    const std::filesystem::path folder = argv[2];
    const std::uint64_t seed = std::stoull(argv[3]);
    sample_clip::Actor actor(argv[1], sample_clip::randomCasting(seed));
    const sample_clip::Performance performance = sample_clip::improvise(seed, std::stod(argv[4]));
    sample_clip::film(performance, actor, seed, std::stoi(argv[5]), folder);
    sample_clip::writeEvents(performance, folder / "events.json");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "painting_clip: %s\n", error.what());
    return 1;
  }
  return 0;
}
