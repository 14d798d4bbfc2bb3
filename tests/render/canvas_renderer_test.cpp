#include "render/canvas_renderer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "scenes.h"

namespace render {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

strokes::Stroke levelStroke(double y, double width, int color = 0) {
  return strokeOf({{0.1, y, width}, {0.5, y, width}, {0.9, y, width}}, color);
}

pixels::Surface pictureOf(const RenderScene& scene, int width, int height) {
  return CanvasRenderer::makeImage(scene, {static_cast<double>(width), static_cast<double>(height)})
      .value();
}

int largestDifference(const pixels::Surface& a, const pixels::Surface& b) {
  int most = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int i = 0; i < 4 * a.width(); ++i)
      most = std::max(most, std::abs(a.row(y)[i] - b.row(y)[i]));
  }
  return most;
}

TEST(CanvasRenderer, AnEmptyTransparentSceneLeavesEveryPixelTransparent) {
  EXPECT_EQ(pictureOf(sceneOn(CanvasBackground::transparent), 70, 50), pixels::Surface(70, 50));
}

TEST(CanvasRenderer, BlackAndWhiteGroundsAreOpaque) {
  EXPECT_EQ(pixelAt(pictureOf(sceneOn(CanvasBackground::black), 3, 2), 2, 1), (Bgra{0, 0, 0, 255}));
  EXPECT_EQ(pixelAt(pictureOf(sceneOn(CanvasBackground::white), 3, 2), 2, 1),
            (Bgra{255, 255, 255, 255}));
}

TEST(CanvasRenderer, WithoutACameraPictureTheGroundIsDarkGreyHoweverStrongTheDimming) {
  for (const double dim : {0.0, 0.35, 1.0, 1.5}) {
    RenderScene scene = sceneOn(CanvasBackground::camera);
    scene.dim = dim;

    // 0.08, 0.08 and 0.1 of 255.
    EXPECT_EQ(pixelAt(pictureOf(scene, 4, 4), 1, 3), (Bgra{26, 20, 20, 255})) << dim;
  }
}

RenderScene cameraScene(double dim) {
  RenderScene scene = sceneOn(CanvasBackground::camera);
  scene.frame = imageOf(8, 6, [](int, int) { return Bgra{200, 100, 40, 7}; });
  scene.dim = dim;
  return scene;
}

TEST(CanvasRenderer, ADimmingOfZeroOrLessLeavesTheCameraPictureAsItIs) {
  for (const double dim : {0.0, -1.0, kNaN})
    EXPECT_EQ(pixelAt(pictureOf(cameraScene(dim), 16, 12), 5, 7), (Bgra{200, 100, 40, 255})) << dim;
}

TEST(CanvasRenderer, DimmingDarkensTheCameraPicture) {
  EXPECT_EQ(pixelAt(pictureOf(cameraScene(0.5), 16, 12), 5, 7), (Bgra{100, 50, 20, 255}));
}

TEST(CanvasRenderer, ADimmingAboveOneIsBlack) {
  for (const double dim : {1.0, 1.5, kInfinity})
    EXPECT_EQ(pixelAt(pictureOf(cameraScene(dim), 16, 12), 5, 7), (Bgra{0, 0, 0, 255})) << dim;
}

TEST(CanvasRenderer, TheCameraPictureIsUprightMirroredAndStretchedToTheCanvas) {
  RenderScene scene = sceneOn(CanvasBackground::camera);
  // Brighter in blue to the right, in red to the bottom.
  scene.frame = imageOf(64, 32, [](int x, int y) { return Bgra{4 * x, 0, 8 * y, 255}; });

  const pixels::Surface picture = pictureOf(scene, 128, 128);

  EXPECT_NEAR(pixelAt(picture, 0, 64)[0], 252, 2);
  EXPECT_NEAR(pixelAt(picture, 127, 64)[0], 0, 2);
  EXPECT_NEAR(pixelAt(picture, 64, 0)[2], 0, 2);
  EXPECT_NEAR(pixelAt(picture, 64, 127)[2], 248, 2);
  EXPECT_NEAR(pixelAt(picture, 31, 64)[0], 252 - 62, 3);
}

