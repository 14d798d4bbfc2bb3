#pragma once

#include <cstdint>
#include <opencv2/dnn.hpp>
#include <span>
#include <string>
#include <vector>

#include "platform/result.h"

namespace platform::handpose {

/// One output of a network.
struct NetworkOutput {
  std::string name;
  std::vector<int> shape;
};

/// What a network must look like to be of use. Its one input is called "picture" and has the shape
/// 1 x 3 x height x width: planes of blue, green and red, 0 to 255.
struct NetworkLayout {
  std::string name;  ///< For error texts.
  int width = 0;
  int height = 0;
  std::vector<NetworkOutput> outputs;
};

/// A neural network that looks at small pictures. Calls must not overlap. A copy shares the
/// network.
class Network {
 public:
  /// Reads an ONNX file held in memory and tries it out once. Fails, and says why, where the file
  /// is damaged or its network is another one than `layout` describes.
  static Result<Network> load(std::span<const std::uint8_t> file, const NetworkLayout& layout);

  /// The outputs, in the order of the layout, as 32-bit floats without gaps; valid until the next
  /// call. `bgra`: 8-bit, four channels, of the layout's size.
  Result<std::vector<cv::Mat>> look(const cv::Mat& bgra);

  int width() const { return layout_.width; }
  int height() const { return layout_.height; }

 private:
  Network(const cv::dnn::Net& net, NetworkLayout layout);
  Result<void> checkOutputs(const std::vector<cv::Mat>& outputs) const;

  cv::dnn::Net net_;
  NetworkLayout layout_;
  std::vector<cv::String> outputNames_;
  cv::Mat planes_;  // 1 x 3 x height x width.
};

}  // namespace platform::handpose
