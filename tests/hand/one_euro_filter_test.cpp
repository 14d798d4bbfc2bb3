#include "hand/one_euro_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numbers>

namespace hand {
namespace {

/// The tracker's settings for the position of the pen.
OneEuroFilter penFilter() {
  return {2.0, 10.0};
}

struct PublishedSample {
  double noisy;
  double filtered;
};

/// A sine with noise, sampled 120 times a second, and what the authors' own filter makes of it with
/// a minimum cutoff of 1 Hz, a beta of 0.1 and a speed cutoff of 1 Hz: the first half second of
/// groundTruth.csv (columns "noisy" and "filtered") in github.com/casiez/OneEuroFilter, commit
/// 56126d84. Its six digits bound how well one can agree.
constexpr PublishedSample kPublished[] = {
    {-0.0385099, -0.0385099}, {-0.0280664, -0.0379872}, {0.048622, -0.0334427},
    {0.111498, -0.0252696},   {0.053026, -0.0207099},   {0.120548, -0.0119912},
    {0.00972308, -0.0106507}, {0.074193, -0.00526521},  {-0.0236801, -0.00641239},
    {0.0462396, -0.00308863}, {0.0892027, 0.00291027},  {0.158329, 0.0135545},
    {0.0423086, 0.01552},     {0.0887203, 0.0206024},   {0.039102, 0.0218784},
    {0.140277, 0.030313},     {0.156938, 0.0396331},    {0.0961089, 0.0438101},
    {0.216881, 0.0572083},    {0.067538, 0.057997},     {0.0737634, 0.0591871},
    {0.0989231, 0.0621793},   {0.148209, 0.0687489},    {0.0959887, 0.0708137},
    {0.225627, 0.0829925},    {0.292078, 0.100305},     {0.185221, 0.107391},
    {0.133595, 0.109553},     {0.216387, 0.118501},     {0.316189, 0.135759},
    {0.156782, 0.137568},     {0.164811, 0.139884},     {0.167903, 0.142239},
    {0.273214, 0.153484},     {0.305514, 0.166876},     {0.342528, 0.182828},
    {0.334796, 0.196929},     {0.210729, 0.198186},     {0.401551, 0.217377},
    {0.267666, 0.222081},     {0.365411, 0.235717},     {0.429558, 0.254702},
    {0.400613, 0.269202},     {0.377235, 0.279981},     {0.290475, 0.281006},
    {0.3709, 0.289789},       {0.343945, 0.295032},     {0.409876, 0.306231},
    {0.449394, 0.320391},     {0.408817, 0.32913},      {0.460212, 0.342217},
    {0.350016, 0.342979},     {0.460729, 0.354566},     {0.460575, 0.36504},
    {0.422736, 0.370691},     {0.494404, 0.382917},     {0.370493, 0.381722},
    {0.458812, 0.389119},     {0.437653, 0.39373},      {0.540203, 0.407881},
};

TEST(OneEuroFilter, AgreesWithThePublishedTableOfItsAuthors) {
  OneEuroFilter filter(1.0, 0.1);
  for (std::size_t i = 0; i < std::size(kPublished); ++i) {
    const double time = static_cast<double>(i) / 120;
    EXPECT_NEAR(filter.filter(kPublished[i].noisy, time), kPublished[i].filtered, 2e-6) << i;
  }
}

TEST(OneEuroFilter, ReturnsTheFirstSampleUnchanged) {
  OneEuroFilter filter = penFilter();
  EXPECT_EQ(filter.filter(0.7, 12.0), 0.7);
}

TEST(OneEuroFilter, FollowsAWorkedExample) {
  OneEuroFilter filter = penFilter();
  filter.filter(0.5, 0.0);

  const double filtered = filter.filter(0.6, 0.1);

  const double speed = 1 / (1 + 1.5915494309189535);
  const double tau = 1 / (2 * std::numbers::pi * (2.0 + 10.0 * speed));
  EXPECT_NEAR(filtered, 0.5 + 0.1 / (1 + tau / 0.1), 1e-15);
  EXPECT_NEAR(filtered, 0.5786, 5e-5);
}

TEST(OneEuroFilter, AResetMakesTheNextSampleTheFirstWithoutSpeed) {
  OneEuroFilter used = penFilter();
  used.filter(0.1, 0.0);
  used.filter(0.9, 0.1);
  OneEuroFilter fresh = penFilter();

  used.reset();

  EXPECT_EQ(used.filter(0.5, 0.2), 0.5);
  fresh.filter(0.5, 0.2);
  EXPECT_EQ(used.filter(0.6, 0.3), fresh.filter(0.6, 0.3));
}

TEST(OneEuroFilter, EqualTimesCountAsTheShortestStep) {
  OneEuroFilter repeated = penFilter();
  repeated.filter(0.5, 1.0);
  OneEuroFilter stepped = penFilter();
  stepped.filter(0.5, 0.0);

  EXPECT_EQ(repeated.filter(0.6, 1.0), stepped.filter(0.6, OneEuroFilter::kShortestStepSeconds));
}

TEST(OneEuroFilter, AJumpWithinOneTimeIsASpeedOf240JumpsASecond) {
  OneEuroFilter filter = penFilter();
  filter.filter(0.5, 1.0);

  const double filtered = filter.filter(0.6, 1.0);

  const double dt = 1.0 / 240;
  const double speed = 0.1 * 240 / (1 + 1 / (2 * std::numbers::pi) / dt);
  const double tau = 1 / (2 * std::numbers::pi * (2.0 + 10.0 * speed));
  EXPECT_NEAR(filtered, 0.5 + 0.1 / (1 + tau / dt), 1e-12);
}

TEST(OneEuroFilter, TimeRunningBackwardsCountsAsTheShortestStep) {
  OneEuroFilter backwards = penFilter();
  backwards.filter(0.5, 5.0);
  OneEuroFilter repeated = penFilter();
  repeated.filter(0.5, 5.0);

  EXPECT_EQ(backwards.filter(0.6, 1.0), repeated.filter(0.6, 5.0));
}

TEST(OneEuroFilter, GoesOnFromTheEarlierTimeAfterTimeRanBackwards) {
  OneEuroFilter backwards = penFilter();
  backwards.filter(0.5, 5.0);
  backwards.filter(0.6, 1.0);
  OneEuroFilter steady = penFilter();
  steady.filter(0.5, 1.0);
  steady.filter(0.6, 1.0);

  EXPECT_EQ(backwards.filter(0.7, 1.1), steady.filter(0.7, 1.1));
}

TEST(OneEuroFilter, AConstantInputReturnsThatConstant) {
  OneEuroFilter filter = penFilter();
  for (int i = 0; i < 100; ++i) EXPECT_DOUBLE_EQ(filter.filter(0.3, i / 30.0), 0.3);
}

TEST(OneEuroFilter, ALongGapIsUsedAsItIs) {
  OneEuroFilter filter = penFilter();
  filter.filter(0.2, 0.0);
  EXPECT_NEAR(filter.filter(0.8, 60.0), 0.8, 0.001);
}

TEST(OneEuroFilter, CalmsARestingValueAndFollowsAMovingOne) {
  OneEuroFilter resting = penFilter();
  OneEuroFilter moving = penFilter();
  double restingSwing = 0;
  double lag = 0;
  for (int i = 0; i < 300; ++i) {
    const double time = i / 30.0;
    const double noise = i % 2 == 0 ? 0.002 : -0.002;
    const double calmed = resting.filter(0.5 + noise, time);
    const double followed = moving.filter(0.5 * time, time);
    if (i < 100) continue;
    restingSwing = std::max(restingSwing, std::abs(calmed - 0.5));
    lag = std::max(lag, (0.5 * time - followed) / 0.5);
  }
  EXPECT_LT(restingSwing, 0.001);
  EXPECT_LT(lag, 0.030) << "seconds behind at half a canvas a second";
}

}  // namespace
}  // namespace hand
