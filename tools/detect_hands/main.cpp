#include <cstdio>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/hand_pose_request.h"
#include "platform/handpose/hand_tracks.h"
#include "platform/handpose/network_vision.h"
#include "platform/handpose/still_picture.h"
#include "tools/detect_hands/clip.h"
#include "tools/detect_hands/command_line.h"
#include "tools/detect_hands/hands_json.h"
#include "tools/detect_hands/overlay.h"
#include "tools/detect_hands/picture_file.h"

namespace tools {
namespace {

using platform::Result;
using platform::handpose::HandVision;
using platform::handpose::TrackedHand;

using Hands = Result<std::vector<TrackedHand>>;

constexpr std::size_t kMostHands = platform::HandPoseRequest::maximumHandCount;

double processorMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

/// Prints the hands that `look` sees in a picture, and draws them where that is asked for.
template <class Look>
Result<void> show(const CommandLine& line, const pixels::Image& picture, PictureHands found,
                  const std::filesystem::path& overlay, const Look& look) {
  const double start = processorMilliseconds();
  Hands hands = look(picture);
  found.milliseconds = processorMilliseconds() - start;
  if (!hands) return hands.error();
  found.width = picture.width();
  found.height = picture.height();
  found.hands = std::move(hands).value();
  if (!line.isPlain) {
    for (TrackedHand& hand : found.hands) {
      hand.landmarks = platform::handpose::inReportedConvention(hand.landmarks);
    }
  }
  std::cout << jsonLine(found) << '\n';
  if (!line.overlay) return {};
  return writePicture(withHands(picture, found.hands), overlay);
}

Result<void> showPicture(HandVision& vision, const CommandLine& line,
                         const std::filesystem::path& path) {
  const auto picture = readPicture(path);
  if (!picture) return picture.error();
  std::filesystem::path overlay;
  if (line.overlay) {
    const bool isOnly = line.pictures.size() == 1;
    overlay = isOnly ? *line.overlay : *line.overlay / path.filename().replace_extension(".png");
  }
  PictureHands found;
  found.name = path.string();
  return show(line, picture.value(), found, overlay, [&](const pixels::Image& image) {
    return platform::handpose::handsInStillPicture(vision, image, kMostHands);
  });
}

Result<void> showClip(HandVision& vision, const CommandLine& line) {
  platform::handpose::HandTracks tracks(vision);
  int number = 0;
  return forEachFrame(*line.clip, [&](const pixels::Image& frame, double time) {
    char file[16];
    std::snprintf(file, sizeof file, "%06d.png", number++);
    PictureHands found;
    found.name = line.clip->string();
    found.time = time;
    return show(line, frame, found, line.overlay.value_or("") / file,
                [&](const pixels::Image& image) { return tracks.follow(image, time); });
  });
}

/// Tells what went wrong on the standard error stream.
int exitStatus(const Result<void>& result) {
  if (result) return 0;
  std::cerr << result.error().description << '\n';
  return 1;
}

int run(const CommandLine& line) {
  auto loaded = platform::handpose::NetworkVision::load();
  if (!loaded) return exitStatus(loaded.error());
  platform::handpose::NetworkVision vision = std::move(loaded).value();
  if (line.overlay && line.pictures.size() != 1) {
    std::error_code error;
    std::filesystem::create_directories(*line.overlay, error);
    if (error) return exitStatus(platform::Error{line.overlay->string() + ": " + error.message()});
  }
  if (line.clip) return exitStatus(showClip(vision, line));
  int status = 0;
  for (const auto& picture : line.pictures) {
    status |= exitStatus(showPicture(vision, line, picture));
  }
  return status;
}

}  // namespace
}  // namespace tools

int main(int count, char** arguments) {
  const auto line = tools::parse({arguments + 1, arguments + count});
  if (line) return tools::run(line.value());
  std::cerr << line.error().description << "\n\n" << tools::kUsage;
  return 2;
}
