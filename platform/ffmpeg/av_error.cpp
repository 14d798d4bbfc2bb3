#include "platform/ffmpeg/av_error.h"

extern "C" {
#include <libavutil/error.h>
}

#include <system_error>

namespace platform::ffmpeg {

Error avError(int code) {
  char text[AV_ERROR_MAX_STRING_SIZE] = "";
  av_strerror(code, text, sizeof text);
  return {text};
}

Error fileError(const std::filesystem::path& path, int errorNumber) {
  return {path.string() + ": " + std::generic_category().message(errorNumber)};
}

}  // namespace platform::ffmpeg
