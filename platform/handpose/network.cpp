#include "platform/handpose/network.h"

#include <utility>

namespace platform::handpose {
namespace {

const cv::String kInputName = "picture";

Error failure(const NetworkLayout& layout, const std::string& reason) {
  return {"The network \"" + layout.name + "\" cannot be used: " + reason + "."};
}

std::string inWords(const std::vector<int>& shape) {
  std::string text;
  for (int length : shape) text += (text.empty() ? "" : " x ") + std::to_string(length);
  return text.empty() ? "nothing" : text;
}

std::vector<int> shapeOf(const cv::Mat& matrix) {
  return {matrix.size.p, matrix.size.p + matrix.dims};
}

void splitIntoPlanes(const cv::Mat& bgra, cv::Mat& planes) {
  const std::size_t area = bgra.total();
  float* const blue = planes.ptr<float>();
  float* const green = blue + area;
  float* const red = green + area;
  std::size_t i = 0;
  for (int y = 0; y < bgra.rows; ++y) {
    const std::uint8_t* pixel = bgra.ptr<std::uint8_t>(y);
    for (int x = 0; x < bgra.cols; ++x, ++i, pixel += 4) {
      blue[i] = pixel[0];
      green[i] = pixel[1];
      red[i] = pixel[2];
    }
  }
}

}  // namespace

Network::Network(const cv::dnn::Net& net, NetworkLayout layout)
    : net_(net), layout_(std::move(layout)) {
  for (const NetworkOutput& output : layout_.outputs) outputNames_.push_back(output.name);
  planes_.create(std::vector<int>{1, 3, layout_.height, layout_.width}, CV_32F);
}

Result<Network> Network::load(std::span<const std::uint8_t> file, const NetworkLayout& layout) {
  try {
    Network network(
        cv::dnn::readNetFromONNX(reinterpret_cast<const char*>(file.data()), file.size()), layout);
    network.net_.setPreferableBackend(cv::dnn::DNN_BACKEND_OPENCV);
    network.net_.setPreferableTarget(cv::dnn::DNN_TARGET_CPU);
    const cv::Mat nothing(network.height(), network.width(), CV_8UC4, cv::Scalar::all(0));
    if (const auto outputs = network.look(nothing); !outputs) return outputs.error();
    return network;
  } catch (const std::exception& exception) {
    return failure(layout, exception.what());
  }
}

Result<std::vector<cv::Mat>> Network::look(const cv::Mat& bgra) {
  CV_Assert(bgra.type() == CV_8UC4 && bgra.cols == width() && bgra.rows == height());
  splitIntoPlanes(bgra, planes_);
  std::vector<cv::Mat> outputs;
  try {
    net_.setInput(planes_, kInputName);
    net_.forward(outputs, outputNames_);
  } catch (const std::exception& exception) {
    return failure(layout_, exception.what());
  }
  if (const auto checked = checkOutputs(outputs); !checked) return checked.error();
  return outputs;
}

Result<void> Network::checkOutputs(const std::vector<cv::Mat>& outputs) const {
  for (std::size_t i = 0; i < layout_.outputs.size(); ++i) {
    const NetworkOutput& expected = layout_.outputs[i];
    const std::vector<int> shape = i < outputs.size() ? shapeOf(outputs[i]) : std::vector<int>();
    if (shape != expected.shape || outputs[i].type() != CV_32F || !outputs[i].isContinuous()) {
      return failure(layout_, "its output \"" + expected.name + "\" is " + inWords(shape) +
                                  " instead of " + inWords(expected.shape));
    }
  }
  return {};
}

}  // namespace platform::handpose
