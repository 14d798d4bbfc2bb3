#include "render/fading.h"

namespace render {

double fadeAlpha(const RenderScene& scene, const strokes::Stroke& stroke) {
  if (!scene.fadeEnabled) return 1;
  const double age = scene.now - stroke.lastTime;
  if (age <= scene.fadeSeconds) return 1;
  return scene.fadeSeconds - age + 1;
}

}  // namespace render