TEST(CanvasRenderer, TheCameraPictureIsShrunkWithoutLosingFineDetail) {
  RenderScene scene = sceneOn(CanvasBackground::camera);
  scene.frame = imageOf(64, 64, [](int x, int) {
    const int light = x % 4 < 2 ? 200 : 0;
    return Bgra{light, light, light, 255};
  });

  const pixels::Surface picture = pictureOf(scene, 8, 8);

  for (int x = 1; x < 7; ++x) EXPECT_NEAR(pixelAt(picture, x, 4)[1], 100, 2) << x;
}

TEST(CanvasRenderer, AWhiteCameraPictureStaysWhiteHoweverFarItIsShrunk) {
  RenderScene scene = sceneOn(CanvasBackground::camera);
  scene.frame = imageOf(900, 1080, [](int, int) { return Bgra{255, 255, 255, 255}; });

  const pixels::Surface picture = pictureOf(scene, 3, 2);

  for (int y = 0; y < 2; ++y) {
    for (int x = 0; x < 3; ++x) EXPECT_EQ(pixelAt(picture, x, y), (Bgra{255, 255, 255, 255}));
  }
}

RenderScene fadingScene(double age, bool glow) {
  RenderScene scene = sceneOn(CanvasBackground::transparent, {levelStroke(0.5, 40, 7)});
  scene.glow = glow;
  scene.fadeEnabled = true;
  scene.fadeSeconds = 3;
  scene.strokes[0].lastTime = 100;
  scene.now = 100 + age;
  return scene;
}

TEST(CanvasRenderer, AStrokeFadesFromOneToNothingInTheSecondAfterItsTime) {
  EXPECT_EQ(pixelAt(pictureOf(fadingScene(3.0, false), 200, 160), 100, 80)[3], 255);
  EXPECT_EQ(pixelAt(pictureOf(fadingScene(3.5, false), 200, 160), 100, 80)[3], 128);
  EXPECT_EQ(pictureOf(fadingScene(4.0, false), 200, 160), pixels::Surface(200, 160));
  EXPECT_EQ(pictureOf(fadingScene(kNaN, false), 200, 160), pixels::Surface(200, 160));
}

TEST(CanvasRenderer, WithoutFadingAnOldStrokeIsDrawnInFull) {
  RenderScene scene = fadingScene(1000, false);
  scene.fadeEnabled = false;

  EXPECT_EQ(pixelAt(pictureOf(scene, 200, 160), 100, 80)[3], 255);
}

TEST(CanvasRenderer, AGlowingStrokeFadesAsAWhole) {
  EXPECT_EQ(pixelAt(pictureOf(fadingScene(3.5, true), 200, 160), 100, 80)[3], 128);
}

TEST(CanvasRenderer, AFadingStrokeShowsNoBeadsWhereItsSegmentsMeet) {
  RenderScene scene = fadingScene(3.5, false);
  std::vector<strokes::StrokePoint> points;
  for (int i = 0; i <= 16; ++i) points.push_back({0.1 + 0.05 * i, 0.5, 40});
  scene.strokes[0].points = strokes::StrokePoints(points);

  const pixels::Surface picture = pictureOf(scene, 200, 160);

  for (int y = 77; y <= 83; ++y) {
    for (int x = 24; x < 176; ++x) EXPECT_EQ(pixelAt(picture, x, y)[3], 128) << x << "," << y;
  }
}

TEST(CanvasRenderer, AStrokeOfOnePointIsADiscAsWideAsItsPen) {
  const auto areaAt = [](double canvasHeight, double width) {
    const int side = static_cast<int>(canvasHeight);
    return paintedArea(pictureOf(
        sceneOn(CanvasBackground::transparent, {strokeOf({{0.5, 0.5, width}}, 7)}), side, side));
  };
  const auto disc = [](double diameter) { return std::numbers::pi * diameter * diameter / 4; };

  EXPECT_NEAR(areaAt(800, 10), disc(10), disc(10) * 0.01);
  EXPECT_NEAR(areaAt(400, 10), disc(5), disc(5) * 0.02);
  EXPECT_NEAR(areaAt(400, 0.5), disc(1), disc(1) * 0.05);
}

