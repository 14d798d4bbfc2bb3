#include "tools/replay/options.h"

#include <gtest/gtest.h>

#include <vector>

namespace replay {
namespace {

platform::Result<Options> parsed(const std::vector<const char*>& arguments) {
  return optionsFrom(arguments);
}

TEST(ReplayOptions, TakeAClipAlone) {
  const auto options = parsed({"clip.webm"});
  ASSERT_TRUE(options);
  EXPECT_EQ(options.value().clip, "clip.webm");
  EXPECT_FALSE(options.value().realtime);
  EXPECT_FALSE(options.value().picture);
}

TEST(ReplayOptions, TakeEverythingInAnyOrder) {
  const auto options =
      parsed({"--picture", "p.png", "--realtime", "clip", "--hands", "h.jsonl", "--record-hands",
              "r.jsonl", "--video", "v.mp4", "--trace", "t.jsonl"});
  ASSERT_TRUE(options);
  EXPECT_EQ(options.value().clip, "clip");
  EXPECT_EQ(options.value().picture, "p.png");
  EXPECT_EQ(options.value().video, "v.mp4");
  EXPECT_EQ(options.value().trace, "t.jsonl");
  EXPECT_EQ(options.value().hands, "h.jsonl");
  EXPECT_EQ(options.value().recordHands, "r.jsonl");
  EXPECT_TRUE(options.value().realtime);
}

TEST(ReplayOptions, SayWhatIsWrong) {
  EXPECT_EQ(parsed({}).error().description, "No clip is given.");
  EXPECT_EQ(parsed({"clip", "--picture"}).error().description, "--picture needs a path.");
  EXPECT_EQ(parsed({"clip", "--loud"}).error().description, "--loud is not understood.");
  EXPECT_EQ(parsed({"clip", "another"}).error().description, "another is not understood.");
}

}  // namespace
}  // namespace replay
