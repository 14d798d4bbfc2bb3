#pragma once

#include <optional>
#include <vector>

#include "pixels/image.h"
#include "pixels/size.h"
#include "pixels/surface.h"
#include "render/background.h"
#include "render/live_painting.h"
#include "render/pixel_rect.h"
#include "render/render_scene.h"
#include "render/strokes_layer.h"

namespace render {

/// What one drawing did.
struct LiveFrame {
  PixelRect changed;       ///< The pixels that may differ from the last drawing's; empty: none.
  bool isComplete = true;  ///< False while some of it shows an earlier scene.
};

/// Draws the frames of one changing scene into one surface, each by painting what has changed since
/// the last. A complete frame equals CanvasRenderer's on transparent pixels, byte for byte.
///
/// Costs what changes: nothing for an idle canvas, the background and one blend for a new camera
/// picture, the touched tiles for the open stroke. A painting that must be built up anew is spread
/// over several frames; meanwhile the strokes stay as they were, stretched to a new size.
/// One canvas per window or recording; main thread only.
class LiveCanvas {
 public:
  /// Enough strokes over tiles for some 30 ms of work a frame.
  static constexpr int kWorkPerFrame = 4000;

  explicit LiveCanvas(int workPerFrame = kWorkPerFrame) : painting_(workPerFrame) {}

  /// Brings the pixels of `context` up to the scene. They must be as the last drawing left them;
  /// other pixels, another size of them or of the canvas are drawn as a whole.
  LiveFrame draw(const RenderScene& scene, const pixels::DrawingContext& context,
                 pixels::Size size);

  /// Forgets what is in the pixels: the next drawing draws them all.
  void invalidate() { pixels_.data = nullptr; }

  /// Bytes held for the painting, roughly.
  std::size_t bytesHeld() const { return painting_.bytesHeld() + layer_.bytesHeld(); }

 private:
  /// Neighbouring tiles of a row: from `first` up to but not including `end`.
  struct TileRun {
    int first = 0;
    int end = 0;
  };

  bool isSameGround(const RenderScene& scene) const;
  void showTile(int tile);
  void markCursorTiles(const RenderScene& scene);
  void markTiles(const PixelRect& pixels);
  bool isMarked(int x, int y) const;
  PixelRect drawMarked(const RenderScene& scene, const pixels::DrawingContext& context);
  PixelRect drawBand(int y, const pixels::SurfaceView& pixels);

  LivePainting painting_;
  StrokesLayer layer_;  // The painting's latest whole picture.
  Background ground_;
  CanvasMapping mapping_;

  // What the last drawing put into the pixels.
  pixels::SurfaceView pixels_;
  CanvasBackground background_ = CanvasBackground::transparent;
  std::optional<pixels::Image> frame_;
  double dim_ = 0;
  std::optional<CursorState> cursor_;
  PixelRect cursorBounds_;
  bool glow_ = false;
  bool isBuilt_ = false;  // Whether layer_ shows the painting, not one from before it.

  std::vector<bool> marked_;                       // Tiles to draw.
  std::vector<TileRun> groundRuns_, paintedRuns_;  // Of the band that is drawn.
};

}  // namespace render
