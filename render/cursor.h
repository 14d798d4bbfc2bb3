#pragma once

#include "pixels/surface.h"
#include "render/canvas_mapping.h"
#include "render/pixel_rect.h"
#include "render/render_scene.h"

namespace render {

/// The pixels that the cursor touches, among `width` x `height`.
PixelRect cursorBounds(const CursorState& cursor, const CanvasMapping& mapping, int width,
                       int height);

/// Draws the pen's rings, and its filled disc while it is down, over the pixels.
void drawCursor(const CursorState& cursor, const CanvasMapping& mapping,
                const pixels::SurfaceView& pixels);

}  // namespace render
