#include "render/live_canvas.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "render/canvas_renderer.h"
#include "scenes.h"
#include "strokes/stroke_store.h"

namespace render {
namespace {

constexpr int kAllAtOnce = 1 << 30;

pixels::Surface fromScratch(const RenderScene& scene, int width, int height, double deviceScale,
                            pixels::Size size) {
  pixels::Surface surface(width, height);
  CanvasRenderer::render(scene, {surface.view(), deviceScale}, size);
  return surface;
}

/// A surface and the canvas that draws into it, always of one size.
class Shown {
 public:
  explicit Shown(int width = 200, int height = 130, int workPerFrame = LiveCanvas::kWorkPerFrame)
      : surface_(width, height), canvas_(workPerFrame) {}

  LiveFrame draw(const RenderScene& scene) {
    return canvas_.draw(scene, {surface_.view(), 1}, size());
  }

  bool equals(const RenderScene& scene) {
    return surface_ == fromScratch(scene, surface_.width(), surface_.height(), 1, size());
  }

  void resize(int width, int height) { surface_ = pixels::Surface(width, height); }
  const pixels::Surface& surface() const { return surface_; }

 private:
  pixels::Size size() const {
    return {static_cast<double>(surface_.width()), static_cast<double>(surface_.height())};
  }

  pixels::Surface surface_;
  LiveCanvas canvas_;
};

RenderScene sceneOf(const strokes::StrokeStore& store,
                    CanvasBackground background = CanvasBackground::black) {
  RenderScene scene = sceneOn(background);
  scene.strokes = store.strokes();
  scene.glow = true;
  return scene;
}

void paintStroke(strokes::StrokeStore& store, double y, int points = 6) {
  store.begin({0.1, y, 12}, 1, 0);
  for (int i = 1; i < points; ++i) store.add({0.1 + 0.8 * i / points, y + 0.03 * (i % 3), 12}, 0);
  store.end(0);
}

TEST(LiveCanvas, AnIdleCanvasChangesNothing) {
  strokes::StrokeStore store;
  paintStroke(store, 0.5);
  Shown shown;
  shown.draw(sceneOf(store));

  const LiveFrame again = shown.draw(sceneOf(store));

  EXPECT_TRUE(again.changed.isEmpty());
  EXPECT_TRUE(again.isComplete);
}

TEST(LiveCanvas, ANewPointChangesOnlyItsSurroundings) {
  strokes::StrokeStore store;
  Shown shown(1000, 200);
  store.begin({0.1, 0.5, 10}, 0, 0);
  for (int i = 1; i < 40; ++i) store.add({0.1 + 0.02 * i, 0.5, 10}, 0);
  shown.draw(sceneOf(store));

  store.add({0.9, 0.5, 10}, 0);
  const LiveFrame frame = shown.draw(sceneOf(store));

  EXPECT_FALSE(frame.changed.isEmpty());
  EXPECT_GT(frame.changed.left, 700);
  EXPECT_TRUE(shown.equals(sceneOf(store)));
}

TEST(LiveCanvas, AMovingCursorChangesOnlyItsPlaces) {
  RenderScene scene = sceneOn(CanvasBackground::white);
  scene.cursor = CursorState{0.1, 0.5, false, 4, 0};
  Shown shown(640, 128);
  shown.draw(scene);

  scene.cursor->x = 0.2;
  const LiveFrame frame = shown.draw(scene);

  EXPECT_LE(frame.changed.right, 192);
  EXPECT_TRUE(shown.equals(scene));
}

TEST(LiveCanvas, ANewCameraPictureChangesEverything) {
  RenderScene scene = sceneOn(CanvasBackground::camera);
  const auto picture = [](int light) {
    return imageOf(16, 9, [light](int, int) { return Bgra{light, light, light, 255}; });
  };
  scene.frame = picture(50);
  Shown shown;
  shown.draw(scene);
  EXPECT_TRUE(shown.draw(scene).changed.isEmpty());

  scene.frame = picture(90);

  EXPECT_EQ(shown.draw(scene).changed, (PixelRect{0, 0, 200, 130}));
  EXPECT_TRUE(shown.equals(scene));
}

TEST(LiveCanvas, UndoIsRightAtOnce) {
  strokes::StrokeStore store;
  for (const double y : {0.3, 0.5, 0.7}) paintStroke(store, y);
  Shown shown;
  shown.draw(sceneOf(store));

  store.undo();
  const LiveFrame frame = shown.draw(sceneOf(store));

  EXPECT_TRUE(frame.isComplete);
  EXPECT_TRUE(shown.equals(sceneOf(store)));
}

TEST(LiveCanvas, ALargePaintingIsBuiltUpOverSeveralFramesBehindTheLastPicture) {
  strokes::StrokeStore store;
  for (int i = 0; i < 40; ++i) paintStroke(store, 0.1 + 0.02 * i);
  Shown shown(200, 130, 60);
  while (!shown.draw(sceneOf(store)).isComplete) {
  }
  const Bgra before = pixelAt(shown.surface(), 100, 65);

  shown.resize(260, 169);
  int frames = 1;
  bool isComplete = shown.draw(sceneOf(store)).isComplete;
  EXPECT_FALSE(isComplete);
  // What stands in is the former picture, stretched.
  EXPECT_EQ(pixelAt(shown.surface(), 130, 84), before);
  while (!isComplete && frames < 1000) {
    isComplete = shown.draw(sceneOf(store)).isComplete;
    ++frames;
  }

  EXPECT_GT(frames, 3);
  EXPECT_LT(frames, 40);
  EXPECT_TRUE(shown.equals(sceneOf(store)));
}

/// More than one thread is begun for.
strokes::StrokeStore manyStrokes() {
  strokes::StrokeStore store;
  for (int i = 0; i < 150; ++i) paintStroke(store, 0.05 + 0.006 * i);
  return store;
}

TEST(LiveCanvas, ThreadsThatShareTheWorkChangeNothing) {
  const RenderScene scene = sceneOf(manyStrokes());
  Shown shown(700, 455);

  while (!shown.draw(scene).isComplete) {
  }

  EXPECT_TRUE(shown.equals(scene));
}

TEST(LiveCanvas, ManyStrokesThatFadeTogetherAreRightInEveryFrame) {
  RenderScene scene = sceneOf(manyStrokes());
  scene.fadeEnabled = true;
  scene.fadeSeconds = 2;
  Shown shown(700, 455);
  for (int frame = 0; frame < 12; ++frame) {
    scene.now = 1.2 + 0.15 * frame;
    while (!shown.draw(scene).isComplete) {
    }

    EXPECT_TRUE(shown.equals(scene)) << "at " << scene.now;
  }
}

TEST(LiveCanvas, UndoAndNewStrokesAreRightWhileOthersFade) {
  strokes::StrokeStore store;
  for (const double y : {0.3, 0.5, 0.7}) paintStroke(store, y);
  const auto sceneAt = [&store](double now, bool fadeEnabled) {
    RenderScene scene = sceneOf(store);
    scene.fadeEnabled = fadeEnabled;
    scene.fadeSeconds = 1;
    scene.now = now;
    return scene;
  };
  Shown shown;
  shown.draw(sceneAt(0, true));
  const auto isRightAt = [&](double now, bool fadeEnabled) {
    const RenderScene scene = sceneAt(now, fadeEnabled);
    return shown.draw(scene).isComplete && shown.equals(scene);
  };

  EXPECT_TRUE(isRightAt(1.4, true));
  store.undo();
  EXPECT_TRUE(isRightAt(1.4, true));
  EXPECT_TRUE(isRightAt(1.5, true));
  store.begin({0.2, 0.4, 20}, 2, 1.5);
  store.add({0.4, 0.6, 20}, 1.5);
  EXPECT_TRUE(isRightAt(1.5, true));
  EXPECT_TRUE(isRightAt(1.6, false));
  EXPECT_TRUE(isRightAt(1.6, true));
  store.clear();
  EXPECT_TRUE(isRightAt(1.6, true));
}

TEST(LiveCanvas, OtherPixelsAreDrawnAsAWhole) {
  strokes::StrokeStore store;
  paintStroke(store, 0.5);
  const RenderScene scene = sceneOf(store);
  pixels::Surface first(200, 130), second(200, 130);
  LiveCanvas canvas;
  canvas.draw(scene, {first.view(), 1}, {200, 130});

  EXPECT_EQ(canvas.draw(scene, {second.view(), 1}, {200, 130}).changed,
            (PixelRect{0, 0, 200, 130}));
  EXPECT_EQ(first, second);
}

/// Small numbers that look random; the same on every machine.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : state_(seed * 2654435761u + 12345) { next(); }

