#include "platform/gstreamer/clip_reader.h"

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <string>
#include <utility>

#include "platform/gstreamer/sample_frame.h"

namespace platform::gstreamer {
namespace {

constexpr const char* kPipeline =
    "filesrc name=file ! decodebin ! videoconvert ! video/x-raw,format=BGRA "
    "! appsink name=frames sync=false max-buffers=2";

/// What an element said when it failed, if one did.
std::optional<Error> failureOn(GstElement* pipeline) {
  const Handle<GstBus> bus(gst_element_get_bus(pipeline));
  const Handle<GstMessage> message(gst_bus_pop_filtered(bus.get(), GST_MESSAGE_ERROR));
  if (!message) return std::nullopt;
  GError* said = nullptr;
  gst_message_parse_error(message.get(), &said, nullptr);
  const Handle<GError> error(said);
  return Error{error->message};
}

}  // namespace

Result<std::unique_ptr<ClipReader>> ClipReader::open(const std::filesystem::path& path) {
  gst_init(nullptr, nullptr);
  GError* said = nullptr;
  GstElement* made = gst_parse_launch(kPipeline, &said);
  const Handle<GError> error(said);
  Handle<GstElement> pipeline(made);
  if (!pipeline || error) return Error{error ? error->message : "GStreamer is not complete."};

  const Handle<GstElement> file(gst_bin_get_by_name(GST_BIN(pipeline.get()), "file"));
  g_object_set(file.get(), "location", path.c_str(), nullptr);
  Handle<GstElement> sink(gst_bin_get_by_name(GST_BIN(pipeline.get()), "frames"));
  std::unique_ptr<ClipReader> reader(new ClipReader(std::move(pipeline), std::move(sink)));

  // Waits until the first frame is there or the reason why there is none.
  GstElement* const running = reader->pipeline_.get();
  gst_element_set_state(running, GST_STATE_PLAYING);
  const GstStateChangeReturn started =
      gst_element_get_state(running, nullptr, nullptr, GST_CLOCK_TIME_NONE);
  if (started == GST_STATE_CHANGE_FAILURE) {
    return failureOn(running).value_or(Error{path.string() + " cannot be read."});
  }
  return reader;
}

ClipReader::ClipReader(Handle<GstElement> pipeline, Handle<GstElement> sink)
    : pipeline_(std::move(pipeline)), sink_(std::move(sink)) {}

ClipReader::~ClipReader() {
  gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
}

Result<std::optional<pixels::PixelBuffer>> ClipReader::next() {
  Handle<GstSample> sample(gst_app_sink_pull_sample(GST_APP_SINK(sink_.get())));
  if (!sample) {
    if (std::optional<Error> failure = failureOn(pipeline_.get())) return *std::move(failure);
    return std::optional<pixels::PixelBuffer>{};
  }
  const GstClockTime stamp = GST_BUFFER_PTS(gst_sample_get_buffer(sample.get()));
  const GstClockTime fromStart =
      gst_segment_to_stream_time(gst_sample_get_segment(sample.get()), GST_FORMAT_TIME, stamp);
  const double time = GST_CLOCK_TIME_IS_VALID(fromStart)
                          ? static_cast<double>(fromStart) / static_cast<double>(GST_SECOND)
                          : 0.0;
  return std::optional(frameOf(std::move(sample), SampleMemory::ours, time));
}

}  // namespace platform::gstreamer
