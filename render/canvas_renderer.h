#pragma once

#include <optional>

#include "pixels/size.h"
#include "pixels/surface.h"
#include "render/render_scene.h"

namespace render::CanvasRenderer {

/// Draws the scene over the rectangle (0, 0, size.width, size.height) of the context, in logical
/// points from its top left corner; what lies outside the context's pixels is cut off. A pure
/// function of its arguments: any thread, no state. Coordinates and widths that are not finite are
/// left out. `size` must be finite.
void render(const RenderScene& scene, const pixels::DrawingContext& context, pixels::Size size);

/// Draws the scene into a picture of its own, `size` truncated to whole pixels. None when a side is
/// less than one pixel or the memory cannot be had.
std::optional<pixels::Surface> makeImage(const RenderScene& scene, pixels::Size size);

}  // namespace render::CanvasRenderer
