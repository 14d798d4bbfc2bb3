#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <vector>

#include "platform/result.h"

namespace tools {

inline constexpr const char* kUsage =
    "usage: detect_hands [--plain] [--overlay OUT] IMAGE...\n"
    "       detect_hands [--plain] [--overlay OUT] --video CLIP\n"
    "\n"
    "Prints one line of JSON for each picture, or for each frame of the clip: the hands in it,\n"
    "best first, with 21 joints each (x to the right, y upwards, 0 to 1, and a confidence).\n"
    "In a clip hands are followed from frame to frame, and the same hand keeps its id.\n"
    "  --plain        wrist and middle MCP where the networks see them, not where the gesture\n"
    "                 rules expect them\n"
    "  --overlay OUT  draws the joints too: into the picture OUT, or for several pictures and\n"
    "                 for a clip into the folder OUT\n";

/// What detect_hands is asked to do.
struct CommandLine {
  std::vector<std::filesystem::path> pictures;  ///< Empty exactly if there is a clip.
  std::optional<std::filesystem::path> clip;
  std::optional<std::filesystem::path> overlay;
  bool isPlain = false;
};

/// `arguments`: without the program's name.
platform::Result<CommandLine> parse(std::span<char*> arguments);

}  // namespace tools
