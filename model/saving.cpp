#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/app_model.h"
#include "platform/file_store.h"
#include "platform/picture_encoder.h"
#include "platform/save_panel.h"
#include "render/canvas_renderer.h"

namespace model {

namespace {

constexpr double kPictureWidth = 1920;

/// As "1080.0", whatever the person's locale.
std::string decimal(double value) {
  std::array<char, 400> text{};  // The largest double has 309 digits in front of the point.
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 1).ptr;
  return {text.data(), end};
}

std::string describeNoPicture(pixels::Size size) {
  return "CanvasRenderer.makeImage or PNG encoding returned nil for size (" + decimal(size.width) +
         ", " + decimal(size.height) + ").";
}

std::optional<std::vector<std::uint8_t>> drawPng(const render::RenderScene& scene,
                                                 pixels::Size size,
                                                 platform::PictureEncoder& encoder) {
  const auto picture = render::CanvasRenderer::makeImage(scene, size);
  if (!picture) return std::nullopt;
  auto png = encoder.encodePng(*picture);
  if (!png) return std::nullopt;
  return std::move(png).value();
}

}  // namespace

void AppModel::saveImage(bool withCamera) {
  const auto path = services_.savePanel.choose(
      {.kind = platform::FileKind::png, .proposedName = "Wavescribe.png", .proposedFolder = {}});
  if (!path) return;

  const pixels::Size size{kPictureWidth, std::round(kPictureWidth / canvasAspect())};
  const auto ground = withCamera ? background() : render::CanvasBackground::transparent;
  const auto png = drawPng(makeScene(ground, false), size, services_.pictureEncoder);
  if (!png) {
    report("The image could not be created.", describeNoPicture(size));
    return;
  }
  if (const auto saved = services_.files.replace(*path, *png); !saved) {
    report("The image could not be saved.", saved.error().description);
  }
}

}  // namespace model
