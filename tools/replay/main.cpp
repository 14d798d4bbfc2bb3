#include <cstdio>
#include <span>

#include "tools/replay/options.h"
#include "tools/replay/replay.h"

int main(int argc, char** argv) {
  const auto options = replay::optionsFrom(
      std::span<const char* const>(argv, static_cast<std::size_t>(argc)).subspan(argc > 0 ? 1 : 0));
  if (!options) {
    std::fprintf(stderr, "%s\n%s", options.error().description.c_str(), replay::kUsage);
    return 2;
  }
  const auto summary = replay::run(options.value());
  if (!summary) {
    std::fprintf(stderr, "%s\n", summary.error().description.c_str());
    return 1;
  }
  if (const auto& problem = summary.value().problem) {
    std::fprintf(stderr, "%s\n", problem->c_str());
  }
  std::printf("%d frames, %d strokes\n", summary.value().frames, summary.value().strokes);
  return 0;
}
