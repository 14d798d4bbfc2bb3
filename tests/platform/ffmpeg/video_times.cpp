// Prints when each frame of a video is shown, in seconds, a line each.
// usage: video_times PATH

#include <cstdio>

#include "platform/ffmpeg/av_handles.h"

using namespace platform::ffmpeg;

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  AVFormatContext* opened = nullptr;
  if (avformat_open_input(&opened, argv[1], nullptr, nullptr) < 0) return 1;
  const InputPtr input(opened);
  const PacketPtr packet(av_packet_alloc());
  int code = 0;
  while ((code = av_read_frame(opened, packet.get())) >= 0) {
    const AVStream& stream = *input->streams[packet->stream_index];
    std::printf("%.4f\n", static_cast<double>(packet->pts) * av_q2d(stream.time_base));
    av_packet_unref(packet.get());
  }
  return code == AVERROR_EOF ? 0 : 1;
}
