#pragma once

#include <gst/gst.h>

#include <memory>

namespace platform::gstreamer {

struct Unref {
  void operator()(GstObject* object) const { gst_object_unref(object); }
  void operator()(GstElement* element) const { gst_object_unref(element); }
  void operator()(GstBus* bus) const { gst_object_unref(bus); }
  void operator()(GstDevice* device) const { gst_object_unref(device); }
  void operator()(GstDeviceProvider* provider) const { gst_object_unref(provider); }
  void operator()(GstPad* pad) const { gst_object_unref(pad); }
  void operator()(GstClock* clock) const { gst_object_unref(clock); }
  void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
  void operator()(GstSample* sample) const { gst_sample_unref(sample); }
  void operator()(GstMessage* message) const { gst_message_unref(message); }
  void operator()(GstStructure* structure) const { gst_structure_free(structure); }
  void operator()(GError* error) const { g_error_free(error); }
  void operator()(gchar* text) const { g_free(text); }
};

/// Owns one reference to a GStreamer object.
template <class T>
using Handle = std::unique_ptr<T, Unref>;

}  // namespace platform::gstreamer
