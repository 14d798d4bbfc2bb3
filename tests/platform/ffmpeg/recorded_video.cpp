#include "tests/platform/ffmpeg/recorded_video.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <utility>

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/av_handles.h"
#include "platform/ffmpeg/bgra_to_i420.h"

namespace support {

using namespace platform::ffmpeg;

namespace {

std::string orEmpty(const char* name) {
  return name ? name : "";
}

std::uint8_t toByte(double value) {
  return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L));
}

/// BT.709 limited range to sRGB; colour samples between two are mixed, as players do.
pixels::Surface toSurface(const AVFrame& frame) {
  pixels::Surface surface(frame.width, frame.height);
  const auto sample = [&](int plane, double x, double y) {
    const int w = (frame.width + 1) / 2, h = (frame.height + 1) / 2;
    x = std::clamp(x, 0.0, w - 1.0);
    y = std::clamp(y, 0.0, h - 1.0);
    const int x0 = static_cast<int>(x), y0 = static_cast<int>(y);
    const int x1 = std::min(x0 + 1, w - 1), y1 = std::min(y0 + 1, h - 1);
    const auto at = [&](int i, int j) { return frame.data[plane][j * frame.linesize[plane] + i]; };
    const double fx = x - x0, fy = y - y0;
    return (at(x0, y0) * (1 - fx) + at(x1, y0) * fx) * (1 - fy) +
           (at(x0, y1) * (1 - fx) + at(x1, y1) * fx) * fy;
  };
  for (int y = 0; y < frame.height; ++y) {
    std::uint8_t* row = surface.view().row(y);
    for (int x = 0; x < frame.width; ++x) {
      const double luma = (frame.data[0][y * frame.linesize[0] + x] - 16) * 255.0 / 219;
      const double u = (sample(1, x / 2.0, (y - 0.5) / 2) - 128) * 255.0 / 224;
      const double v = (sample(2, x / 2.0, (y - 0.5) / 2) - 128) * 255.0 / 224;
      const double red = luma + 1.5748 * v;
      const double blue = luma + 1.8556 * u;
      row[4 * x] = toByte(blue);
      row[4 * x + 1] = toByte((luma - 0.2126 * red - 0.0722 * blue) / 0.7152);
      row[4 * x + 2] = toByte(red);
      row[4 * x + 3] = 255;
    }
  }
  return surface;
}

std::vector<std::uint8_t> withoutPadding(const AVFrame& frame, int plane) {
  const int width = plane == 0 ? frame.width : frame.width / 2;
  const int height = plane == 0 ? frame.height : frame.height / 2;
  std::vector<std::uint8_t> samples;
  for (int y = 0; y < height; ++y) {
    const std::uint8_t* row =
        frame.data[plane] + static_cast<std::ptrdiff_t>(y) * frame.linesize[plane];
    samples.insert(samples.end(), row, row + width);
  }
  return samples;
}

Planes planesOf(const AVFrame& frame) {
  return {withoutPadding(frame, 0), withoutPadding(frame, 1), withoutPadding(frame, 2)};
}

FramePtr toFrame(const pixels::Surface& picture) {
  FramePtr frame(av_frame_alloc());
  frame->format = AV_PIX_FMT_YUV420P;
  frame->width = picture.width();
  frame->height = picture.height();
  if (av_frame_get_buffer(frame.get(), static_cast<int>(kI420Alignment)) < 0) std::abort();
  const auto plane = [&](int i) {
    return Plane{frame->data[i], static_cast<std::size_t>(frame->linesize[i])};
  };
  convertBgraToI420(picture, {plane(0), plane(1), plane(2)});
  return frame;
}

/// Of values up to 255.
double psnrOf(double squares, double count) {
  if (squares == 0) return std::numeric_limits<double>::infinity();
  return 10 * std::log10(255.0 * 255.0 * count / squares);
}

std::vector<std::string> boxesOf(const std::filesystem::path& path) {
  std::vector<std::string> names;
  std::ifstream file(path, std::ios::binary);
  std::array<unsigned char, 16> head;
  while (file.read(reinterpret_cast<char*>(head.data()), 8)) {
    names.emplace_back(head.begin() + 4, head.begin() + 8);
    std::uint64_t size = 0;
    for (int i = 0; i < 4; ++i) size = size << 8 | head[i];
    std::uint64_t read = 8;
    if (size == 1) {
      file.read(reinterpret_cast<char*>(head.data()) + 8, 8);
      for (int i = 8; i < 16; ++i) size = size << 8 | head[i];
      read = 16;
    }
    if (size < read) break;
    file.seekg(static_cast<std::streamoff>(size - read), std::ios::cur);
  }
  return names;
}

