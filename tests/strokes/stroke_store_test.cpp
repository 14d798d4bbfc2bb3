#include "strokes/stroke_store.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <vector>

namespace strokes {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int kCyan = 0;
constexpr int kLime = 2;
constexpr double kFade = 3;

StrokePoint at(double x, double y) {
  return {x, y, 14};
}

auto strokeOf(int colorIndex, const StrokePoints& points) {
  return AllOf(Field("colorIndex", &Stroke::colorIndex, colorIndex),
               Field("points", &Stroke::points, points));
}

/// A store with finished strokes of one point each, last active at the times given.
StrokeStore storeWithStrokesFrom(std::initializer_list<double> times) {
  StrokeStore store;
  for (const double time : times) {
    store.begin(at(0.5, 0.5), kCyan, time);
    store.end(time);
  }
  return store;
}

std::vector<double> lastTimes(const StrokeStore& store) {
  std::vector<double> times;
  for (const Stroke& stroke : store.strokes()) times.push_back(stroke.lastTime);
  return times;
}

TEST(StrokeStore, StartsEmptyAndIdle) {
  const StrokeStore store;

  EXPECT_THAT(store.strokes(), IsEmpty());
  EXPECT_FALSE(store.isDrawing());
}

TEST(StrokeStore, APointBeforeAnyStrokeIsIgnored) {
  StrokeStore store;

  store.add(at(0.1, 0.1), 1);

  EXPECT_THAT(store.strokes(), IsEmpty());
  EXPECT_FALSE(store.isDrawing());
}

TEST(StrokeStore, APointAfterTheEndOfAStrokeIsIgnored) {
  StrokeStore store = storeWithStrokesFrom({1});

  store.add(at(0.6, 0.5), 2);

  EXPECT_THAT(store.strokes(), ElementsAre(strokeOf(kCyan, {at(0.5, 0.5)})));
  EXPECT_THAT(lastTimes(store), ElementsAre(1));
}

TEST(StrokeStore, ATouchWithoutAnOpenStrokeIsIgnored) {
  StrokeStore empty;
  StrokeStore finished = storeWithStrokesFrom({1});

  empty.touch(2);
  finished.touch(2);

  EXPECT_THAT(empty.strokes(), IsEmpty());
  EXPECT_FALSE(empty.isDrawing());
  EXPECT_THAT(lastTimes(finished), ElementsAre(1));
}

TEST(StrokeStore, ATouchKeepsTheOpenStrokeFreshAndNoOther) {
  StrokeStore store = storeWithStrokesFrom({1});
  store.begin(at(0.1, 0.1), kLime, 2);

  store.touch(7);

  EXPECT_THAT(lastTimes(store), ElementsAre(1, 7));
}

TEST(StrokeStore, APointThatBarelyMovedIsDroppedButKeepsTheStrokeFresh) {
  StrokeStore store;
  store.begin(at(0, 0.5), kCyan, 1);

  store.add(at(0.001, 0.5), 2);

  EXPECT_THAT(store.strokes(), ElementsAre(strokeOf(kCyan, {at(0, 0.5)})));
  EXPECT_THAT(lastTimes(store), ElementsAre(2));
}

TEST(StrokeStore, APointAtTheSmallestStepIsAppended) {
  StrokeStore store;
  store.begin(at(0, 0.5), kCyan, 1);

  store.add(at(0.0015, 0.5), 2);

  EXPECT_THAT(store.strokes(), ElementsAre(strokeOf(kCyan, {at(0, 0.5), at(0.0015, 0.5)})));
  EXPECT_THAT(lastTimes(store), ElementsAre(2));
}

TEST(StrokeStore, StepsAreMeasuredFromTheLastPointKept) {
  StrokeStore store;
  store.begin(at(0, 0.5), kCyan, 1);

  store.add(at(0.001, 0.5), 2);
  store.add(at(0.002, 0.5), 3);

  EXPECT_THAT(store.strokes(), ElementsAre(strokeOf(kCyan, {at(0, 0.5), at(0.002, 0.5)})));
}

TEST(StrokeStore, APointKeepsTheWidthItCameWith) {
  StrokeStore store;
  store.begin({0.1, 0.5, 4}, kCyan, 1);

  store.add({0.2, 0.5, 250}, 2);

  EXPECT_THAT(store.strokes(), ElementsAre(strokeOf(kCyan, {{0.1, 0.5, 4}, {0.2, 0.5, 250}})));
}

TEST(StrokeStore, APointPastTheLargestJumpStartsANewStrokeOfTheSameColour) {
  StrokeStore store;
  store.begin(at(0.1, 0.5), kLime, 1);

  store.add(at(0.4, 0.5), 2);

  EXPECT_THAT(store.strokes(),
              ElementsAre(strokeOf(kLime, {at(0.1, 0.5)}), strokeOf(kLime, {at(0.4, 0.5)})));
  EXPECT_THAT(lastTimes(store), ElementsAre(2, 2));
  EXPECT_NE(store.strokes()[0].id, store.strokes()[1].id);
  EXPECT_TRUE(store.isDrawing());
}

TEST(StrokeStore, AJumpOfExactlyTheLargestLengthContinuesTheStroke) {
  StrokeStore store;
  store.begin(at(0.25, 0.5), kLime, 1);

  store.add(at(0.5, 0.5), 2);

  EXPECT_THAT(store.strokes(), ElementsAre(strokeOf(kLime, {at(0.25, 0.5), at(0.5, 0.5)})));
}

TEST(StrokeStore, AJumpIsMeasuredAlongTheSlant) {
  StrokeStore store;
  store.begin(at(0.1, 0.1), kLime, 1);

  store.add(at(0.3, 0.3), 2);

  EXPECT_THAT(store.strokes(), SizeIs(2));
}

TEST(StrokeStore, TheEndOfAStrokeIsItsLatestActivity) {
  StrokeStore store;
  store.begin(at(0.1, 0.1), kCyan, 1);

  store.end(5);
  store.end(9);

  EXPECT_THAT(lastTimes(store), ElementsAre(5));
  EXPECT_FALSE(store.isDrawing());
}

TEST(StrokeStore, BeginningAgainLeavesTheEarlierStrokeAsItWas) {
  StrokeStore store;
  store.begin(at(0.1, 0.1), kCyan, 1);

  store.begin(at(0.2, 0.2), kLime, 4);
  store.add(at(0.3, 0.2), 5);

  EXPECT_THAT(store.strokes(), ElementsAre(strokeOf(kCyan, {at(0.1, 0.1)}),
                                           strokeOf(kLime, {at(0.2, 0.2), at(0.3, 0.2)})));
  EXPECT_THAT(lastTimes(store), ElementsAre(1, 5));
}

TEST(StrokeStore, AFinishedStrokeIsRemovedOneSecondAfterItBeginsToFade) {
  StrokeStore store = storeWithStrokesFrom({10});

  EXPECT_FALSE(store.pruneFaded(13.9, kFade));
  EXPECT_THAT(store.strokes(), SizeIs(1));

  EXPECT_TRUE(store.pruneFaded(14, kFade));
  EXPECT_THAT(store.strokes(), IsEmpty());

  EXPECT_FALSE(store.pruneFaded(14, kFade));
}

TEST(StrokeStore, PruningKeepsTheOrderOfTheOthers) {
  StrokeStore store = storeWithStrokesFrom({10, 2, 11, 3, 12});

  EXPECT_TRUE(store.pruneFaded(13, kFade));

  EXPECT_THAT(lastTimes(store), ElementsAre(10, 11, 12));
}

TEST(StrokeStore, TheOpenStrokeIsNeverPrunedHoweverOld) {
  StrokeStore store = storeWithStrokesFrom({1});
  store.begin(at(0.5, 0.5), kLime, 1);

  EXPECT_TRUE(store.pruneFaded(1000, kFade));

  EXPECT_THAT(store.strokes(), ElementsAre(strokeOf(kLime, {at(0.5, 0.5)})));
  EXPECT_TRUE(store.isDrawing());
}

TEST(StrokeStore, AStrokeCanBePrunedOnceItHasEnded) {
  StrokeStore store;
  store.begin(at(0.5, 0.5), kLime, 1);
  store.end(2);

  EXPECT_TRUE(store.pruneFaded(6, kFade));

  EXPECT_THAT(store.strokes(), IsEmpty());
}

TEST(StrokeStore, UndoOnAnEmptyStoreLeavesItEmptyAndIdle) {
  StrokeStore store;

  store.undo();

  EXPECT_THAT(store.strokes(), IsEmpty());
  EXPECT_FALSE(store.isDrawing());
}

TEST(StrokeStore, UndoRemovesTheNewestStroke) {
  StrokeStore store = storeWithStrokesFrom({1, 2});

  store.undo();

  EXPECT_THAT(lastTimes(store), ElementsAre(1));
}

TEST(StrokeStore, UndoWhileDrawingRemovesTheOpenStrokeAndIgnoresPointsUntilTheNext) {
  StrokeStore store = storeWithStrokesFrom({1});
  store.begin(at(0.1, 0.1), kLime, 2);

  store.undo();
  store.add(at(0.2, 0.1), 3);

  EXPECT_FALSE(store.isDrawing());
  EXPECT_THAT(store.strokes(), ElementsAre(strokeOf(kCyan, {at(0.5, 0.5)})));

  store.begin(at(0.3, 0.3), kLime, 4);
  EXPECT_THAT(store.strokes(), SizeIs(2));
}

TEST(StrokeStore, ClearRemovesEveryStrokeAndStopsDrawing) {
  StrokeStore store = storeWithStrokesFrom({1, 2});
  store.begin(at(0.1, 0.1), kLime, 3);

  store.clear();

  EXPECT_THAT(store.strokes(), IsEmpty());
  EXPECT_FALSE(store.isDrawing());
}

TEST(StrokeStore, ASnapshotSharesThePointsOfEveryStroke) {
  StrokeStore store = storeWithStrokesFrom({1, 2});

  const std::vector<Stroke> snapshot = store.strokes();

  for (std::size_t i = 0; i < snapshot.size(); ++i) {
    EXPECT_TRUE(snapshot[i].points.sharesPointsWith(store.strokes()[i].points));
  }
}

TEST(StrokeStore, ASnapshotNeverSeesLaterPoints) {
  StrokeStore store;
  store.begin(at(0.1, 0.5), kCyan, 1);

  const std::vector<Stroke> snapshot = store.strokes();
  store.add(at(0.2, 0.5), 2);
  store.end(3);

  EXPECT_THAT(snapshot, ElementsAre(strokeOf(kCyan, {at(0.1, 0.5)})));
  EXPECT_EQ(snapshot[0].lastTime, 1);
}

TEST(StrokeStore, DrawingWhileSnapshotsAreHeldCopiesNoPointOfAFinishedStroke) {
  StrokeStore store;
  for (int i = 0; i < 1000; ++i) {
    store.begin(at(0, 0.5), kCyan, i);
    for (int k = 1; k < 200; ++k) store.add(at(k / 200.0, 0.5), i);
    store.end(i);
  }
  const std::vector<Stroke> first = store.strokes();

  store.begin(at(0, 0.2), kLime, 1000);
  std::vector<std::vector<Stroke>> held;
  for (int k = 1; k < 20; ++k) {
    store.add(at(k / 100.0, 0.2), 1000 + k);
    held.push_back(store.strokes());
  }

  for (std::size_t i = 0; i < first.size(); ++i) {
    ASSERT_EQ(first[i].points.size(), 200u);
    EXPECT_TRUE(first[i].points.sharesPointsWith(store.strokes()[i].points));
    EXPECT_TRUE(first[i].points.sharesPointsWith(held.back()[i].points));
  }
}

TEST(StrokeStore, AnyOrderOfCallsKeepsTheStoreSound) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> coordinate(-0.5, 1.5);
  StrokeStore store;
  double now = 0;
  for (int i = 0; i < 20000; ++i) {
    now += 0.03;
    const StrokePoint point = i % 997 == 0 ? at(std::numeric_limits<double>::quiet_NaN(), 0)
                                           : at(coordinate(random), coordinate(random));
    switch (random() % 16) {
      case 0:
      case 1:
        store.begin(point, static_cast<int>(random()), now);
        break;
      case 2:
        store.end(now);
        break;
      case 3:
        store.undo();
        break;
      case 4:
        store.pruneFaded(now, 1);
        break;
      case 5:
        store.touch(now);
        break;
      case 6:
        if (i % 50 == 0) store.clear();
        break;
      default:
        store.add(point, now);
    }
    ASSERT_TRUE(!store.isDrawing() || !store.strokes().empty());
    for (const Stroke& stroke : store.strokes()) ASSERT_FALSE(stroke.points.empty());
  }
}

}  // namespace
}  // namespace strokes
