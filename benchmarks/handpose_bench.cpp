// One look at a 1280x720 frame, and what comes before the first one.

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "platform/handpose/hand_pose_detector.h"
#include "platform/handpose/network_vision.h"
#include "platform/handpose/sampling.h"

namespace bench {
namespace {

using platform::handpose::HandCrop;
using platform::handpose::NetworkVision;
using platform::handpose::Region;

constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr Region kWhole{0, 0, kWidth, kHeight};

/// A frame as a camera gives it: what is in it does not change the time of a single look.
pixels::Image noisyFrame() {
  std::mt19937 random(1);
  std::vector<std::uint8_t> data(4u * kWidth * kHeight);
  for (std::uint8_t& value : data) value = static_cast<std::uint8_t>(random());
  return pixels::Image::copyOf(data.data(), kWidth, kHeight, 4u * kWidth);
}

NetworkVision loadedNetworks() {
  return NetworkVision::load().value();
}

void samplingTheWholeFrame(benchmark::State& state) {
  const pixels::Image frame = noisyFrame();
  for (auto _ : state) benchmark::DoNotOptimize(sample(frame, kWhole, 192, 144));
}
BENCHMARK(samplingTheWholeFrame)->Unit(benchmark::kMillisecond);

void samplingAHand(benchmark::State& state) {
  const pixels::Image frame = noisyFrame();
  const HandCrop crop{{640, 360}, static_cast<double>(state.range(0)), 0.3};
  for (auto _ : state) benchmark::DoNotOptimize(sample(frame, crop, 128));
}
BENCHMARK(samplingAHand)->Arg(150)->Arg(300)->Arg(600)->Unit(benchmark::kMillisecond);

void searchingTheWholeFrame(benchmark::State& state) {
  const pixels::Image frame = noisyFrame();
  NetworkVision vision = loadedNetworks();
  for (auto _ : state) benchmark::DoNotOptimize(vision.find(frame, kWhole));
}
BENCHMARK(searchingTheWholeFrame)->Unit(benchmark::kMillisecond);

void readingAHand(benchmark::State& state) {
  const pixels::Image frame = noisyFrame();
  NetworkVision vision = loadedNetworks();
  const HandCrop crop{{640, 360}, 300, 0.3};
  for (auto _ : state) benchmark::DoNotOptimize(vision.read(frame, crop));
}
BENCHMARK(readingAHand)->Unit(benchmark::kMillisecond);

void loadingTheNetworks(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(NetworkVision::load());
}
BENCHMARK(loadingTheNetworks)->Unit(benchmark::kMillisecond);

/// From the first frame to its answer, as the program asks for it: the networks are loaded then.
void theFirstResult(benchmark::State& state) {
  const pixels::PixelBuffer frame{noisyFrame(), 0};
  for (auto _ : state) {
    platform::handpose::HandPoseDetector detector;
    benchmark::DoNotOptimize(detector.perform(frame));
  }
}
BENCHMARK(theFirstResult)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
