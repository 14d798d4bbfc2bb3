#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "pixels/surface.h"
#include "platform/ffmpeg/av_handles.h"
#include "platform/media_time.h"
#include "platform/result.h"
#include "platform/video_writer.h"

namespace platform::ffmpeg {

/// Turns pictures into H.264 packets that every player knows: 4:2:0, BT.709, no B-frames.
/// One thread.
class H264Encoder {
 public:
  /// x264's constant quality. Chosen by looking at thin bright lines on black after decoding; two
  /// steps more and their colour begins to crawl.
  static constexpr double kQuality = 18;
  /// How far apart key frames are at most, as far as frames come that often: seeking and the first
  /// picture after a crash need one.
  static constexpr double kKeyFrameSeconds = 0.95;

  using PacketSink = std::function<Result<void>(AVPacket&)>;

  static Result<std::unique_ptr<H264Encoder>> open(const VideoSettings& settings);

  const AVCodecContext& codec() const { return *codec_; }

  /// Gives every packet that is ready to `sink`. `picture` has the settings' size and no alpha.
  Result<void> encode(const pixels::Surface& picture, MediaTime time, const PacketSink& sink);
  /// Gives the packets that are left.
  Result<void> drain(const PacketSink& sink);

 private:
  explicit H264Encoder(CodecContextPtr codec);
  bool shouldBeKeyFrame(std::int64_t time) const;
  Result<void> send(const AVFrame* frame, const PacketSink& sink);

  CodecContextPtr codec_;
  FramePtr frame_;
  PacketPtr packet_;
  std::optional<std::int64_t> lastKeyFrame_;
  std::int64_t lastFrame_ = 0;
};

}  // namespace platform::ffmpeg
