#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/hand_pose_request.h"
#include "platform/result.h"

namespace platform {

/// What a detector said about one frame.
struct HandLogEntry {
  double time = 0;  ///< The frame's, seconds.
  Result<std::vector<HandObservation>> answer = std::vector<HandObservation>{};
};

/// One line of a hand log, without its end: a JSON object with the members "time" and either
/// "hands" or "error". A hand has a "chirality" ("left", "unknown" or "right") and, under the
/// joint's name, [x, y, confidence] for each joint that was seen. Numbers are exact.
std::string toLine(const HandLogEntry& entry);
Result<HandLogEntry> fromLine(const std::string& line);

/// "left", "unknown" or "right".
std::string name(Chirality chirality);
/// As in the code: "thumbTip".
std::string name(HandJoint joint);

/// Reads a whole log, one entry a line. The error names the line.
Result<std::vector<HandLogEntry>> readHandLog(const std::filesystem::path& path);

}  // namespace platform
