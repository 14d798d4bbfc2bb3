#include "tools/detect_hands/overlay.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <opencv2/imgproc.hpp>
#include <string>

namespace tools {
namespace {

using platform::Chirality;
using platform::handpose::kJointCount;
using platform::handpose::TrackedHand;

constexpr int kLeastWidth = 480;
constexpr double kSure = 0.3;  // The confidence above which the gesture rules use a joint.
constexpr std::size_t kJointsPerFinger = 4;

cv::Scalar colourOf(Chirality chirality) {
  switch (chirality) {
    case Chirality::left:
      return {255, 160, 0, 255};
    case Chirality::right:
      return {0, 120, 255, 255};
    case Chirality::unknown:
      break;
  }
  return {200, 200, 200, 255};
}

class HandDrawing {
 public:
  HandDrawing(cv::Mat& picture, double scale, const TrackedHand& hand)
      : picture_(picture), scale_(scale), hand_(hand), colour_(colourOf(hand.chirality)) {}

  void draw() {
    for (std::size_t joint = 1; joint < kJointCount; ++joint) {
      const bool startsFinger = joint % kJointsPerFinger == 1;
      cv::line(picture_, place(startsFinger ? 0 : joint - 1), place(joint), colour_, 1,
               cv::LINE_AA);
    }
    for (std::size_t joint = 0; joint < kJointCount; ++joint) {
      const bool isSure = hand_.landmarks[joint].confidence > kSure;
      cv::circle(picture_, place(joint), 3, colour_, isSure ? cv::FILLED : 1, cv::LINE_AA);
    }
    char text[32];
    std::snprintf(text, sizeof text, "%d %.2f", hand_.id, hand_.score);
    cv::putText(picture_, text, place(0) + cv::Point(5, 14), cv::FONT_HERSHEY_SIMPLEX, 0.4, colour_,
                1, cv::LINE_AA);
  }

 private:
  cv::Point place(std::size_t joint) const {
    const auto& at = hand_.landmarks[joint].at;
    return {cvRound(at.x * scale_), cvRound(at.y * scale_)};
  }

  cv::Mat& picture_;
  double scale_;
  const TrackedHand& hand_;
  cv::Scalar colour_;
};

}  // namespace

pixels::Image withHands(const pixels::Image& picture, const std::vector<TrackedHand>& hands) {
  const cv::Mat original(picture.height(), picture.width(), CV_8UC4,
                         const_cast<std::uint8_t*>(picture.row(0)), picture.strideBytes());
  const double scale = std::max(1.0, std::ceil(1.0 * kLeastWidth / picture.width()));
  cv::Mat drawn;
  cv::resize(original, drawn, cv::Size(), scale, scale, cv::INTER_CUBIC);
  for (const TrackedHand& hand : hands) HandDrawing(drawn, scale, hand).draw();
  return pixels::Image::copyOf(drawn.data, drawn.cols, drawn.rows, drawn.step);
}

}  // namespace tools
