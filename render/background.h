#pragma once

#include "pixels/surface.h"
#include "render/canvas_mapping.h"
#include "render/render_scene.h"

namespace render {

/// Draws what lies under the strokes over the canvas's rectangle: the mirrored, dimmed camera
/// picture stretched to it, a plain colour, or nothing.
void drawBackground(const RenderScene& scene, const CanvasMapping& mapping,
                    const pixels::SurfaceView& pixels);

}  // namespace render
