#include "tools/detect_hands/command_line.h"

#include <string>

namespace tools {

platform::Result<CommandLine> parse(std::span<char*> arguments) {
  CommandLine line;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string argument = arguments[i];
    if (argument == "--plain") {
      line.isPlain = true;
    } else if (argument == "--video" || argument == "--overlay") {
      if (i + 1 == arguments.size()) return platform::Error{argument + " needs a path."};
      (argument == "--video" ? line.clip : line.overlay) = arguments[++i];
    } else if (argument.starts_with("--")) {
      return platform::Error{"There is no option " + argument + "."};
    } else {
      line.pictures.emplace_back(argument);
    }
  }
  if (line.pictures.empty() == !line.clip) {
    return platform::Error{"It takes either pictures or one clip."};
  }
  return line;
}

}  // namespace tools
