#include "platform/recorded/hand_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "platform/recorded/recorded_hand_pose_request.h"
#include "platform/recorded/recording_hand_pose_request.h"
#include "tests/support/fake_hand_pose_request.h"
#include "tests/support/hands.h"

namespace platform {
namespace {

using support::pinchingHand;
using support::spreadHand;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Leaves nothing behind.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& text) { std::ofstream(path_) << text; }
  ~TemporaryFile() { std::filesystem::remove(path_); }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_ =
      std::filesystem::path(testing::TempDir()) /
      (std::string("hands-") + testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST(HandLog, AnEntryReadsBackExactly) {
  const HandLogEntry entry{1.0 / 3, std::vector{pinchingHand({.x = 0.1 + 0.2}),
                                                spreadHand({.chirality = Chirality::left})}};
  const HandLogEntry read = fromLine(toLine(entry)).value();
  EXPECT_EQ(read.time, entry.time);
  EXPECT_EQ(read.answer.value(), entry.answer.value());
}

TEST(HandLog, JointsThatWereNotSeenStayAbsent) {
  HandObservation hand = pinchingHand({.chirality = Chirality::right});
  hand[HandJoint::ringTip].reset();
  const std::string line = toLine({0, std::vector{hand}});
  EXPECT_THAT(line, testing::Not(HasSubstr("ringTip")));
  EXPECT_THAT(fromLine(line).value().answer.value(), ElementsAre(hand));
}

TEST(HandLog, ConfidencesAreWrittenAsPeopleWriteThem) {
  HandObservation hand;
  hand[HandJoint::wrist] = RecognizedPoint{0.5, 0.25, 0.9F};
  EXPECT_THAT(toLine({0, std::vector{hand}}), HasSubstr("\"wrist\":[0.5,0.25,0.9]"));
}

TEST(HandLog, AFailureKeepsItsWords) {
  const HandLogEntry read = fromLine(toLine({2.5, Error{"The \"network\" is gone."}})).value();
  ASSERT_FALSE(read.answer);
  EXPECT_EQ(read.answer.error().description, "The \"network\" is gone.");
}

TEST(HandLog, AFileIsReadLineByLine) {
  const TemporaryFile file("{\"time\":0.0,\"hands\":[]}\n{\"time\":0.5,\"error\":\"No.\"}\n");
  const auto log = readHandLog(file.path());
  ASSERT_TRUE(log);
  ASSERT_EQ(log.value().size(), 2u);
  EXPECT_THAT(log.value()[0].answer.value(), IsEmpty());
  EXPECT_EQ(log.value()[1].time, 0.5);
}

TEST(HandLog, AMistakeInAFileIsNamedWithItsLine) {
  for (const char* wrong : {"nonsense", "{\"hands\":[]}", "{\"time\":0,\"hands\":[{}]}",
                            "{\"time\":0,\"hands\":[{\"chirality\":\"middle\"}]}",
                            "{\"time\":0,\"hands\":[{\"chirality\":\"left\",\"wrist\":[1]}]}"}) {
    const TemporaryFile file(std::string("{\"time\":0.0,\"hands\":[]}\n") + wrong + "\n");
    const auto log = readHandLog(file.path());
    ASSERT_FALSE(log) << wrong;
    EXPECT_THAT(log.error().description, HasSubstr("line 2")) << wrong;
  }
}

TEST(HandLog, AMissingFileIsNamed) {
  const auto log = readHandLog("no/such/hands.jsonl");
  ASSERT_FALSE(log);
  EXPECT_EQ(log.error().description, "no/such/hands.jsonl cannot be read.");
}

TEST(RecordedHandPoseRequest, RepeatsWhatWasSaidAboutTheFrameOfTheSameTime) {
  const HandObservation hand = pinchingHand({});
  RecordedHandPoseRequest request({{0.0, std::vector<HandObservation>{}},
                                   {1.0 / 30, std::vector{hand}},
                                   {2.0 / 30, Error{"Too dark."}}});
  EXPECT_EQ(request.perform(support::frameOf(4, 4, 0.0667)).error().description, "Too dark.");
  EXPECT_THAT(request.perform(support::frameOf(4, 4, 0.0333)).value(), ElementsAre(hand));
  EXPECT_THAT(request.perform(support::frameOf(4, 4, 0.0)).value(), IsEmpty());
}

TEST(RecordedHandPoseRequest, FailsForAFrameThatWasNotRecorded) {
  RecordedHandPoseRequest request(
      {{0.0, std::vector<HandObservation>{}}, {1.0, std::vector<HandObservation>{}}});
  EXPECT_FALSE(request.perform(support::frameOf(4, 4, 0.5)));
  EXPECT_FALSE(request.perform(support::frameOf(4, 4, 1.1)));
}

TEST(RecordingHandPoseRequest, WritesDownWhatTheDetectorSaysAndPassesItOn) {
  support::FakeHandPoseRequest detector;
  std::ostringstream log;
  RecordingHandPoseRequest request(detector, log);
  const HandObservation hand = spreadHand({.chirality = Chirality::right});
  detector.nextSees({hand});
  detector.nextFails("Too dark.");

  EXPECT_THAT(request.perform(support::frameOf(4, 4, 0.25)).value(), ElementsAre(hand));
  EXPECT_EQ(request.perform(support::frameOf(4, 4, 0.5)).error().description, "Too dark.");

  EXPECT_EQ(log.str(),
            toLine({0.25, std::vector{hand}}) + "\n" + toLine({0.5, Error{"Too dark."}}) + "\n");
}

}  // namespace
}  // namespace platform
