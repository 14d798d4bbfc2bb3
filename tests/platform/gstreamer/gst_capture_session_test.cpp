#include "platform/gstreamer/gst_capture_session.h"

#include <gst/base/gstpushsrc.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "platform/gstreamer/gst_camera_input.h"
#include "platform/std/thread_queue_factory.h"
#include "tests/platform/gstreamer/test_device.h"

namespace platform::gstreamer {
namespace {

// While it is set, the stubborn camera below does not let itself be closed.
std::atomic<bool> holdsOn = false;
std::atomic<bool> isBeingClosed = false;

// A camera that refuses to start and hangs when it is closed.
struct StubbornSource {
  GstPushSrc parent;
};
struct StubbornSourceClass {
  GstPushSrcClass parent;
};
G_DEFINE_TYPE(StubbornSource, stubborn_source, GST_TYPE_PUSH_SRC)

void stubborn_source_init(StubbornSource*) {}

void stubborn_source_class_init(StubbornSourceClass* type) {
  const Handle<GstCaps> any(gst_caps_new_any());
  gst_element_class_add_pad_template(
      GST_ELEMENT_CLASS(type), gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, any.get()));
  gst_element_class_set_static_metadata(GST_ELEMENT_CLASS(type), "Test", "Source/Video",
                                        "Refuses to start", "Test");
  GST_BASE_SRC_CLASS(type)->start = [](GstBaseSrc*) -> gboolean { return FALSE; };
  GST_ELEMENT_CLASS(type)->change_state = [](GstElement* element, GstStateChange change) {
    isBeingClosed = isBeingClosed || change == GST_STATE_CHANGE_READY_TO_NULL;
    while (isBeingClosed && holdsOn) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return GST_ELEMENT_CLASS(stubborn_source_parent_class)->change_state(element, change);
  };
}

TEST(GstCaptureSession, ACameraThatRefusesToStartAndCannotBeClosedHoldsNobodyUp) {
  gst_init(nullptr, nullptr);
  ASSERT_TRUE(
      gst_element_register(nullptr, "stubbornsource", GST_RANK_NONE, stubborn_source_get_type()));
  CameraCatalog catalog("none", "none");
  ThreadQueueFactory queues;
  const auto queue = queues.make("frames");
  std::atomic<int> failures = 0;
  GstCaptureSession session(catalog);
  CaptureEvents events;
  events.failedToStart = [&](const std::string&) { ++failures; };
  session.setEvents(std::move(events));
  session.addInput(std::make_unique<GstCameraInput>(
      testCamera("stubbornsource", "video/x-raw,format=YUY2,width=640,height=480")));
  session.addOutput(*queue, [](const auto&) {});
  holdsOn = true;

  const auto started = std::async(std::launch::async, [&] { session.start(); });

  EXPECT_EQ(started.wait_for(std::chrono::seconds(8)), std::future_status::ready);
  EXPECT_TRUE(isBeingClosed);
  holdsOn = false;
  started.wait();
  EXPECT_EQ(failures, 1);
  EXPECT_FALSE(session.isRunning());
}

}  // namespace
}  // namespace platform::gstreamer
