#include "render/fading.h"

#include "strokes/stroke_store.h"

namespace render {

double fadeAlpha(const RenderScene& scene, const strokes::Stroke& stroke) {
  if (!scene.fadeEnabled) return 1;
  const double age = scene.now - stroke.lastTime;
  if (age <= scene.fadeSeconds) return 1;
  return scene.fadeSeconds - age + strokes::StrokeStore::fadeLength;
}

}  // namespace render
