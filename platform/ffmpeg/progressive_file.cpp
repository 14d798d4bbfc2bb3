#include "platform/ffmpeg/progressive_file.h"

#include <cerrno>
#include <string>

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/av_handles.h"
#include "platform/ffmpeg/finishing_file.h"
#include "platform/media_time.h"

namespace platform::ffmpeg {

namespace {

/// What the index needs at most: for each frame its duration (8), size (4), whether it is a key
/// frame (4), and, were it a chunk of its own, its chunk's entry (12) and place (8).
std::int64_t indexBytes(std::int64_t frameCount) {
  return 8 * 1024 + 36 * frameCount;
}

std::string url(const std::filesystem::path& path) {
  return "file:" + path.string();
}

/// Copies every packet of the one stream of `from` into the file `to`, each lasting until the next.
int copyPackets(AVFormatContext& from, AVFormatContext& to, std::int64_t lastDuration) {
  PacketPtr packet(av_packet_alloc());
  PacketPtr next(av_packet_alloc());
  const auto read = [&] {
    const int code = av_read_frame(&from, next.get());
    if (code >= 0) {
      av_packet_rescale_ts(next.get(), from.streams[0]->time_base, to.streams[0]->time_base);
    }
    return code;
  };
  int code = read();
  while (code >= 0) {
    packet.swap(next);
    const int reading = read();
    if (reading < 0 && reading != AVERROR_EOF) return reading;
    packet->duration = reading < 0 ? lastDuration : next->pts - packet->pts;
    packet->pos = -1;
    code = av_write_frame(&to, packet.get());
    av_packet_unref(packet.get());
    if (code >= 0) code = to.pb->error;
    if (code >= 0) code = reading;
  }
  return code == AVERROR_EOF ? 0 : code;
}

int rewrite(const std::filesystem::path& from, const std::filesystem::path& to,
            std::int64_t frameCount, std::int64_t lastDuration) {
  AVFormatContext* opened = nullptr;
  int code = avformat_open_input(&opened, url(from).c_str(), nullptr, nullptr);
  if (code < 0) return code;
  const InputPtr input(opened);
  if (input->nb_streams != 1) return AVERROR_INVALIDDATA;

  AVFormatContext* made = nullptr;
  code = avformat_alloc_output_context2(&made, nullptr, "mp4", nullptr);
  if (code < 0) return code;
  const OutputPtr output(made);
  AVStream* stream = avformat_new_stream(made, nullptr);
  if (stream == nullptr) return AVERROR(ENOMEM);
  code = avcodec_parameters_copy(stream->codecpar, input->streams[0]->codecpar);
  if (code < 0) return code;
  stream->codecpar->codec_tag = 0;
  stream->time_base = {1, MediaTime::kTimescale};

  AVIOContext* io = nullptr;
  code = avio_open(&io, url(to).c_str(), AVIO_FLAG_WRITE);
  if (code < 0) return code;
  FileIoPtr file(io);
  made->pb = io;
  AVDictionary* options = nullptr;
  av_dict_set_int(&options, "moov_size", indexBytes(frameCount), 0);
  av_dict_set_int(&options, "video_track_timescale", MediaTime::kTimescale, 0);
  av_dict_set_int(&options, "movie_timescale", MediaTime::kTimescale, 0);
  code = avformat_write_header(made, &options);
  av_dict_free(&options);
  if (code >= 0) code = copyPackets(*input, *made, lastDuration);
  if (code >= 0) code = av_write_trailer(made);
  if (code >= 0) avio_flush(io);
  if (code >= 0) code = io->error;
  made->pb = nullptr;
  const int closed = avio_close(file.release());
  return code < 0 ? code : closed;
}

}  // namespace

Result<void> makeProgressive(const FragmentedFile& file, std::int64_t lastDuration) {
  const GrowingFile& bytes = file.bytes();
  const auto place = bytes.whereabouts();
  if (!place) return place.error();
  const auto made = FinishingFile::createBeside(place.value());
  if (!made) return made.error();
  FinishingFile& beside = *made.value();
  const int code = rewrite(bytes.handle(), beside.path(), file.frameCount(), lastDuration);
  if (code < 0) return avError(code);
  const auto placeByNow = bytes.whereabouts();  // Rewriting a long recording takes a while.
  if (!placeByNow) return placeByNow.error();
  return beside.takePlaceOf(placeByNow.value());
}

}  // namespace platform::ffmpeg