  std::uint32_t next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return state_;
  }
  int below(int count) { return static_cast<int>(next() % static_cast<unsigned>(count)); }
  double between(double low, double high) { return low + (high - low) * (next() / 4294967296.0); }

 private:
  std::uint32_t state_;
};

/// Somebody who paints, undoes, clears, waits and changes settings at random.
class Painter {
 public:
  explicit Painter(std::uint32_t seed) : dice_(seed) { resize(); }

  /// One more thing done.
  void act() {
    now_ += dice_.between(0, 0.3);
    switch (dice_.below(24)) {
      case 0:
        store_.undo();
        break;
      case 1:
        if (dice_.below(4) == 0) store_.clear();
        break;
      case 2:
        store_.end(now_);
        break;
      case 3:
        if (dice_.below(4) == 0) resize();
        break;
      case 4:
        background_ = static_cast<CanvasBackground>(dice_.below(4));
        break;
      case 5:
        if (dice_.below(4) == 0) glow_ = !glow_;
        break;
      case 6:
        fades_ = !fades_;
        break;
      case 7:
        now_ += 0.5;
        break;
      case 8:
        hasCursor_ = !hasCursor_;
        break;
      case 9:
        if (fades_) store_.pruneFaded(now_, kFadeSeconds);
        break;
      case 10:
        light_ = dice_.below(256);
        break;
      case 11:
      case 12:
      case 13:
        store_.end(now_);
        position_ = {dice_.between(-0.1, 1.1), dice_.between(-0.1, 1.1), dice_.between(1, 40)};
        store_.begin(position_, dice_.below(8), now_);
        break;
      default:
        position_.x += dice_.between(-0.2, 0.2);
        position_.y += dice_.between(-0.2, 0.2);
        position_.w = dice_.between(1, 40);
        store_.add(position_, now_);
        break;
    }
  }

