#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/app_model.h"
#include "tests/support/fake_platform.h"
#include "tests/support/hands.h"

namespace support {

/// A model whose camera runs, and the hands before it. Frames are square, so that lengths across
/// and up are the same.
class PaintingByHand : public testing::Test {
 protected:
  PaintingByHand() {
    model.refreshPermission();
    machine.cameraPermission.answerRead(platform::CameraAuthorization::authorized);
    machine.serialQueues.drain("wavescribe.camera.session");
  }

  /// One frame with these hands, analysed and applied at once.
  void see(std::vector<platform::HandObservation> hands) {
    machine.handPoseRequest.nextSees(std::move(hands));
    deliverFrame();
  }

  void failToSee(std::string why) {
    machine.handPoseRequest.nextFails(std::move(why));
    deliverFrame();
  }

  /// The pen at canvas coordinates, where it is found unsmoothed when no hand was there before.
  void seePen(double x, double y, bool down, double size = 0.2) { see({penAt(x, y, down, size)}); }

  static platform::HandObservation penAt(double x, double y, bool down, double size = 0.2) {
    return pinchingHand({.chirality = platform::Chirality::right,
                         .x = 1 - x,
                         .y = 1 - y,
                         .size = size,
                         .ratio = down ? 0.1 : 0.8});
  }

  static platform::HandObservation colorHand() {
    return spreadHand({.chirality = platform::Chirality::left, .x = 0.2, .y = 0.2, .size = 0.1});
  }

  void deliverFrame() {
    machine.capture.deliver(frameOf(8, 8, machine.clock.now()));
    settle();
  }

  /// Lets every queue run empty.
  void settle() {
    machine.serialQueues.drain("wavescribe.camera.frames");
    machine.serialQueues.drain("wavescribe.vision");
    machine.mainQueue.drain();
  }

  /// What the canvas would show.
  std::optional<render::CursorState> cursor() const {
    return model.makeScene(render::CanvasBackground::black, true).cursor;
  }

  const std::vector<strokes::Stroke>& strokes() const { return model.store().strokes(); }

  FakePlatform machine;
  model::AppModel model{machine.services()};
};

}  // namespace support
