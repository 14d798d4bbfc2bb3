#include "tests/platform/gstreamer/test_device.h"

namespace platform::gstreamer {
namespace {

struct TestDevice {
  GstDevice parent;
};
struct TestDeviceClass {
  GstDeviceClass parent;
};
G_DEFINE_TYPE(TestDevice, test_device, GST_TYPE_DEVICE)

void test_device_init(TestDevice*) {}

void test_device_class_init(TestDeviceClass* type) {
  GST_DEVICE_CLASS(type)->create_element = [](GstDevice* device, const gchar*) {
    const Handle<gchar> source(gst_device_get_display_name(device));
    return gst_parse_bin_from_description_full(source.get(), TRUE, nullptr,
                                               GST_PARSE_FLAG_FATAL_ERRORS, nullptr);
  };
}

void set(GstStructure* properties, const char* name, const std::string& value) {
  if (!value.empty()) {
    gst_structure_set(properties, name, G_TYPE_STRING, value.c_str(), nullptr);
  }
}

}  // namespace

GstDevice* newTestDevice(const Introduction& introduction, const char* formats) {
  const Handle<GstCaps> caps(gst_caps_from_string(formats));
  const Handle<GstStructure> properties(gst_structure_new_empty("properties"));
  set(properties.get(), "device.path", introduction.path);
  set(properties.get(), "media.role", introduction.role);
  set(properties.get(), "priority.session", introduction.priority);
  return GST_DEVICE(g_object_new(test_device_get_type(), "display-name", introduction.name.c_str(),
                                 "device-class", "Video/Source", "caps", caps.get(), "properties",
                                 properties.get(), nullptr));
}

Camera testCamera(const std::string& source, const char* formats) {
  return Camera(
      Handle<GstDevice>(GST_DEVICE(gst_object_ref_sink(newTestDevice({.name = source}, formats)))));
}

}  // namespace platform::gstreamer
