#pragma once

#include <string_view>

#include "platform/result.h"

namespace recording {

/// What can go wrong in the recorder itself, beside the errors of the video writer.
enum class RecorderError {
  cannotAddInput,  ///< The writer refused the video's settings.
  cannotStart,     ///< The writer failed to start or to finish and does not say why.
  notRecording,    ///< There is nothing to stop.
};

/// The text for the person.
std::string_view errorDescription(RecorderError error);

platform::Error toError(RecorderError error);

}  // namespace recording
