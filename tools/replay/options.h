#pragma once

#include <filesystem>
#include <optional>
#include <span>

#include "platform/result.h"

namespace replay {

/// What a person asks for on the command line.
struct Options {
  std::filesystem::path clip;  ///< A video, or a folder of numbered pictures.
  std::optional<std::filesystem::path> picture = std::nullopt;
  std::optional<std::filesystem::path> video = std::nullopt;
  std::optional<std::filesystem::path> trace = std::nullopt;
  std::optional<std::filesystem::path> hands = std::nullopt;  ///< Seen instead of by the networks.
  std::optional<std::filesystem::path> recordHands =
      std::nullopt;  ///< Where to write down what is seen.
  bool realtime = false;
};

extern const char* const kUsage;

/// `arguments`: without the program's name. The error says what is wrong with them.
platform::Result<Options> optionsFrom(std::span<const char* const> arguments);

}  // namespace replay
