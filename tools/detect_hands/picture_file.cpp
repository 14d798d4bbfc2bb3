#include "tools/detect_hands/picture_file.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace tools {

platform::Result<pixels::Image> readPicture(const std::filesystem::path& path) {
  try {
    const cv::Mat bgr = cv::imread(path.string(), cv::IMREAD_COLOR);
    if (bgr.empty()) return platform::Error{"Cannot read " + path.string() + "."};
    cv::Mat bgra;
    cv::cvtColor(bgr, bgra, cv::COLOR_BGR2BGRA);
    return pixels::Image::copyOf(bgra.data, bgra.cols, bgra.rows, bgra.step);
  } catch (const cv::Exception& exception) {
    return platform::Error{"Cannot read " + path.string() + ": " + exception.what()};
  }
}

platform::Result<void> writePicture(const pixels::Image& picture,
                                    const std::filesystem::path& path) {
  try {
    const cv::Mat bgra(picture.height(), picture.width(), CV_8UC4,
                       const_cast<std::uint8_t*>(picture.row(0)), picture.strideBytes());
    cv::Mat bgr;
    cv::cvtColor(bgra, bgr, cv::COLOR_BGRA2BGR);
    if (cv::imwrite(path.string(), bgr)) return {};
    return platform::Error{"Cannot write " + path.string() + "."};
  } catch (const cv::Exception& exception) {
    return platform::Error{"Cannot write " + path.string() + ": " + exception.what()};
  }
}

}  // namespace tools
