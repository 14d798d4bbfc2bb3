#include "recording/recorder_error.h"

#include <string>

namespace recording {

std::string_view errorDescription(RecorderError error) {
  switch (error) {
    case RecorderError::cannotAddInput:
      return "The video writer did not accept the video settings.";
    case RecorderError::cannotStart:
      return "The video writer could not start.";
    case RecorderError::notRecording:
      return "No recording is running.";
  }
  return {};
}

platform::Error toError(RecorderError error) {
  return {std::string(errorDescription(error))};
}

}  // namespace recording
