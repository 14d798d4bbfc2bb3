#include "platform/ffmpeg/h264_encoder.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <thread>
#include <utility>

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/bgra_to_i420.h"

namespace platform::ffmpeg {

namespace {

/// One core encodes 720p several times faster than it comes; slow machines get some help where
/// painting leaves cores free.
int threadCount() {
  return std::clamp(static_cast<int>(std::thread::hardware_concurrency()) / 2, 1, 4);
}

/// Halved colour wants pairs of pixels. The codec would refuse others too, but forgets some memory.
bool canBeHalved(int side) {
  return side > 0 && side % 2 == 0;
}

CodecContextPtr describe(const AVCodec* h264, const VideoSettings& settings) {
  CodecContextPtr codec(avcodec_alloc_context3(h264));
  if (!codec) return nullptr;
  codec->width = settings.width;
  codec->height = settings.height;
  codec->time_base = {1, MediaTime::kTimescale};
  codec->framerate = av_d2q(settings.framesPerSecond, 1001000);
  codec->sample_aspect_ratio = {1, 1};
  codec->pix_fmt = AV_PIX_FMT_YUV420P;
  codec->color_range = AVCOL_RANGE_MPEG;
  codec->colorspace = AVCOL_SPC_BT709;
  codec->color_primaries = AVCOL_PRI_BT709;
  codec->color_trc = AVCOL_TRC_BT709;
  codec->chroma_sample_location = AVCHROMA_LOC_LEFT;
  codec->max_b_frames = 0;
  codec->gop_size = static_cast<int>(std::ceil(settings.framesPerSecond * 10));  // We ask sooner.
  codec->thread_count = threadCount();
  codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  av_opt_set(codec->priv_data, "preset", "superfast", 0);
  av_opt_set_double(codec->priv_data, "crf", H264Encoder::kQuality, 0);
  av_opt_set_int(codec->priv_data, "forced-idr", 1, 0);
  // Else every frame waits for the next, to see how long it lasts.
  av_opt_set(codec->priv_data, "x264-params", "force-cfr=1", 0);
  return codec;
}

}  // namespace

Result<std::unique_ptr<H264Encoder>> H264Encoder::open(const VideoSettings& settings) {
  if (!canBeHalved(settings.width) || !canBeHalved(settings.height))
    return Error{"A video's width and height are even."};
  const AVCodec* h264 = avcodec_find_encoder_by_name("libx264");
  if (h264 == nullptr) return Error{"There is no H.264 encoder."};
  CodecContextPtr codec = describe(h264, settings);
  if (!codec) return avError(AVERROR(ENOMEM));
  if (const int code = avcodec_open2(codec.get(), h264, nullptr); code < 0) return avError(code);
  return std::unique_ptr<H264Encoder>(new H264Encoder(std::move(codec)));
}

H264Encoder::H264Encoder(CodecContextPtr codec)
    : codec_(std::move(codec)), frame_(av_frame_alloc()), packet_(av_packet_alloc()) {
  frame_->format = codec_->pix_fmt;
  frame_->width = codec_->width;
  frame_->height = codec_->height;
}

Result<void> H264Encoder::encode(const pixels::Surface& picture, MediaTime time,
                                 const PacketSink& sink) {
  const int code = frame_->buf[0] == nullptr
                       ? av_frame_get_buffer(frame_.get(), static_cast<int>(kI420Alignment))
                       : av_frame_make_writable(frame_.get());
  if (code < 0) return avError(code);
  convertBgraToI420(picture,
                    {.y = {frame_->data[0], static_cast<std::size_t>(frame_->linesize[0])},
                     .u = {frame_->data[1], static_cast<std::size_t>(frame_->linesize[1])},
                     .v = {frame_->data[2], static_cast<std::size_t>(frame_->linesize[2])}});
  frame_->pts = time.value;
  const bool isKey = shouldBeKeyFrame(time.value);
  frame_->pict_type = isKey ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
  if (isKey) lastKeyFrame_ = time.value;
  lastFrame_ = time.value;
  return send(frame_.get(), sink);
}

/// When the next frame, coming as long after this one as this one after the last, would be too
/// late.
bool H264Encoder::shouldBeKeyFrame(std::int64_t time) const {
  constexpr auto kLongest = static_cast<std::int64_t>(kKeyFrameSeconds * MediaTime::kTimescale);
  return !lastKeyFrame_ || time + (time - lastFrame_) - *lastKeyFrame_ > kLongest;
}

Result<void> H264Encoder::drain(const PacketSink& sink) {
  return send(nullptr, sink);
}

Result<void> H264Encoder::send(const AVFrame* frame, const PacketSink& sink) {
  int code = avcodec_send_frame(codec_.get(), frame);
  while (code >= 0) {
    code = avcodec_receive_packet(codec_.get(), packet_.get());
    if (code == AVERROR(EAGAIN) || code == AVERROR_EOF) return {};
    if (code < 0) break;
    auto taken = sink(*packet_);
    av_packet_unref(packet_.get());
    if (!taken) return taken;
  }
  return avError(code);
}

}  // namespace platform::ffmpeg
