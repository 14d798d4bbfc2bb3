#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "tests/support/painting_by_hand.h"

namespace model {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::Ge;
using testing::Le;

/// Hands, the mouse, the timer and the menus at random, and what must hold whatever they do.
class HandAndMouse : public support::PaintingByHand, public testing::WithParamInterface<int> {
 protected:
  static constexpr int kSteps = 4000;

  double fraction() { return std::uniform_real_distribution(0.0, 1.0)(random_); }
  bool chance(double share) { return fraction() < share; }

  void anyHandResult() {
    const std::vector<strokes::Stroke> before = strokes();
    const int colorBefore = model.colorIndex();
    const bool wasDrawing = model.store().isDrawing();

    std::vector<platform::HandObservation> hands;
    const bool spread = spreading_ = chance(0.9) == spreading_;
    if (spread) hands.push_back(anyColorHand());
    if (chance(0.8)) {
      penX_ += 0.1 * (fraction() - 0.5);
      hands.push_back(penAt(penX_, chance(0.05) ? 2 * fraction() - 0.5 : 0.5, chance(0.7),
                            0.005 + 0.4 * fraction()));
    }
    const bool fails = chance(0.03);
    if (fails) {
      failToSee("Noise.");
    } else {
      see(hands);
    }

    if (mousePressed_) {
      EXPECT_EQ(strokes(), before) << "the hand touched the painting under the mouse";
      EXPECT_EQ(model.store().isDrawing(), wasDrawing) << "the hand ended the mouse's stroke";
    }
    noteColor(colorBefore);
    if (fails || !spread) steppedInThisSpread_ = false;
  }

  /// One that changes the colour, whichever hand is chosen for it.
  platform::HandObservation anyColorHand() {
    return support::spreadHand({.x = 0.2, .y = 0.2, .size = 0.05 + 0.1 * fraction()});
  }

  /// The colour steps by one, and only once before the hand closes.
  void noteColor(int before) {
    const bool stepped = model.colorIndex() != before;
    if (stepped) {
      EXPECT_EQ(model.colorIndex(), (before + 1) % 8);
      EXPECT_FALSE(steppedInThisSpread_) << "one spread changed the colour twice";
      steppedInThisSpread_ = true;
      ++colorSteps_;
    }
  }

  void anyTick() {
    const std::size_t before = strokes().size();
    const std::string statusBefore = model.handStatus();
    const bool wasDrawing = model.store().isDrawing();
    model.tick();
    if (mousePressed_) {
      EXPECT_EQ(model.store().isDrawing(), wasDrawing) << "a tick ended the mouse's stroke";
    }
    if (!model.fadeEnabled()) {
      EXPECT_EQ(strokes().size(), before);
    }
    if (model.handStatus() != statusBefore) steppedInThisSpread_ = false;  // It timed out.
  }

  void anyMouseEvent() {
    if (!mousePressed_ && chance(0.5)) {
      model.mouseDown(fraction(), fraction());
      mousePressed_ = true;
    } else if (chance(0.4)) {
      model.mouseUp();
      mousePressed_ = false;
    } else {
      model.mouseDragged(fraction(), fraction());
    }
  }

  void anySetting() {
    model.setColorHand(hand::kAllColorHands[random_() % 3]);
    model.setWidthFromDistance(chance(0.5));
    model.setFadeEnabled(chance(0.3));
    model.setFadeSeconds(0.5 + 2 * fraction());
  }

  void anyStep() {
    const double kind = fraction();
    if (kind < 0.6) {
      anyHandResult();
    } else if (kind < 0.8) {
      anyTick();
    } else if (kind < 0.95) {
      anyMouseEvent();
    } else if (kind < 0.97) {
      model.undo();
    } else if (kind < 0.975) {
      model.clear();
    } else {
      anySetting();
    }
    machine.clock.advance(chance(0.02) ? 1.0 : 0.05 * fraction());
  }

  void expectWhatAlwaysHolds() {
    if (!mousePressed_) {
      EXPECT_EQ(model.strokeCount(), static_cast<int>(strokes().size()));
      EXPECT_EQ(cursor().has_value(), model.handStatus() != "No hand");
      if (model.store().isDrawing()) {
        EXPECT_EQ(model.handStatus(), "Drawing");
      }
    }
    EXPECT_THAT(model.handStatus(), AnyOf("No hand", "Pen up", "Drawing"));
    EXPECT_THAT(model.colorIndex(), AllOf(Ge(0), Le(7)));
    if (!strokes().empty()) {
      const strokes::StrokePoint& newest = strokes().back().points.back();
      EXPECT_THAT(newest.x, AllOf(Ge(0), Le(1)));
      EXPECT_THAT(newest.y, AllOf(Ge(0), Le(1)));
      EXPECT_THAT(newest.w, AllOf(Ge(3), Le(40)));
    }
  }

  std::mt19937 random_{static_cast<std::uint32_t>(GetParam())};
  double penX_ = 0.5;
  bool mousePressed_ = false;
  bool spreading_ = false;
  bool steppedInThisSpread_ = false;
  int colorSteps_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Seeds, HandAndMouse, testing::Range(1, 9));

TEST_P(HandAndMouse, NeverGetInEachOthersWay) {
  for (int step = 0; step < kSteps && !HasFailure(); ++step) {
    anyStep();
    expectWhatAlwaysHolds();
    if (HasFailure()) ADD_FAILURE() << "at step " << step;
  }
  EXPECT_GT(colorSteps_, 10) << "the gestures hardly happened";
}

}  // namespace
}  // namespace model
