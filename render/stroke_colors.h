#pragma once

#include "render/paint_tile.h"

namespace render {

/// The colours that a stroke of this palette index is painted in: its own, and the nearly white
/// one of its core.
StrokeColors strokeColors(int colorIndex);

}  // namespace render
