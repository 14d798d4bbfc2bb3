#pragma once

#include <cstdint>

#include "render/render_scene.h"

namespace support {

/// Glowing strokes of every colour and several widths, thin ones too, on black, a part of which
/// moves: what `frame` of a recording of somebody painting shows.
render::RenderScene paintedScene(int frame);

}  // namespace support
