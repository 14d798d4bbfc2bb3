#include "platform/ffmpeg/fragmented_file.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/ffmpeg/av_error.h"
#include "platform/media_time.h"

namespace platform::ffmpeg {

namespace {
constexpr int kIoBufferBytes = 64 * 1024;
}  // namespace

Result<std::unique_ptr<FragmentedFile>> FragmentedFile::create(const std::filesystem::path& path) {
  auto file = GrowingFile::create(path);
  if (!file) return file.error();
  return std::unique_ptr<FragmentedFile>(new FragmentedFile(std::move(file).value()));
}

FragmentedFile::FragmentedFile(std::unique_ptr<GrowingFile> file)
    : file_(std::move(file)), pending_(av_packet_alloc()) {
  auto* buffer = static_cast<std::uint8_t*>(av_malloc(kIoBufferBytes));
  io_.reset(avio_alloc_context(buffer, kIoBufferBytes, 1, this, nullptr, &writeBytes, &seekTo));
}

Result<void> FragmentedFile::begin(const AVCodecContext& codec) {
  AVFormatContext* output = nullptr;
  int code = avformat_alloc_output_context2(&output, nullptr, "mp4", nullptr);
  if (code < 0) return avError(code);
  output_.reset(output);
  output->pb = io_.get();
  output->flags |= AVFMT_FLAG_CUSTOM_IO;
  AVStream* stream = avformat_new_stream(output, nullptr);
  if (stream == nullptr) return avError(AVERROR(ENOMEM));
  code = avcodec_parameters_from_context(stream->codecpar, &codec);
  if (code < 0) return avError(code);
  stream->time_base = {1, MediaTime::kTimescale};

  AVDictionary* options = nullptr;
  // Together, these leave the first frame its time although that is not zero.
  output->avoid_negative_ts = AVFMT_AVOID_NEG_TS_DISABLED;
  av_dict_set_int(&options, "use_editlist", 0, 0);
  av_dict_set(&options, "movflags", "empty_moov+default_base_moof+frag_custom+frag_discont", 0);
  av_dict_set_int(&options, "video_track_timescale", MediaTime::kTimescale, 0);
  av_dict_set_int(&options, "movie_timescale", MediaTime::kTimescale, 0);
  code = avformat_write_header(output, &options);
  av_dict_free(&options);
  if (code < 0) return avError(code);
  return flush();
}

Result<void> FragmentedFile::write(AVPacket& packet) {
  if (hasPending_) {
    if (auto written = writePending(packet.pts - pending_->pts); !written) return written;
  } else {
    fragmentStart_ = packet.pts;
  }
  av_packet_move_ref(pending_.get(), &packet);
  hasPending_ = true;
  const auto longest = static_cast<std::int64_t>(kFragmentSeconds * MediaTime::kTimescale);
  if (pending_->pts - fragmentStart_ < longest) return {};
  fragmentStart_ = pending_->pts;
  return cut();
}

Result<void> FragmentedFile::end(std::int64_t lastDuration) {
  if (hasPending_) {
    if (auto written = writePending(lastDuration); !written) return written;
    if (auto made = cut(); !made) return made;
  }
  if (const int code = av_write_trailer(output_.get()); code < 0) return avError(code);
  if (auto flushed = flush(); !flushed) return flushed;
  return file_->finish();
}

Result<void> FragmentedFile::writePending(std::int64_t duration) {
  pending_->duration = duration;
  pending_->stream_index = 0;
  const int code = av_write_frame(output_.get(), pending_.get());
  av_packet_unref(pending_.get());
  hasPending_ = false;
  if (code < 0) return avError(code);
  ++uncutFrames_;
  return {};
}

Result<void> FragmentedFile::cut() {
  if (const int code = av_write_frame(output_.get(), nullptr); code < 0) return avError(code);
  if (auto flushed = flush(); !flushed) return flushed;
  frameCount_ += std::exchange(uncutFrames_, 0);
  return {};
}

Result<void> FragmentedFile::flush() {
  avio_flush(io_.get());
  auto appended = file_->append(waiting_);
  waiting_.clear();
  return appended;
}

int FragmentedFile::writeBytes(void* self, std::uint8_t* bytes, int count) {
  auto& file = *static_cast<FragmentedFile*>(self);
  const auto at = static_cast<std::size_t>(file.position_ - file.file_->size());
  const auto end = at + static_cast<std::size_t>(count);
  if (file.waiting_.size() < end) file.waiting_.resize(end);
  std::copy_n(bytes, count, file.waiting_.begin() + static_cast<std::ptrdiff_t>(at));
  file.position_ += count;
  return count;
}

std::int64_t FragmentedFile::seekTo(void* self, std::int64_t offset, int whence) {
  auto& file = *static_cast<FragmentedFile*>(self);
  const std::int64_t begin = file.file_->size();
  const std::int64_t end = begin + static_cast<std::int64_t>(file.waiting_.size());
  if (whence == AVSEEK_SIZE) return end;
  if (whence != SEEK_SET || offset < begin || offset > end) return AVERROR(EINVAL);
  return file.position_ = offset;
}

}  // namespace platform::ffmpeg
