#include "render/render_scene.h"

namespace render {

namespace {

constexpr std::array kAllBackgrounds{CanvasBackground::camera, CanvasBackground::black,
                                     CanvasBackground::white, CanvasBackground::transparent};

}  // namespace

std::string_view rawValue(CanvasBackground background) {
  switch (background) {
    case CanvasBackground::camera:
      return "camera";
    case CanvasBackground::black:
      return "black";
    case CanvasBackground::white:
      return "white";
    case CanvasBackground::transparent:
      return "transparent";
  }
  return {};
}

std::optional<CanvasBackground> canvasBackgroundFrom(std::string_view text) {
  for (const CanvasBackground background : kAllBackgrounds) {
    if (rawValue(background) == text) return background;
  }
  return std::nullopt;
}

}  // namespace render
