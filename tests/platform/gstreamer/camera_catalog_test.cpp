#include "platform/gstreamer/camera_catalog.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/platform/gstreamer/test_device.h"
#include "tests/support/temporary_folder.h"

namespace platform::gstreamer {
namespace {

/// What the next of each kind of provider will list.
struct Listed {
  std::vector<Introduction> pipeWire;
  std::vector<Introduction> devices;
};
Listed listed;

struct TestProvider {
  GstDeviceProvider parent;
};
struct TestProviderClass {
  GstDeviceProviderClass parent;
};
using TestPipeWire = TestProvider;
using TestPipeWireClass = TestProviderClass;
using TestDevices = TestProvider;
using TestDevicesClass = TestProviderClass;
G_DEFINE_TYPE(TestPipeWire, test_pipe_wire, GST_TYPE_DEVICE_PROVIDER)
G_DEFINE_TYPE(TestDevices, test_devices, GST_TYPE_DEVICE_PROVIDER)

gboolean list(GstDeviceProvider* provider, const std::vector<Introduction>& cameras) {
  for (const Introduction& camera : cameras) {
    gst_device_provider_device_add(provider, newTestDevice(camera, "video/x-raw"));
  }
  return TRUE;
}

using Start = gboolean(GstDeviceProvider*);

void describe(gpointer type, Start* start) {
  gst_device_provider_class_set_static_metadata(GST_DEVICE_PROVIDER_CLASS(type), "Test",
                                                "Source/Video", "Lists what a test says", "Test");
  GST_DEVICE_PROVIDER_CLASS(type)->start = start;
}

void test_pipe_wire_init(TestPipeWire*) {}
void test_pipe_wire_class_init(TestPipeWireClass* type) {
  describe(type, [](GstDeviceProvider* provider) { return list(provider, listed.pipeWire); });
}
void test_devices_init(TestDevices*) {}
void test_devices_class_init(TestDevicesClass* type) {
  describe(type, [](GstDeviceProvider* provider) { return list(provider, listed.devices); });
}

/// Takes connections as PipeWire's daemon does, and never says anything, which is all that a
/// catalogue needs of it.
class SilentDaemon {
 public:
  explicit SilentDaemon(const std::string& path) : socket_(::socket(AF_UNIX, SOCK_STREAM, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(socket_, 5), 0);
  }
  ~SilentDaemon() { ::close(socket_); }
  SilentDaemon(const SilentDaemon&) = delete;
  SilentDaemon& operator=(const SilentDaemon&) = delete;

 private:
  const int socket_;
};

class CameraCatalogTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    gst_init(nullptr, nullptr);
    ASSERT_TRUE(gst_device_provider_register(nullptr, "testpipewire", GST_RANK_NONE,
                                             test_pipe_wire_get_type()));
    ASSERT_TRUE(gst_device_provider_register(nullptr, "testdevices", GST_RANK_NONE,
                                             test_devices_get_type()));
  }

  CameraCatalogTest() {
    listed = {};
    setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
    unsetenv("PIPEWIRE_RUNTIME_DIR");
    unsetenv("PIPEWIRE_REMOTE");
  }

  // The daemon first, because a provider whose daemon lives is never given back.
  ~CameraCatalogTest() override { endDaemon(); }

  void startDaemon() { daemon = std::make_unique<SilentDaemon>(folder / "pipewire-0"); }
  void endDaemon() {
    daemon.reset();
    std::filesystem::remove(folder / "pipewire-0");
  }

  std::string defaultName() {
    const auto camera = catalog.defaultCamera();
    return camera ? camera->displayName() : "none";
  }

  support::TemporaryFolder folder;
  std::unique_ptr<SilentDaemon> daemon;
  CameraCatalog catalog{"testpipewire", "testdevices"};
};

TEST_F(CameraCatalogTest, WithoutAnyCameraThereIsNoDefault) {
  EXPECT_EQ(defaultName(), "none");
}

TEST_F(CameraCatalogTest, WithoutPipeWireTheFirstVideoDeviceIsTheDefault) {
  listed.devices = {{.name = "tenth", .path = "/dev/video10"},
                    {.name = "second", .path = "/dev/video2"},
                    {.name = "third", .path = "/dev/video3"}};

  EXPECT_EQ(defaultName(), "second");
}

TEST_F(CameraCatalogTest, ACameraOfPipeWireComesBeforeTheVideoDevices) {
  listed.pipeWire = {{.name = "shared", .role = "Camera"}};
  listed.devices = {{.name = "device", .path = "/dev/video0"}};
  startDaemon();

  EXPECT_EQ(defaultName(), "shared");
}

TEST_F(CameraCatalogTest, WhenPipeWireHasNoCameraTheVideoDevicesCount) {
  listed.pipeWire = {{.name = "screen", .role = "Screen"}};
  listed.devices = {{.name = "device", .path = "/dev/video0"}};
  startDaemon();

  EXPECT_EQ(defaultName(), "device");
}

TEST_F(CameraCatalogTest, OfPipeWiresCamerasTheHighestPriorityIsTheDefault) {
  listed.pipeWire = {{.name = "built in", .path = "/dev/video0", .priority = "700"},
                     {.name = "preferred", .path = "/dev/video4", .priority = "1000"}};
  startDaemon();

  EXPECT_EQ(defaultName(), "preferred");
}

TEST_F(CameraCatalogTest, WhenPipeWireEndsTheVideoDevicesCountUntilItIsBack) {
  listed.pipeWire = {{.name = "shared", .role = "Camera"}};
  listed.devices = {{.name = "device", .path = "/dev/video0"}};
  startDaemon();
  ASSERT_EQ(defaultName(), "shared");

  endDaemon();
  EXPECT_EQ(defaultName(), "device");

  startDaemon();
  for (int i = 0; i < 100 && defaultName() != "shared"; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_EQ(defaultName(), "shared");
}

TEST_F(CameraCatalogTest, ListsWhatIsConnectedAndNothingElse) {
  listed.devices = {{.name = "device", .path = "/dev/video0"}};
  const auto camera = catalog.defaultCamera();
  ASSERT_TRUE(camera);

  EXPECT_TRUE(catalog.lists(*camera));
  EXPECT_FALSE(catalog.lists(testCamera("another", "video/x-raw")));
}

}  // namespace
}  // namespace platform::gstreamer
