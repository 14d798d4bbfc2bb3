#include "tools/replay/frame_source.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/gstreamer/clip_reader.h"

namespace replay {
namespace {

using platform::Error;
using platform::Result;
using platform::gstreamer::ClipReader;
using Frame = std::optional<pixels::PixelBuffer>;

constexpr double kPicturesPerSecond = 30;

class Clip final : public FrameSource {
 public:
  explicit Clip(std::unique_ptr<ClipReader> reader) : reader_(std::move(reader)) {}
  Result<Frame> next() override { return reader_->next(); }

 private:
  std::unique_ptr<ClipReader> reader_;
};

class PictureFolder final : public FrameSource {
 public:
  explicit PictureFolder(std::vector<std::filesystem::path> pictures)
      : pictures_(std::move(pictures)) {}

  Result<Frame> next() override {
    if (next_ == pictures_.size()) return Frame{};
    const std::filesystem::path& path = pictures_[next_];
    auto reader = ClipReader::open(path);
    if (!reader) return Error{path.string() + ": " + reader.error().description};
    Result<Frame> frame = reader.value()->next();
    if (!frame) return frame;
    Frame picture = std::move(frame).value();
    if (!picture) return Error{path.string() + " holds no picture."};
    picture->time = static_cast<double>(next_++) / kPicturesPerSecond;
    return picture;
  }

 private:
  const std::vector<std::filesystem::path> pictures_;
  std::size_t next_ = 0;
};

/// The last number in a file's name; none when it has no digits.
std::optional<unsigned long long> numberOf(const std::filesystem::path& path) {
  const std::string stem = path.stem().string();
  const auto isDigit = [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; };
  const auto last = std::find_if(stem.rbegin(), stem.rend(), isDigit);
  const auto first = std::find_if_not(last, stem.rend(), isDigit);
  if (first == last) return std::nullopt;
  const std::string digits(first.base(), last.base());
  return digits.size() > 18 ? std::nullopt : std::optional(std::stoull(digits));
}

Result<std::unique_ptr<FrameSource>> openFolder(const std::filesystem::path& folder) {
  std::vector<std::pair<unsigned long long, std::filesystem::path>> numbered;
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator(folder, failure)) {
    if (const auto number = numberOf(entry.path()); number && entry.is_regular_file(failure)) {
      numbered.emplace_back(*number, entry.path());
    }
  }
  if (failure) return Error{folder.string() + ": " + failure.message()};
  if (numbered.empty()) return Error{folder.string() + " holds no numbered pictures."};
  std::ranges::sort(numbered);
  std::vector<std::filesystem::path> pictures;
  pictures.reserve(numbered.size());
  for (auto& [number, path] : numbered) pictures.push_back(std::move(path));
  return std::unique_ptr<FrameSource>(std::make_unique<PictureFolder>(std::move(pictures)));
}

}  // namespace

Result<std::unique_ptr<FrameSource>> openFrames(const std::filesystem::path& path) {
  std::error_code unreadable;  // Said by the reader, in words.
  if (std::filesystem::is_directory(path, unreadable)) return openFolder(path);
  auto reader = ClipReader::open(path);
  if (!reader) return Error{path.string() + ": " + reader.error().description};
  return std::unique_ptr<FrameSource>(std::make_unique<Clip>(std::move(reader).value()));
}

}  // namespace replay
