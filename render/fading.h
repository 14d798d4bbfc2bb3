#pragma once

#include "render/render_scene.h"

namespace render {

/// How visible a stroke is: 1 until fadeSeconds after its latest activity, then down to 0 within
/// StrokeStore::fadeLength. 0 or less, or not a number: not at all.
double fadeAlpha(const RenderScene& scene, const strokes::Stroke& stroke);

}  // namespace render
