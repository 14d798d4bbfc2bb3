#include "app/machine.h"

namespace app {

platform::Services Machine::services() {
  return {.clock = clock_,
          .mainQueue = mainQueue_,
          .timers = timers,
          .savePanel = savePanel,
          .pictureEncoder = pictureEncoder_,
          .files = files_,
          .videoWriters = videoWriters_,
          .calendar = calendar_,
          .folders = folders_,
          .handPoseRequest = handPoseRequest_,
          .queues = queues_,
          .captureService = captureService_,
          .cameraPermission = cameraPermission_,
          .settingsPage = settingsPage_,
          .activation = activation_};
}

}  // namespace app