  RenderScene scene() const {
    RenderScene scene = sceneOn(background_, store_.strokes());
    scene.frame = imageOf(3, 2, [this](int x, int y) { return Bgra{light_, 90 * x, 200 * y, 0}; });
    scene.dim = 0.35;
    scene.now = now_;
    scene.glow = glow_;
    scene.fadeEnabled = fades_;
    scene.fadeSeconds = kFadeSeconds;
    if (hasCursor_) scene.cursor = CursorState{position_.x, position_.y, true, 20, 3};
    return scene;
  }

  int width() const { return width_; }
  int height() const { return height_; }
  double deviceScale() const { return deviceScale_; }
  pixels::Size size() const { return {width_ / deviceScale_ - inset_, height_ / deviceScale_}; }

 private:
  static constexpr double kFadeSeconds = 1;

  void resize() {
    width_ = 20 + dice_.below(90);
    height_ = 20 + dice_.below(60);
    deviceScale_ = dice_.below(3) == 0 ? 2 : 1;
    inset_ = dice_.below(3) == 0 ? 0.4 : 0;
  }

  Dice dice_;
  strokes::StrokeStore store_;
  strokes::StrokePoint position_{0.5, 0.5, 10};
  CanvasBackground background_ = CanvasBackground::black;
  double now_ = 100;
  bool glow_ = true;
  bool fades_ = false;
  bool hasCursor_ = false;
  int light_ = 80;
  int width_ = 0;
  int height_ = 0;
  double deviceScale_ = 1;
  double inset_ = 0;
};

/// Draws histories first..end-1, each with `actions` actions, and compares every complete frame.
void expectHistoriesEqual(std::uint32_t first, std::uint32_t end, int actions, int workPerFrame) {
  int complete = 0;
  for (std::uint32_t seed = first; seed < end; ++seed) {
    Painter painter(seed);
    LiveCanvas canvas(workPerFrame);
    pixels::Surface surface;
    for (int i = 0; i < actions; ++i) {
      painter.act();
      // Some actions happen within one frame.
      if (i % 3 == 1) painter.act();
      if (surface.width() != painter.width() || surface.height() != painter.height())
        surface = pixels::Surface(painter.width(), painter.height());
      const RenderScene scene = painter.scene();
      const LiveFrame frame =
          canvas.draw(scene, {surface.view(), painter.deviceScale()}, painter.size());
      if (!frame.isComplete) continue;
      ++complete;
      ASSERT_EQ(surface, fromScratch(scene, painter.width(), painter.height(),
                                     painter.deviceScale(), painter.size()))
          << "history " << seed << ", action " << i;
    }
  }
  EXPECT_GT(complete, static_cast<int>(end - first));
}

// Ten thousand histories in all, in parts that run side by side.
class Histories : public testing::TestWithParam<std::uint32_t> {};

TEST_P(Histories, EveryFrameEqualsTheOneDrawnFromScratch) {
  expectHistoriesEqual(GetParam() * 1250, (GetParam() + 1) * 1250, 12, kAllAtOnce);
}

INSTANTIATE_TEST_SUITE_P(LiveCanvas, Histories, testing::Range(0u, 8u));

TEST(LiveCanvas, LongHistoriesEqualThePictureFromScratch) {
  expectHistoriesEqual(20000, 20040, 150, kAllAtOnce);
}

TEST(LiveCanvas, CompleteFramesAreRightHoweverLittleIsDoneInEach) {
  expectHistoriesEqual(30000, 30100, 60, 2);
}

}  // namespace
}  // namespace render
