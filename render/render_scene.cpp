#include "render/render_scene.h"

namespace render {

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
  for (const CanvasBackground background : allBackgrounds) {
    if (rawValue(background) == text) return background;
  }
  return std::nullopt;
}

}  // namespace render
