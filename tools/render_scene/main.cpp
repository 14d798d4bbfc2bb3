// Draws one scene: render_scene SCENE.json OUT.png
// Exit status: 0 done, 1 the picture could not be made or written, 2 the scene is malformed.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>

#include "platform/png/png_encoder.h"
#include "platform/std/atomic_file_store.h"
#include "render/canvas_renderer.h"
#include "scene_json.h"

namespace {

constexpr int kFailed = 1;
constexpr int kMalformed = 2;

int complain(const std::string& what, int status) {
  std::cerr << "render_scene: " << what << '\n';
  return status;
}

/// None where there is nothing to read. A folder can be opened, but reading it throws.
std::optional<std::string> contentsOf(const std::filesystem::path& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return std::nullopt;
  std::ifstream stream(path, std::ios::binary);
  if (!stream) return std::nullopt;
  return std::string{std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return complain("usage: render_scene SCENE.json OUT.png", kMalformed);
  const std::filesystem::path source = argv[1], target = argv[2];
  const auto text = contentsOf(source);
  if (!text) return complain(source.string() + ": cannot be read", kMalformed);

  const auto file = tools::sceneFromJson(*text, source.parent_path());
  if (!file) return complain(source.string() + ": " + file.error().description, kMalformed);
  const auto picture = render::CanvasRenderer::makeImage(file.value().scene, file.value().size);
  if (!picture) return complain("there is not enough memory for the picture", kFailed);
  const auto png = platform::PngEncoder().encodePng(*picture);
  if (!png) return complain(png.error().description, kFailed);
  const auto written = platform::AtomicFileStore().replace(target, png.value());
  if (!written) return complain(written.error().description, kFailed);
  return 0;
}
