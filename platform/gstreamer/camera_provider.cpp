#include "platform/gstreamer/camera_provider.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace platform::gstreamer {
namespace {

std::string property(const GstStructure* properties, const char* name) {
  const GValue* value = gst_structure_get_value(properties, name);
  if (!value) return {};
  if (G_VALUE_HOLDS_STRING(value)) {
    const char* text = g_value_get_string(value);
    return text ? text : "";
  }
  const Handle<gchar> text(gst_value_serialize(value));
  return text ? text.get() : "";
}

struct Candidate {
  Handle<GstDevice> device;
  std::string role = {};
  int priority = 0;
  std::string path = {};
};

// Takes the reference.
Candidate candidateOf(GstDevice* device) {
  Candidate candidate{.device = Handle<GstDevice>(device)};
  const Handle<GstStructure> properties(gst_device_get_properties(device));
  if (!properties) return candidate;
  candidate.role = property(properties.get(), "media.role");
  candidate.priority = std::atoi(property(properties.get(), "priority.session").c_str());
  candidate.path = property(properties.get(), "device.path");
  return candidate;
}

bool isCamera(const Candidate& candidate) {
  return gst_device_has_classes(candidate.device.get(), "Video/Source") &&
         (candidate.role.empty() || candidate.role == "Camera");
}

// "/dev/video2" comes before "/dev/video10".
bool comesFirst(const Candidate& a, const Candidate& b) {
  if (a.priority != b.priority) return a.priority > b.priority;
  if (a.path.size() != b.path.size()) return a.path.size() < b.path.size();
  return a.path < b.path;
}

std::vector<Candidate> camerasOf(GstDeviceProvider* provider) {
  GList* devices = gst_device_provider_get_devices(provider);
  std::vector<Candidate> cameras;
  for (GList* item = devices; item; item = item->next) {
    Candidate candidate = candidateOf(GST_DEVICE(item->data));
    if (isCamera(candidate)) cameras.push_back(std::move(candidate));
  }
  g_list_free(devices);
  return cameras;
}

// One of our own instead of the one that GStreamer shares, which cannot be started afresh.
GstDeviceProvider* makeProvider(const char* factory) {
  GstDeviceProviderFactory* found = gst_device_provider_factory_find(factory);
  if (!found) return nullptr;
  GstPluginFeature* loaded = gst_plugin_feature_load(GST_PLUGIN_FEATURE(found));
  gst_object_unref(found);
  if (!loaded) return nullptr;
  const GType type =
      gst_device_provider_factory_get_device_provider_type(GST_DEVICE_PROVIDER_FACTORY(loaded));
  gst_object_unref(loaded);
  return GST_DEVICE_PROVIDER(gst_object_ref_sink(g_object_new(type, nullptr)));
}

}  // namespace

CameraProvider::CameraProvider(const char* factory) : provider_(makeProvider(factory)) {
  if (!provider_) return;
  // Its list is read when it is needed; nobody reads its messages.
  const Handle<GstBus> bus(gst_device_provider_get_bus(provider_.get()));
  gst_bus_set_flushing(bus.get(), TRUE);
  if (!gst_device_provider_start(provider_.get())) provider_.reset();
}

CameraProvider::~CameraProvider() {
  if (provider_) gst_device_provider_stop(provider_.get());
}

std::optional<Camera> CameraProvider::firstCamera() const {
  if (!provider_) return std::nullopt;
  auto cameras = camerasOf(provider_.get());
  const auto first = std::min_element(cameras.begin(), cameras.end(), comesFirst);
  if (first == cameras.end()) return std::nullopt;
  return Camera(std::move(first->device));
}

bool CameraProvider::lists(const Camera& camera) const {
  if (!provider_) return false;
  const auto cameras = camerasOf(provider_.get());
  return std::any_of(cameras.begin(), cameras.end(),
                     [&](const Candidate& listed) { return camera.is(listed.device.get()); });
}

void CameraProvider::abandon() {
  static_cast<void>(provider_.release());
}

}  // namespace platform::gstreamer