void decode(AVFormatContext& input, AVCodecContext& decoder, Pictures pictures,
            RecordedVideo& video) {
  const PacketPtr packet(av_packet_alloc());
  const FramePtr frame(av_frame_alloc());
  int code = 0;
  while (code >= 0) {
    code = av_read_frame(&input, packet.get());
    const bool atEnd = code == AVERROR_EOF;
    if (code < 0 && !atEnd) break;
    code = avcodec_send_packet(&decoder, atEnd ? nullptr : packet.get());
    av_packet_unref(packet.get());
    if (code < 0) break;
    while ((code = avcodec_receive_frame(&decoder, frame.get())) >= 0) {
      RecordedVideo::Frame& seen = video.frames.emplace_back();
      seen.time = frame->pts;
      seen.isKey = frame->key_frame != 0;
      seen.kind = av_get_picture_type_char(frame->pict_type);
      if (pictures == Pictures::leaveOut) continue;
      seen.picture = toSurface(*frame);
      seen.planes = planesOf(*frame);
    }
    if (code == AVERROR_EOF) return;
    if (code == AVERROR(EAGAIN)) code = 0;
  }
  video.error = avError(code).description;
}

}  // namespace

std::vector<std::int64_t> RecordedVideo::times() const {
  std::vector<std::int64_t> all;
  for (const Frame& frame : frames) all.push_back(frame.time);
  return all;
}

RecordedVideo readVideo(const std::filesystem::path& path, Pictures pictures) {
  RecordedVideo video;
  video.boxes = boxesOf(path);
  AVFormatContext* opened = nullptr;
  int code = avformat_open_input(&opened, path.c_str(), nullptr, nullptr);
  if (code < 0) {
    video.error = avError(code).description;
    return video;
  }
  const InputPtr input(opened);
  avformat_find_stream_info(opened, nullptr);
  video.seconds = static_cast<double>(opened->duration) / AV_TIME_BASE;
  const AVStream& stream = *input->streams[0];
  const AVCodecParameters& codec = *stream.codecpar;
  video.codec = avcodec_get_name(codec.codec_id);
  video.width = codec.width;
  video.height = codec.height;
  video.timeBase = {stream.time_base.num, stream.time_base.den};
  const CodecContextPtr decoder(avcodec_alloc_context3(avcodec_find_decoder(codec.codec_id)));
  avcodec_parameters_to_context(decoder.get(), &codec);
  decoder->err_recognition = AV_EF_EXPLODE | AV_EF_CRCCHECK;
  code = avcodec_open2(decoder.get(), nullptr, nullptr);
  if (code < 0) {
    video.error = avError(code).description;
    return video;
  }
  decode(*input, *decoder, pictures, video);
  video.pixelFormat = orEmpty(av_get_pix_fmt_name(decoder->pix_fmt));
  video.range = orEmpty(av_color_range_name(decoder->color_range));
  video.primaries = orEmpty(av_color_primaries_name(decoder->color_primaries));
  video.transfer = orEmpty(av_color_transfer_name(decoder->color_trc));
  video.matrix = orEmpty(av_color_space_name(decoder->colorspace));
  video.chromaLocation = orEmpty(av_chroma_location_name(decoder->chroma_sample_location));
  return video;
}

Planes planesOf(const pixels::Surface& picture) {
  return planesOf(*toFrame(picture));
}

pixels::Surface withHalvedColor(const pixels::Surface& picture) {
  return toSurface(*toFrame(picture));
}

double psnr(const pixels::Surface& a, const pixels::Surface& b) {
  double squares = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < 4 * a.width(); ++x) {
      if (x % 4 == 3) continue;
      const double difference = a.row(y)[x] - b.row(y)[x];
      squares += difference * difference;
    }
  }
  return psnrOf(squares, 3.0 * a.width() * a.height());
}

double brightnessPsnr(const pixels::Surface& a, const pixels::Surface& b) {
  double squares = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      const auto channel = [&](int i) { return a.row(y)[4 * x + i] - b.row(y)[4 * x + i]; };
      const double difference = 0.0722 * channel(0) + 0.7152 * channel(1) + 0.2126 * channel(2);
      squares += difference * difference;
    }
  }
  return psnrOf(squares, 1.0 * a.width() * a.height());
}

double psnr(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b) {
  double squares = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const double difference = a[i] - b[i];
    squares += difference * difference;
  }
  return psnrOf(squares, static_cast<double>(a.size()));
}

}  // namespace support
