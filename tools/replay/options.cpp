#include "tools/replay/options.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace replay {
namespace {

using PathOption = std::pair<std::string_view, std::optional<std::filesystem::path> Options::*>;

constexpr std::array kPathOptions{
    PathOption{"--picture", &Options::picture}, PathOption{"--video", &Options::video},
    PathOption{"--trace", &Options::trace}, PathOption{"--hands", &Options::hands},
    PathOption{"--record-hands", &Options::recordHands}};

}  // namespace

const char* const kUsage =
    "usage: replay CLIP [--picture P.png] [--video V.mp4] [--trace T.jsonl]\n"
    "              [--hands H.jsonl] [--record-hands H.jsonl] [--realtime]\n"
    "Lets the hands in CLIP, a video or a folder of numbered pictures, paint.\n";

platform::Result<Options> optionsFrom(std::span<const char* const> arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--realtime") {
      options.realtime = true;
      continue;
    }
    const auto* const option = std::ranges::find(kPathOptions, argument, &PathOption::first);
    if (option != kPathOptions.end()) {
      if (++i == arguments.size()) return platform::Error{std::string(argument) + " needs a path."};
      options.*(option->second) = arguments[i];
    } else if (argument.starts_with("-") || !options.clip.empty()) {
      return platform::Error{std::string(argument) + " is not understood."};
    } else {
      options.clip = argument;
    }
  }
  if (options.clip.empty()) return platform::Error{"No clip is given."};
  return options;
}

}  // namespace replay
