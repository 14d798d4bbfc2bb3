#pragma once

#include <optional>
#include <vector>

#include "pixels/surface.h"
#include "render/canvas_mapping.h"
#include "render/picture_rows.h"
#include "render/render_scene.h"

namespace render {

/// What lies under the strokes: the mirrored, dimmed camera picture stretched to the canvas, a
/// plain colour, or nothing. Where the canvas's right or bottom edge cuts a pixel, it mixes with
/// what is there.
class Background {
 public:
  Background(const RenderScene& scene, const CanvasMapping& mapping,
             const pixels::SurfaceView& pixels);

  /// Draws all of it.
  void draw();

  /// Replaces the pixels from `left` up to `right` of row `y`, also outside the canvas, as if they
  /// had been transparent. `y` must not decrease.
  void replaceRow(int y, int left, int right);

 private:
  const std::uint8_t* sourceRow(int y);
  void drawRow(int y, int left, int right);

  CanvasMapping mapping_;
  pixels::SurfaceView pixels_;
  int width_;  // Pixels that the canvas touches; none without background.
  int height_;
  std::optional<PictureRows> picture_;
  std::vector<std::uint8_t> row_;
  int rowNumber_ = -1;  // Of the picture's row in row_.
};

}  // namespace render
