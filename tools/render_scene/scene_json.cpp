#include "scene_json.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "platform/png/read_png.h"

namespace tools {

namespace {

using nlohmann::json;

constexpr double kLargestSide = 32767;

/// What is wrong, starting with the field's name. Never leaves this file.
struct Malformed {
  std::string reason;
};

/// A value together with its place in the file, such as strokes[3].colorIndex.
class Field {
 public:
  Field(const json& value, std::string name) : value_(value), name_(std::move(name)) {}

  [[noreturn]] void fail(const std::string& wanted) const { throw Malformed{name_ + " " + wanted}; }

  Field operator[](const char* key) const {
    const auto found = value_.find(key);
    const std::string name = name_.empty() ? key : name_ + "." + key;
    if (found == value_.end()) throw Malformed{name + " is missing"};
    return {*found, name};
  }

  /// Absent and null are the same.
  bool has(const char* key) const {
    const auto found = value_.find(key);
    return found != value_.end() && !found->is_null();
  }

  void expectObject() const {
    if (!value_.is_object()) fail("must be an object");
  }

  double number() const {
    if (!value_.is_number()) fail("must be a number");
    return value_.get<double>();
  }

  bool boolean() const {
    if (!value_.is_boolean()) fail("must be true or false");
    return value_.get<bool>();
  }

  std::string text() const {
    if (!value_.is_string()) fail("must be text");
    return value_.get<std::string>();
  }

  int integer() const {
    using Limits = std::numeric_limits<int>;
    if (!value_.is_number_integer()) fail("must be a whole number");
    const bool fits = value_.is_number_unsigned()
                          ? value_.get<std::uint64_t>() <= static_cast<unsigned>(Limits::max())
                          : value_.get<std::int64_t>() >= Limits::min();
    if (!fits) fail("is too large");
    return value_.get<int>();
  }

  double side() const {
    const double length = number();
    if (!(length >= 1 && length <= kLargestSide)) fail("must be from 1 to 32767");
    return length;
  }

  std::vector<Field> elements() const {
    if (!value_.is_array()) fail("must be a list");
    std::vector<Field> result;
    for (std::size_t i = 0; i < value_.size(); ++i)
      result.emplace_back(value_[i], name_ + "[" + std::to_string(i) + "]");
    return result;
  }

 private:
  const json& value_;
  std::string name_;
};

strokes::StrokePoint pointFrom(const Field& field) {
  const std::vector<Field> numbers = field.elements();
  if (numbers.size() != 3) field.fail("must be [x, y, width]");
  return {numbers[0].number(), numbers[1].number(), numbers[2].number()};
}

strokes::Stroke strokeFrom(const Field& field) {
  field.expectObject();
  std::vector<strokes::StrokePoint> points;
  for (const Field& point : field["points"].elements()) points.push_back(pointFrom(point));
  return {{},
          strokes::StrokePoints(std::move(points)),
          field["colorIndex"].integer(),
          field["lastTime"].number()};
}

render::CursorState cursorFrom(const Field& field) {
  field.expectObject();
  return {field["x"].number(), field["y"].number(), field["down"].boolean(),
          field["width"].number(), field["colorIndex"].integer()};
}

pixels::Image frameFrom(const Field& field, const std::filesystem::path& folder) {
  auto picture = platform::readPng(folder / field.text());
  if (!picture) field.fail("cannot be read: " + picture.error().description);
  return std::move(picture).value();
}

SceneFile sceneFrom(const Field& file, const std::filesystem::path& folder) {
  SceneFile result;
  render::RenderScene& scene = result.scene;
  result.size = {file["width"].side(), file["height"].side()};
  const auto background = render::canvasBackgroundFrom(file["background"].text());
  if (!background) file["background"].fail("must be camera, black, white or transparent");
  scene.background = *background;
  if (file.has("frame")) scene.frame = frameFrom(file["frame"], folder);
  scene.dim = file["dim"].number();
  for (const Field& stroke : file["strokes"].elements())
    scene.strokes.push_back(strokeFrom(stroke));
  scene.now = file["now"].number();
  scene.glow = file["glow"].boolean();
  scene.fadeEnabled = file["fadeEnabled"].boolean();
  scene.fadeSeconds = file["fadeSeconds"].number();
  if (file.has("cursor")) scene.cursor = cursorFrom(file["cursor"]);
  return result;
}

}  // namespace

platform::Result<SceneFile> sceneFromJson(std::string_view text,
                                          const std::filesystem::path& folder) {
  try {
    const json file = json::parse(text);
    if (!file.is_object()) return platform::Error{"the file must be an object"};
    return sceneFrom(Field(file, ""), folder);
  } catch (const json::exception& error) {
    return platform::Error{std::string("not JSON: ") + error.what()};
  } catch (const Malformed& malformed) {
    return platform::Error{malformed.reason};
  }
}

}  // namespace tools
