#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "pixels/size.h"
#include "pixels/surface.h"
#include "platform/clock.h"
#include "platform/main_queue.h"
#include "platform/media_time.h"
#include "platform/result.h"
#include "platform/timer_factory.h"
#include "platform/video_writer.h"

namespace recording {

/// Draws one frame of `size` pixels into the context, from its top left corner, over black.
using RenderFrame = std::function<void(const pixels::DrawingContext& context, pixels::Size size)>;

/// Grabs frames at a fixed rate and gives them to a video writer, each with the time at which it
/// was grabbed: a frame that is late or left out never makes the video run slow.
///
/// Recording from a successful `start` until `stop`, also after a failure in between. The end of a
/// recorder closes the file of a running recording with all its frames, and waits for a stopped one
/// to be finished. Main thread only.
class Recorder {
 public:
  /// The finished file, or why it could not be finished.
  using StopCompletion = std::function<void(const platform::Result<std::filesystem::path>&)>;

  /// All of them outlive the recorder.
  Recorder(const platform::Clock& clock, platform::TimerFactory& timers,
           platform::MainQueue& mainQueue, platform::VideoWriterFactory& writers);
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  /// Hears once, with the technical reason, when the writer fails while frames are grabbed. No
  /// frames follow, but the recording is still to be stopped.
  void setOnFailure(std::function<void(const std::string& message)> onFailure);

  /// Records to `path`, `fps` frames a second of `width` x `height` pixels, calling `render` on the
  /// main thread for each. After a failure the recorder is as it was. Not to be called while a
  /// recording runs.
  platform::Result<void> start(const std::filesystem::path& path, int width, int height, double fps,
                               RenderFrame render);

  /// Grabs no more frames and finishes the file. Calls `completion` on the main thread: within this
  /// call when nothing runs or the writer has failed, else later. Never, when the recorder has
  /// ended by then.
  void stop(StopCompletion completion);

  /// Waits until the files of stopped recordings are finished. Their completions are not called.
  void waitUntilFinished();

  /// Whether the file of a stopped recording is still being finished.
  bool isFinishing() const { return !finishing_.empty(); }

 private:
  void captureFrame();
  void reportFailure();
  void ended(platform::VideoWriter& writer, const std::filesystem::path& path,
             const StopCompletion& completion);

  const platform::Clock& clock_;
  platform::TimerFactory& timers_;
  platform::MainQueue& mainQueue_;
  platform::VideoWriterFactory& writers_;
  std::function<void(const std::string&)> onFailure_;

  std::unique_ptr<platform::VideoWriter> writer_;  // Set while recording.
  RenderFrame renderFrame_;
  double startUptime_ = 0;
  platform::MediaTime lastTime_;  // Of the last frame that was appended.
  bool hasFrames_ = false;
  int width_ = 0;
  int height_ = 0;
  std::filesystem::path path_;
  std::unique_ptr<platform::RepeatingTimer> timer_;

  std::vector<std::unique_ptr<platform::VideoWriter>> finishing_;
  // What work on the main queue still finds while somebody wants to hear of it.
  std::shared_ptr<Recorder*> self_;
};

}  // namespace recording
