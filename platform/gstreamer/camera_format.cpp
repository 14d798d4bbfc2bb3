#include "platform/gstreamer/camera_format.h"

#include <cmath>
#include <limits>

namespace platform::gstreamer {
namespace {

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr int kFramesPerSecond = 30;

bool isJpegEntry(const GstStructure* entry) {
  return gst_structure_has_name(entry, "image/jpeg");
}

// Entries in memory of a graphics card are not for us.
bool isReadable(const GstCaps* caps, guint index) {
  const GstStructure* entry = gst_caps_get_structure(caps, index);
  const GstCapsFeatures* features = gst_caps_get_features(caps, index);
  return (gst_structure_has_name(entry, "video/x-raw") || isJpegEntry(entry)) &&
         gst_caps_features_is_equal(features, GST_CAPS_FEATURES_MEMORY_SYSTEM_MEMORY);
}

Handle<GstCaps> entryOf(const GstCaps* caps, guint index) {
  return Handle<GstCaps>(gst_caps_copy_nth(caps, index));
}

Handle<GstCaps> limitedTo(const GstCaps* entry, int width, int height) {
  Handle<GstCaps> wanted(
      gst_caps_new_simple(gst_structure_get_name(gst_caps_get_structure(entry, 0)), "width",
                          G_TYPE_INT, width, "height", G_TYPE_INT, height, nullptr));
  return Handle<GstCaps>(gst_caps_intersect(const_cast<GstCaps*>(entry), wanted.get()));
}

Handle<GstCaps> settled(Handle<GstCaps> entry) {
  entry.reset(gst_caps_make_writable(entry.release()));
  GstStructure* fields = gst_caps_get_structure(entry.get(), 0);
  gst_structure_fixate_field_nearest_int(fields, "width", kWidth);
  gst_structure_fixate_field_nearest_int(fields, "height", kHeight);
  if (gst_structure_has_field(fields, "framerate")) {
    gst_structure_fixate_field_nearest_fraction(fields, "framerate", kFramesPerSecond, 1);
  }
  return entry;
}

double distanceFromRate(const GstCaps* format) {
  int numerator = 0;
  int denominator = 1;
  if (!gst_structure_get_fraction(gst_caps_get_structure(format, 0), "framerate", &numerator,
                                  &denominator)) {
    return kFramesPerSecond;
  }
  return std::abs(static_cast<double>(numerator) / denominator - kFramesPerSecond);
}

}  // namespace

bool CameraFormat::offers(const GstCaps* offered, int width, int height) {
  for (guint i = 0; i < gst_caps_get_size(offered); ++i) {
    if (isReadable(offered, i) &&
        !gst_caps_is_empty(limitedTo(entryOf(offered, i).get(), width, height).get())) {
      return true;
    }
  }
  return false;
}

Handle<GstCaps> CameraFormat::choose(const GstCaps* offered, bool highDefinition) {
  Handle<GstCaps> best;
  double bestDistance = std::numeric_limits<double>::infinity();
  for (guint i = 0; i < gst_caps_get_size(offered); ++i) {
    if (!isReadable(offered, i)) continue;
    Handle<GstCaps> entry = entryOf(offered, i);
    if (!highDefinition) return settled(std::move(entry));
    entry = limitedTo(entry.get(), kWidth, kHeight);
    if (gst_caps_is_empty(entry.get())) continue;
    entry = settled(std::move(entry));
    const double distance = distanceFromRate(entry.get());
    const bool simpler =
        best && distance == bestDistance && isJpeg(best.get()) && !isJpeg(entry.get());
    if (distance < bestDistance || simpler) {
      best = std::move(entry);
      bestDistance = distance;
    }
  }
  return best;
}

bool CameraFormat::isJpeg(const GstCaps* format) {
  return isJpegEntry(gst_caps_get_structure(format, 0));
}

}  // namespace platform::gstreamer