TEST(CanvasRenderer, AStrokeIsNeverThinnerThanAPixel) {
  const pixels::Surface picture = pictureOf(
      sceneOn(CanvasBackground::transparent, {levelStroke(200.5 / 400, 0.5, 7)}), 400, 400);

  EXPECT_EQ(pixelAt(picture, 200, 200)[3], 255);
  EXPECT_EQ(pixelAt(picture, 200, 199)[3], 0);
  EXPECT_EQ(pixelAt(picture, 200, 201)[3], 0);
}

TEST(CanvasRenderer, ColorIndicesWrapAround) {
  const auto colorOf = [](int index) {
    return pixelAt(
        pictureOf(sceneOn(CanvasBackground::black, {levelStroke(0.5, 80, index)}), 80, 80), 40, 40);
  };

  EXPECT_EQ(colorOf(9), colorOf(1));
  EXPECT_EQ(colorOf(-1), colorOf(7));
  EXPECT_EQ(colorOf(-1), (Bgra{255, 255, 255, 255}));
  EXPECT_EQ(colorOf(1), (Bgra{204, 38, 255, 255}));
}

TEST(CanvasRenderer, NewerStrokesLieOverOlderOnes) {
  const pixels::Surface picture = pictureOf(
      sceneOn(CanvasBackground::black, {levelStroke(0.5, 80, 7), levelStroke(0.5, 40, 1)}), 80, 80);

  EXPECT_EQ(pixelAt(picture, 40, 40), (Bgra{204, 38, 255, 255}));
}

/// How far the paint right of a hovering cursor's centre is from it on average: its ring's radius.
double ringRadius(double width) {
  RenderScene scene = sceneOn(CanvasBackground::transparent);
  scene.cursor = CursorState{0.5, 0.5, false, width, 0};
  const pixels::Surface picture = pictureOf(scene, 801, 800);
  double sum = 0, weight = 0;
  for (int x = 400; x < 801; ++x) {
    const int alpha = pixelAt(picture, x, 400)[3];
    sum += alpha * (x + 0.5 - 400.5);
    weight += alpha;
  }
  return sum / weight;
}

TEST(CanvasRenderer, TheCursorIsSixPixelsWiderThanThePenAndNeverSmall) {
  EXPECT_NEAR(ringRadius(4), 14, 0.05);
  EXPECT_NEAR(ringRadius(40), 26, 0.05);
}

TEST(CanvasRenderer, AHoveringCursorIsAWhiteRingWithADarkOutline) {
  RenderScene scene = sceneOn(CanvasBackground::white);
  scene.cursor = CursorState{100.5 / 200, 100.5 / 200, false, 0, 0};

  const pixels::Surface picture = pictureOf(scene, 200, 200);

  EXPECT_EQ(pixelAt(picture, 100, 100), (Bgra{255, 255, 255, 255}));
  EXPECT_EQ(pixelAt(picture, 114, 100)[1], 247);  // 95 % white over 60 % black over white.
  EXPECT_LT(pixelAt(picture, 112, 100)[1], 190);  // Its outline, to both sides.
  EXPECT_LT(pixelAt(picture, 116, 100)[1], 190);
  EXPECT_EQ(pixelAt(picture, 118, 100)[1], 255);
}

TEST(CanvasRenderer, ACursorThatTouchesIsFilledWithItsColor) {
  RenderScene scene = sceneOn(CanvasBackground::black);
  scene.cursor = CursorState{0.5, 0.5, true, 0, 9};

  EXPECT_EQ(pixelAt(pictureOf(scene, 200, 200), 100, 100), (Bgra{204, 38, 255, 255}));
}

