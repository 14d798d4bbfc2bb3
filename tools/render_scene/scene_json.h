#pragma once

#include <filesystem>
#include <string_view>

#include "pixels/size.h"
#include "platform/result.h"
#include "render/render_scene.h"

namespace tools {

/// A scene and how large a picture it is meant for.
struct SceneFile {
  render::RenderScene scene;
  pixels::Size size;  ///< Pixels.
};

/// Reads the text of a scene file: an object with the fields of RenderScene, "width" and "height"
/// in pixels, points as [x, y, w], "frame" as the path of a PNG or null, taken from `folder` unless
/// absolute, "cursor" as an object or null. Fails with the name of the first field that is wrong.
platform::Result<SceneFile> sceneFromJson(std::string_view text,
                                          const std::filesystem::path& folder);

}  // namespace tools
