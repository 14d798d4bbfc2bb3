#include "tools/replay/machine.h"

namespace replay {

platform::Services Machine::services() {
  return {.clock = loop,
          .mainQueue = loop,
          .timers = loop,
          .savePanel = savePanel,
          .pictureEncoder = pictureEncoder_,
          .files = files_,
          .videoWriters = videoWriters_,
          .calendar = calendar_,
          .folders = desktop_,
          .handPoseRequest = detector_,
          .queues = loop,
          .captureService = camera,
          .cameraPermission = permission_,
          .settingsPage = desktop_,
          .activation = desktop_};
}

}  // namespace replay