TEST(CanvasRenderer, AnImageHasWholePixels) {
  EXPECT_FALSE(CanvasRenderer::makeImage(sceneOn(CanvasBackground::black), {0.9, 100}));
  EXPECT_FALSE(CanvasRenderer::makeImage(sceneOn(CanvasBackground::black), {100, -5}));

  const auto picture = CanvasRenderer::makeImage(sceneOn(CanvasBackground::black), {100.7, 50.2});

  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->width(), 100);
  EXPECT_EQ(picture->height(), 50);
  EXPECT_EQ(pixelAt(*picture, 99, 49), (Bgra{0, 0, 0, 255}));
}

TEST(CanvasRenderer, AGlowingStrokeFallsOffAsTheClosedFormSays) {
  // Pixel centres lie a whole number of pixels from the centre line.
  RenderScene scene = sceneOn(CanvasBackground::black, {levelStroke(400.5 / 800, 20)});
  scene.glow = true;

  const pixels::Surface picture = pictureOf(scene, 1280, 800);

  const auto below = [](double z) { return 0.5 * std::erfc(-z / std::numbers::sqrt2); };
  for (const int offset : {12, 15, 20, 25, 30, 40}) {
    const auto glow = [&](double sigma) {
      return below((offset + 10) / sigma) - below((offset - 10) / sigma);
    };
    const double alpha = 255 * (1 - (1 - glow(15)) * (1 - glow(5)));
    const Bgra pixel = pixelAt(picture, 640, 400 + offset);
    EXPECT_NEAR(pixel[0], alpha, 1) << offset;
    EXPECT_NEAR(pixel[1], 0.9 * alpha, 1) << offset;
    EXPECT_NEAR(pixel[2], 0.1 * alpha, 1) << offset;
  }
  EXPECT_NEAR(pixelAt(picture, 640, 405)[1], 229.5, 1);
  EXPECT_NEAR(pixelAt(picture, 640, 405)[2], 25.5, 1);
  EXPECT_EQ(pixelAt(picture, 640, 400), (Bgra{255, 246, 175, 255}));
}

RenderScene richScene() {
  RenderScene scene = sceneOn(CanvasBackground::black,
                              {strokeOf({{0.2, 0.3, 20}, {0.5, 0.8, 30}, {0.9, 0.2, 12}}, 1),
                               levelStroke(0.6, 0.3, 3), strokeOf({{0.8, 0.7, 40}}, 2)});
  scene.glow = true;
  scene.cursor = CursorState{0.4, 0.4, true, 10, 4};
  return scene;
}

TEST(CanvasRenderer, ADeviceScaleOfTwoDrawsTheSamePictureFiner) {
  const RenderScene scene = richScene();
  pixels::Surface fine(320, 240);
  CanvasRenderer::render(scene, {fine.view(), 2}, {160, 120});
  const pixels::Surface coarse = pictureOf(scene, 160, 120);

  // Away from edges, four fine pixels are one coarse one.
  double difference = 0;
  for (int y = 0; y < 120; ++y) {
    for (int x = 0; x < 160; ++x) {
      int sum = 0;
      for (int i = 0; i < 4; ++i) sum += pixelAt(fine, 2 * x + i % 2, 2 * y + i / 2)[1];
      difference += std::abs(sum / 4.0 - pixelAt(coarse, x, y)[1]);
    }
  }
  EXPECT_LT(difference / (160 * 120), 0.6);
}

TEST(CanvasRenderer, StrokesWithoutCursorAreDrawnAtADoubledScaleAsOnADoubledCanvas) {
  RenderScene scene = richScene();
  scene.cursor.reset();
  scene.strokes.erase(scene.strokes.begin() + 1);  // The hairline's least width does scale.
  pixels::Surface fine(320, 240);
  CanvasRenderer::render(scene, {fine.view(), 2}, {160, 120});

  EXPECT_LE(largestDifference(fine, pictureOf(scene, 320, 240)), 1);
}

TEST(CanvasRenderer, ASmallerContextShowsTheCanvassTopLeftPart) {
  RenderScene scene = richScene();
  scene.frame = imageOf(160, 90, [](int x, int y) { return Bgra{x, y, 90, 255}; });
  scene.background = CanvasBackground::camera;
  const pixels::Surface whole = pictureOf(scene, 320, 240);
  pixels::Surface part(150, 101);

  CanvasRenderer::render(scene, {part.view(), 1}, {320, 240});

  for (int y = 0; y < part.height(); ++y) {
    for (int x = 0; x < part.width(); ++x)
      ASSERT_EQ(pixelAt(part, x, y), pixelAt(whole, x, y)) << x << "," << y;
  }
}

