#include <memory>

#include "model/app_model.h"
#include "platform/settings_page.h"

namespace model {

using Kind = CameraState::Kind;
using platform::CameraAuthorization;

void AppModel::refreshPermission() {
  const int question = ++permissionQuestion_;
  services_.cameraPermission.read(
      [this, question, life = std::weak_ptr(life_)](CameraAuthorization authorization) {
        if (!life.expired() && question == permissionQuestion_) act(authorization);
      });
}

void AppModel::act(CameraAuthorization authorization) {
  switch (authorization) {
    case CameraAuthorization::notDetermined:
      cameraState_.set({Kind::needsPermission, {}});
      return;
    case CameraAuthorization::restricted:
      cameraState_.set({Kind::restricted, {}});
      return;
    case CameraAuthorization::denied:
      cameraState_.set({Kind::denied, {}});
      return;
    case CameraAuthorization::authorized:
      startCamera();
      return;
    case CameraAuthorization::unknown:
      break;
  }
  cameraState_.set(CameraState::failed("The camera permission has an unknown state."));
}

void AppModel::requestCamera() {
  services_.cameraPermission.request([this, life = std::weak_ptr(life_)](bool granted) {
    if (life.expired()) return;
    ++permissionQuestion_;
    if (granted) {
      startCamera();
    } else {
      cameraState_.set({Kind::denied, {}});
    }
  });
}

void AppModel::useMouseOnly() {
  ++permissionQuestion_;
  cameraState_.set({Kind::mouseOnly, {}});
  if (background() == render::CanvasBackground::camera) {
    setBackground(render::CanvasBackground::black);
  }
}

void AppModel::openCameraSettings() {
  services_.settingsPage.openCameraPrivacy();
}

}  // namespace model
