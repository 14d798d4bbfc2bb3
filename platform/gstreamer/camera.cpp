#include "platform/gstreamer/camera.h"

namespace platform::gstreamer {

std::string Camera::displayName() const {
  const Handle<gchar> name(gst_device_get_display_name(device_.get()));
  return name.get();
}

Handle<GstCaps> Camera::formats() const {
  return Handle<GstCaps>(gst_device_get_caps(device_.get()));
}

GstElement* Camera::makeSource() const {
  GstElement* source = gst_device_create_element(device_.get(), nullptr);
  if (!source) return nullptr;
  GObjectClass* properties = G_OBJECT_GET_CLASS(source);
  if (g_object_class_find_property(properties, "stream-properties")) {
    // PipeWire's frames carry no time of their own, their memory goes with the camera even while
    // somebody reads it, and a stream whose camera went must not be handed another one behind our
    // back.
    const Handle<GstStructure> stream(gst_structure_new("properties", "media.role", G_TYPE_STRING,
                                                        "Camera", "node.dont-reconnect",
                                                        G_TYPE_STRING, "true", nullptr));
    g_object_set(source, "do-timestamp", TRUE, "always-copy", TRUE, "client-name", "Wavescribe",
                 "stream-properties", stream.get(), nullptr);
  }
  return source;
}

}  // namespace platform::gstreamer
