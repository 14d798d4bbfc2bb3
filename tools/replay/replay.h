#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "model/app_model.h"
#include "platform/hand_pose_request.h"
#include "platform/result.h"
#include "tools/replay/frame_source.h"
#include "tools/replay/machine.h"
#include "tools/replay/options.h"
#include "tools/replay/pace.h"
#include "tools/replay/trace.h"
#include "tools/replay/watched_hand_pose_request.h"

namespace replay {

/// What came of a replay.
struct Summary {
  int frames = 0;
  int strokes = 0;
  std::optional<std::string> problem;  ///< What the window's error banner would say.
};

/// Lets a clip paint: its frames go through the program's own model as those of a camera would,
/// with the clip's times as the machine's. The same frames and hands give the same painting.
class Replay {
 public:
  /// `detector` outlives the replay.
  explicit Replay(platform::HandPoseRequest& detector);

  /// Goes through all frames. `trace`: where to write a line for each, or null.
  platform::Result<Summary> play(FrameSource& frames, Pace& pace, std::ostream* trace);

  /// Before play(): the canvas is to be recorded in the clip's time, from the first frame, which
  /// gives the video its shape, to a moment after the last.
  void recordTo(const std::filesystem::path& path) { video_ = path; }
  /// After play(): finishes that recording.
  platform::Result<void> finishVideo();

  /// Saves what the canvas shows, 1920 pixels wide.
  platform::Result<void> savePicture(const std::filesystem::path& path);

  const model::AppModel& model() const { return model_; }

 private:
  void show(const pixels::PixelBuffer& frame);
  platform::Result<void> startVideo(const std::filesystem::path& path);
  void describe(TraceLine& line);
  /// What the model has reported since it was asked last.
  platform::Result<void> takeProblem();

  WatchedHandPoseRequest watched_;
  Machine machine_;
  model::AppModel model_;
  std::unique_ptr<platform::RepeatingTimer> ticks_;
  std::optional<std::filesystem::path> video_;  // Until it has begun.
};

/// Does what the command line asks for.
platform::Result<Summary> run(const Options& options);

}  // namespace replay