TEST(CanvasRenderer, ALargerContextKeepsWhatLiesBesideTheCanvas) {
  pixels::Surface surface(40, 30);

  CanvasRenderer::render(sceneOn(CanvasBackground::white), {surface.view(), 1}, {20.5, 10});

  EXPECT_EQ(pixelAt(surface, 19, 9)[3], 255);
  EXPECT_EQ(pixelAt(surface, 20, 9), (Bgra{128, 128, 128, 128}));
  EXPECT_EQ(pixelAt(surface, 21, 9)[3], 0);
  EXPECT_EQ(pixelAt(surface, 19, 10)[3], 0);
}

TEST(CanvasRenderer, ColorsNeverExceedAlpha) {
  RenderScene scene = richScene();
  scene.background = CanvasBackground::transparent;

  const pixels::Surface picture = pictureOf(scene, 320, 240);

  for (int y = 0; y < 240; ++y) {
    for (int x = 0; x < 320; ++x) {
      const Bgra p = pixelAt(picture, x, y);
      ASSERT_LE(std::max({p[0], p[1], p[2]}), p[3]) << x << "," << y;
    }
  }
}

TEST(CanvasRenderer, PointsThatAreNoNumbersAreLeftOut) {
  for (const double wrong : {kNaN, kInfinity, -kInfinity, 1e308, -1e308}) {
    for (const bool glow : {false, true}) {
      RenderScene scene =
          sceneOn(CanvasBackground::transparent,
                  {strokeOf({{0.1, 0.1, 10}, {0.4, 0.1, 10}, {wrong, 0.5, 10}, {0.5, wrong, 10}}),
                   strokeOf({{0.5, 0.5, wrong}}), strokeOf({{wrong, wrong, wrong}}),
                   strokeOf({{wrong, 0.2, 10}, {-wrong, 0.8, 10}, {wrong, 0.9, 1}})});
      scene.glow = glow;
      scene.cursor = CursorState{wrong, 0.5, true, wrong, 0};
      scene.fadeSeconds = wrong;

      const pixels::Surface picture = pictureOf(scene, 200, 160);

      EXPECT_EQ(pixelAt(picture, 30, 16)[3], 255) << wrong;
    }
  }
}

TEST(CanvasRenderer, AHugeWidthPaintsEverything) {
  for (const bool glow : {false, true}) {
    RenderScene scene =
        sceneOn(CanvasBackground::transparent, {strokeOf({{0.5, 0.5, 1e300}, {0.6, 0.5, 1e300}})});
    scene.glow = glow;

    const pixels::Surface picture = pictureOf(scene, 200, 160);

    EXPECT_EQ(pixelAt(picture, 0, 0)[3], 255);
    EXPECT_EQ(pixelAt(picture, 199, 159)[3], 255);
  }
}

TEST(CanvasRenderer, ANegativeWidthIsAHairline) {
  const pixels::Surface picture =
      pictureOf(sceneOn(CanvasBackground::transparent, {levelStroke(80.5 / 160, -5, 7)}), 200, 160);

  EXPECT_EQ(pixelAt(picture, 100, 80)[3], 255);
  EXPECT_EQ(pixelAt(picture, 100, 82)[3], 0);
}

TEST(CanvasRenderer, AStrokeOutsideTheCanvasGlowsIntoIt) {
  RenderScene scene =
      sceneOn(CanvasBackground::transparent, {strokeOf({{-0.02, 0.1, 20}, {-0.02, 0.9, 20}}, 7)});
  scene.glow = true;

  const pixels::Surface picture = pictureOf(scene, 800, 800);

  EXPECT_GT(pixelAt(picture, 0, 400)[3], 60);
  EXPECT_GT(pixelAt(picture, 0, 400)[3], pixelAt(picture, 20, 400)[3]);
}

}  // namespace
}  // namespace render
