#pragma once

#include <cstdint>
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
  /// The scene and the pixels to draw it into from now on. What was worked out for camera pictures
  /// of this size is kept from one call to the next.
  void show(const RenderScene& scene, const CanvasMapping& mapping,
            const pixels::SurfaceView& pixels);

  /// Draws its rows from `top` up to `bottom`.
  void drawRows(int top, int bottom);

  /// Replaces the pixels from `left` up to `right` of row `y`, also outside the canvas, as if they
  /// had been transparent. Cheapest when `y` grows.
  void replaceRow(int y, int left, int right);

 private:
  void drawRow(int y, int left, int right);
  void fetch(int y, int left, int right, std::uint8_t* pixels);

  CanvasMapping mapping_;
  pixels::SurfaceView pixels_;
  int width_ = 0;  // Pixels that the canvas touches; none without background.
  int height_ = 0;
  const std::uint8_t* color_ = nullptr;  // Of a ground that is one colour; null: the picture.
  std::optional<PictureRows> picture_;
};

}  // namespace render
