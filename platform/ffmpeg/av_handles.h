#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <memory>

namespace platform::ffmpeg {

struct FreeCodecContext {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct FreeFrame {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct FreePacket {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FreeOutput {
  void operator()(AVFormatContext* context) const { avformat_free_context(context); }
};
struct CloseInput {
  void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
struct FreeIo {
  void operator()(AVIOContext* io) const {
    av_freep(&io->buffer);
    avio_context_free(&io);
  }
};
struct CloseIo {
  void operator()(AVIOContext* io) const { avio_close(io); }
};

using CodecContextPtr = std::unique_ptr<AVCodecContext, FreeCodecContext>;
using FramePtr = std::unique_ptr<AVFrame, FreeFrame>;
using PacketPtr = std::unique_ptr<AVPacket, FreePacket>;
using OutputPtr = std::unique_ptr<AVFormatContext, FreeOutput>;
using InputPtr = std::unique_ptr<AVFormatContext, CloseInput>;
using OwnIoPtr = std::unique_ptr<AVIOContext, FreeIo>;    ///< Over callbacks of ours.
using FileIoPtr = std::unique_ptr<AVIOContext, CloseIo>;  ///< Over a file of libavformat.

}  // namespace platform::ffmpeg
