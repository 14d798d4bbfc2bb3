#include "platform/gstreamer/camera_pipeline.h"

#include <gst/base/gstbasesrc.h>
#include <gst/base/gstbasetransform.h>

#include <utility>
#include <vector>

#include "platform/gstreamer/camera_format.h"
#include "platform/gstreamer/sample_frame.h"

namespace platform::gstreamer {
namespace {

constexpr double kNanosecondsPerSecond = 1e9;

// What GStreamer says about an error, with the sentence meant for developers where it adds one.
std::string describe(GstMessage* message) {
  GError* error = nullptr;
  gchar* debug = nullptr;
  gst_message_parse_error(message, &error, &debug);
  const Handle<GError> ownedError(error);
  const Handle<gchar> ownedDebug(debug);
  return debug ? std::string(error->message) + "\n" + debug : std::string(error->message);
}

std::optional<std::string> nextFailure(GstElement* pipeline) {
  const Handle<GstBus> bus(gst_element_get_bus(pipeline));
  const Handle<GstMessage> message(gst_bus_pop_filtered(
      bus.get(), static_cast<GstMessageType>(GST_MESSAGE_ERROR | GST_MESSAGE_EOS)));
  if (!message) return std::nullopt;
  if (GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_EOS) return "The camera ended its stream.";
  return describe(message.get());
}

Error failureOr(GstElement* pipeline, const char* otherwise) {
  return Error{nextFailure(pipeline).value_or(otherwise)};
}

Handle<GstElement> newPipeline() {
  return Handle<GstElement>(GST_ELEMENT(gst_object_ref_sink(gst_pipeline_new(nullptr))));
}

}  // namespace

Result<void> CameraPipeline::probe(const Camera& camera) {
  const Handle<GstElement> pipeline = newPipeline();
  GstElement* source = camera.makeSource();
  if (!source) return Error{"A GStreamer plug-in for this kind of camera is missing."};
  gst_bin_add(GST_BIN(pipeline.get()), source);
  const auto change = gst_element_set_state(pipeline.get(), GST_STATE_READY);
  Result<void> result;
  if (change == GST_STATE_CHANGE_FAILURE) {
    result = failureOr(pipeline.get(), "The device refused to open.");
  }
  gst_element_set_state(pipeline.get(), GST_STATE_NULL);
  return result;
}

Result<std::shared_ptr<CameraPipeline>> CameraPipeline::make(
    const Camera& camera, const GstCaps* format, std::shared_ptr<FrameDelivery> delivery) {
  std::shared_ptr<CameraPipeline> pipeline(new CameraPipeline(std::move(delivery)));
  if (const auto built = pipeline->build(camera, format); !built) return built.error();
  return pipeline;
}

CameraPipeline::CameraPipeline(std::shared_ptr<FrameDelivery> delivery)
    : pipeline_(newPipeline()), clock_(gst_system_clock_obtain()), delivery_(std::move(delivery)) {
  gst_pipeline_use_clock(GST_PIPELINE(pipeline_.get()), clock_.get());
}

CameraPipeline::~CameraPipeline() {
  silence();  // First, because the thread that has to stop waits for the handler of its frame.
  gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
  arrived_.load();
  taken_.load();
}

// Not by an event, which would wait for the change of state that hangs.
void CameraPipeline::interruptPlay() {
  if (!GST_IS_BASE_SRC(source_)) return;
  GstBaseSrc* source = GST_BASE_SRC(source_);
  if (const auto unlock = GST_BASE_SRC_GET_CLASS(source)->unlock) unlock(source);
}

std::optional<std::string> CameraPipeline::failure() {
  return nextFailure(pipeline_.get());
}

Result<void> CameraPipeline::build(const Camera& camera, const GstCaps* format) {
  GstElement* source = camera.makeSource();
  if (!source) return Error{"A GStreamer plug-in for this kind of camera is missing."};
  std::vector<GstElement*> chain{source};
  gst_bin_add(GST_BIN(pipeline_.get()), source);

  std::vector<const char*> names{"capsfilter", "queue"};
  if (CameraFormat::isJpeg(format)) names.push_back("jpegdec");
  names.insert(names.end(), {"videoconvert", "appsink"});
  for (const char* name : names) {
    GstElement* element = gst_element_factory_make(name, name);
    if (!element) return Error{"The GStreamer element \"" + std::string(name) + "\" is missing."};
    gst_bin_add(GST_BIN(pipeline_.get()), element);
    chain.push_back(element);
  }
  for (std::size_t i = 1; i < chain.size(); ++i) {
    if (!gst_element_link(chain[i - 1], chain[i])) {
      return Error{"The camera's pictures cannot be converted."};
    }
  }

  g_object_set(chain[1], "caps", format, nullptr);
  // Holds one frame and throws the older one away: the newest wins.
  gst_util_set_object_arg(G_OBJECT(chain[2]), "leaky", "downstream");
  g_object_set(chain[2], "max-size-buffers", 1u, "max-size-bytes", 0u, "max-size-time",
               G_GUINT64_CONSTANT(0), nullptr);
  source_ = source;
  converter_ = chain[chain.size() - 2];
  connectSink(GST_APP_SINK(chain.back()));

  countArrivals(source);
  return {};
}

void CameraPipeline::countArrivals(GstElement* source) {
  const Handle<GstPad> pad(gst_element_get_static_pad(source, "src"));
  const auto count = [](GstPad*, GstPadProbeInfo*, gpointer self) {
    ++static_cast<CameraPipeline*>(self)->arrived_;
    return GST_PAD_PROBE_OK;
  };
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, count, this, nullptr);
}

