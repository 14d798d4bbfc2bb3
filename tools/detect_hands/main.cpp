#include <ctime>
#include <filesystem>
#include <iostream>
#include <utility>

#include "platform/hand_pose_request.h"
#include "platform/handpose/network_vision.h"
#include "platform/handpose/still_picture.h"
#include "tools/detect_hands/command_line.h"
#include "tools/detect_hands/hands_json.h"
#include "tools/detect_hands/overlay.h"
#include "tools/detect_hands/picture_file.h"

namespace tools {
namespace {

using platform::Result;
using platform::handpose::HandVision;
using platform::handpose::TrackedHand;

constexpr std::size_t kMostHands = platform::HandPoseRequest::maximumHandCount;

double processorMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
}

void convert(std::vector<TrackedHand>& hands, const CommandLine& line) {
  if (line.isPlain) return;
  for (TrackedHand& hand : hands) {
    hand.landmarks = platform::handpose::inReportedConvention(hand.landmarks);
  }
}

std::filesystem::path overlayPath(const CommandLine& line, const std::filesystem::path& picture) {
  if (line.pictures.size() == 1) return *line.overlay;
  return *line.overlay / picture.filename().replace_extension(".png");
}

Result<void> showPicture(HandVision& vision, const CommandLine& line,
                         const std::filesystem::path& path) {
  const auto picture = readPicture(path);
  if (!picture) return picture.error();
  const double start = processorMilliseconds();
  auto hands = platform::handpose::handsInStillPicture(vision, picture.value(), kMostHands);
  if (!hands) return hands.error();
  PictureHands found{.name = path.string(),
                     .time = {},
                     .width = picture.value().width(),
                     .height = picture.value().height(),
                     .milliseconds = processorMilliseconds() - start,
                     .hands = std::move(hands).value()};
  convert(found.hands, line);
  std::cout << jsonLine(found) << '\n';
  if (!line.overlay) return {};
  return writePicture(withHands(picture.value(), found.hands), overlayPath(line, path));
}

/// Tells what went wrong on the standard error stream.
int exitStatus(const Result<void>& result) {
  if (result) return 0;
  std::cerr << result.error().description << '\n';
  return 1;
}

int run(const CommandLine& line) {
  auto vision = platform::handpose::NetworkVision::load();
  if (!vision) return exitStatus(vision.error());
  platform::handpose::NetworkVision networks = std::move(vision).value();
  if (line.overlay && line.pictures.size() != 1) {
    std::filesystem::create_directories(*line.overlay);
  }
  int status = 0;
  for (const auto& picture : line.pictures) {
    status |= exitStatus(showPicture(networks, line, picture));
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
