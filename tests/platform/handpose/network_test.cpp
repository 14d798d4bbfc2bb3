#include "platform/handpose/network.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <vector>

#include "platform/handpose/embedded_networks.h"
#include "platform/handpose/hand_finder.h"
#include "platform/handpose/landmark_reader.h"

namespace platform::handpose {
namespace {

using testing::AnyOf;
using testing::HasSubstr;

const NetworkLayout kFinder{"hand_finder", 192, 144, {{"hands", {1, 7, 18, 24}}}};
const NetworkLayout kLandmarks{
    "hand_landmarks", 128, 128, {{"landmarks", {1, 21, 3}}, {"hand", {1, 2}}}};

std::string whyItFails(std::span<const std::uint8_t> file, const NetworkLayout& layout = kFinder) {
  const auto network = Network::load(file, layout);
  return network ? "" : network.error().description;
}

/// A network that the program ships.
struct Shipped {
  NetworkLayout layout;
  std::span<const std::uint8_t> (*file)();

  std::vector<std::uint8_t> bytes() const { return {file().begin(), file().end()}; }
  std::string whyFails(std::span<const std::uint8_t> damaged) const {
    return whyItFails(damaged, layout);
  }
  std::string refusal() const { return "The network \"" + layout.name + "\" cannot be used"; }

  friend void PrintTo(const Shipped& shipped, std::ostream* out) { *out << shipped.layout.name; }
};

class ShippedNetwork : public testing::TestWithParam<Shipped> {};
INSTANTIATE_TEST_SUITE_P(All, ShippedNetwork,
                         testing::Values(Shipped{kFinder, handFinderFile},
                                         Shipped{kLandmarks, handLandmarksFile}),
                         [](const auto& shipped) { return shipped.param.layout.name; });

TEST(Network, TheShippedNetworksCanBeUsed) {
  EXPECT_EQ(whyItFails(handFinderFile()), "");
  EXPECT_TRUE(HandFinder::load(handFinderFile()));
  EXPECT_TRUE(LandmarkReader::load(handLandmarksFile()));
}

TEST(Network, GivesItsOutputsInTheShapeOfTheLayout) {
  auto network = Network::load(handFinderFile(), kFinder);
  ASSERT_TRUE(network);
  auto usable = std::move(network).value();
  const auto outputs = usable.look(cv::Mat(144, 192, CV_8UC4, cv::Scalar::all(90)));
  ASSERT_TRUE(outputs);
  ASSERT_EQ(outputs.value().size(), 1u);
  EXPECT_EQ(outputs.value()[0].total(), 7u * 18 * 24);
}

TEST_P(ShippedNetwork, AnEmptyFileIsRefused) {
  EXPECT_THAT(GetParam().whyFails({}), HasSubstr(GetParam().refusal()));
}

TEST_P(ShippedNetwork, AFileOfSomethingElseIsRefused) {
  const std::vector<std::uint8_t> text(5000, 'x');
  EXPECT_THAT(GetParam().whyFails(text), HasSubstr(GetParam().refusal()));
}

TEST_P(ShippedNetwork, ATruncatedFileIsRefusedWhereverItEnds) {
  const auto bytes = GetParam().bytes();
  for (std::size_t tenth = 0; tenth < 10; ++tenth) {
    const std::span<const std::uint8_t> part(bytes.data(), bytes.size() * tenth / 10);
    EXPECT_THAT(GetParam().whyFails(part), HasSubstr(GetParam().refusal())) << tenth;
  }
}

TEST_P(ShippedNetwork, AFileWithAHoleIsRefused) {
  auto bytes = GetParam().bytes();
  bytes.erase(bytes.begin() + 2000, bytes.begin() + 2100);
  EXPECT_THAT(GetParam().whyFails(bytes), HasSubstr(GetParam().refusal()));
}

TEST_P(ShippedNetwork, DamagedDescriptionsNeverCrash) {
  const auto bytes = GetParam().bytes();
  for (std::size_t place = 0; place < 4000; place += 101) {
    auto damaged = bytes;
    damaged[place] ^= 0x55;
    EXPECT_THAT(GetParam().whyFails(damaged), AnyOf("", HasSubstr(GetParam().refusal()))) << place;
  }
}

TEST(Network, TheOtherNetworkIsRefused) {
  EXPECT_THAT(whyItFails(handLandmarksFile()), HasSubstr("cannot be used"));
  EXPECT_FALSE(HandFinder::load(handLandmarksFile()));
  EXPECT_FALSE(LandmarkReader::load(handFinderFile()));
}

TEST(Network, AnOutputOfAnotherShapeIsNamed) {
  NetworkLayout other = kFinder;
  other.outputs[0].shape = {1, 9, 18, 24};
  EXPECT_THAT(whyItFails(handFinderFile(), other),
              HasSubstr("its output \"hands\" is 1 x 7 x 18 x 24 instead of 1 x 9 x 18 x 24"));
}

TEST(Network, AnOutputThatDoesNotExistIsRefused) {
  NetworkLayout other = kFinder;
  other.outputs.push_back({"feet", {1, 2}});
  EXPECT_THAT(whyItFails(handFinderFile(), other), HasSubstr("cannot be used"));
}

}  // namespace
}  // namespace platform::handpose