void CameraPipeline::connectSink(GstAppSink* sink) {
  const Handle<GstCaps> bgra(
      gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "BGRA", nullptr));
  g_object_set(sink, "caps", bgra.get(), "sync", FALSE, "enable-last-sample", FALSE, "max-buffers",
               1u, nullptr);
  GstAppSinkCallbacks callbacks{};
  callbacks.new_sample = [](GstAppSink* from, gpointer self) {
    return static_cast<CameraPipeline*>(self)->takeSample(from);
  };
  gst_app_sink_set_callbacks(sink, &callbacks, this, nullptr);
}

Result<void> CameraPipeline::play() {
  taken_ = 0;
  if (gst_element_set_state(pipeline_.get(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE) {
    return failureOr(pipeline_.get(), "The device refused to start.");
  }
  return {};
}

// On the thread that converts the frames.
GstFlowReturn CameraPipeline::takeSample(GstAppSink* sink) {
  taken_.load();
  Handle<GstSample> sample(gst_app_sink_pull_sample(sink));
  if (!sample) return GST_FLOW_EOS;
  const GstBuffer* buffer = gst_sample_get_buffer(sample.get());
  std::optional<pixels::PixelBuffer> frame;
  if (buffer) {
    const double time = captureTime(buffer);
    const bool unconverted = gst_base_transform_is_passthrough(GST_BASE_TRANSFORM(converter_));
    frame =
        frameOf(std::move(sample), unconverted ? SampleMemory::borrowed : SampleMemory::ours, time);
  }
  const bool delivered = delivery_->deliver(std::move(frame));
  ++taken_;
  return delivered ? GST_FLOW_OK : GST_FLOW_FLUSHING;
}

// The system clock of GStreamer is the machine's monotonic clock.
double CameraPipeline::captureTime(const GstBuffer* buffer) const {
  const GstClockTime running = GST_BUFFER_PTS(buffer);
  const GstClockTime time = GST_CLOCK_TIME_IS_VALID(running)
                                ? running + gst_element_get_base_time(pipeline_.get())
                                : gst_clock_get_time(clock_.get());
  return static_cast<double>(time) / kNanosecondsPerSecond;
}

}  // namespace platform::gstreamer
