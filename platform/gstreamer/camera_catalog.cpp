#include "platform/gstreamer/camera_catalog.h"

#include "platform/gstreamer/patience.h"

namespace platform::gstreamer {
namespace {

// A desktop's daemon answers in milliseconds, and somebody waits for the picture.
constexpr std::chrono::seconds kPatienceWithDaemon(2);

// Within this time PipeWire's own thread has put away what it held of a daemon that has ended.
constexpr auto kMourning = std::chrono::milliseconds(200);

}  // namespace

CameraCatalog::CameraCatalog(const char* pipeWire, const char* devices)
    : pipeWireProvider_(pipeWire), deviceProvider_(devices) {}

// PipeWire 0.3.65 frees the same memory twice when it is left while its daemon lives: its provider
// does not hold off the thread that it shares the connection with.
CameraCatalog::~CameraCatalog() {
  if (pipeWire_ && daemonLives()) pipeWire_->abandon();
}

void CameraCatalog::Abandon::operator()(CameraProvider* provider) const {
  provider->abandon();
  delete provider;
}

// The two are asked one by one: a device monitor over both would hide the video devices as soon as
// PipeWire answers.
std::optional<Camera> CameraCatalog::defaultCamera() {
  const std::lock_guard guard(lock_);
  followDaemon();
  if (!devices_) devices_.emplace(deviceProvider_);
  if (pipeWire_ && daemonLives()) {
    if (auto camera = pipeWire_->firstCamera()) return camera;
  }
  return devices_->firstCamera();
}

bool CameraCatalog::lists(const Camera& camera) {
  const std::lock_guard guard(lock_);
  return (pipeWire_ && daemonLives() && pipeWire_->lists(camera)) ||
         (devices_ && devices_->lists(camera));
}

void CameraCatalog::followDaemon() {
  if (daemonLives()) return takePipeWire(std::chrono::seconds(0));
  if (pipeWire_) {
    if (!daemonEnded_) daemonEnded_ = Clock::now();
    if (Clock::now() - *daemonEnded_ < kMourning) return;
    pipeWire_.reset();
    daemonEnded_.reset();
  }
  pipeWireToCome_ = {};
  daemon_.emplace();
  if (!daemon_->isAlive()) return;
  pipeWireToCome_ =
      begin([name = pipeWireProvider_] { return NewProvider(new CameraProvider(name)); });
  takePipeWire(kPatienceWithDaemon);
}

void CameraCatalog::takePipeWire(std::chrono::seconds patience) {
  if (!pipeWireToCome_.valid()) return;
  if (pipeWireToCome_.wait_for(patience) != std::future_status::ready) return;
  pipeWire_.reset(pipeWireToCome_.get().release());
  if (pipeWire_->isStarted()) return;
  // What hung on to an earlier daemon can keep the next one's first connections from working.
  pipeWire_.reset();
  daemon_.reset();
}

}  // namespace platform::gstreamer
