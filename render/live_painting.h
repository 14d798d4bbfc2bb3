#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "render/canvas_mapping.h"
#include "render/live_tile.h"
#include "render/pixel_rect.h"
#include "render/render_scene.h"
#include "render/stroke_shape.h"
#include "render/strokes_layer.h"
#include "render/tile_brush.h"

namespace render {

/// The strokes of a scene as a layer of tiles that follows the scene from frame to frame and paints
/// only what has changed. What it shows once it is complete equals the strokes drawn from scratch,
/// bit for bit.
///
/// Relies on what a painting does: a stroke's points only grow at the end, strokes never change
/// their order, and new ones come last. Main thread only; other threads help it where that pays.
class LivePainting {
 public:
  /// `workPerUpdate`: how many strokes are laid over tiles in one update at most, so that a
  /// painting with a thousand strokes cannot hold up a frame.
  explicit LivePainting(int workPerUpdate);

  /// Follows the scene. Returns the tiles, counted row by row, whose picture is another one now.
  /// Those that fade and will be painted anew for the next frame are shown in `layer`, which is as
  /// large as the canvas, at once, and their pictures are not kept.
  const std::vector<int>& update(const RenderScene& scene, const CanvasMapping& mapping, int width,
                                 int height, StrokesLayer& layer);

  /// True while a painting is built up from nothing, over several updates; no tile counts until
  /// then.
  bool isBuilding() const { return isBuilding_; }

  /// Whether every tile shows the scene; otherwise some show an earlier one.
  bool isUpToDate() const { return !isBuilding_ && stale_.empty(); }

  /// Tiles of the canvas, counted from its top left corner.
  const PixelRect& tiles() const { return tilesRect_; }
  /// Whether the update has shown the tile.
  bool hasShown(int tile) const { return tiles_[static_cast<std::size_t>(tile)].isGivenUp(); }
  /// Null where nothing is painted. Not of a tile that the update has shown, nor of one that is
  /// still to be brought up to date, as it may be while isBuilding() or between the updates that
  /// return it.
  const PaintTile* paintOf(int tile) const {
    return tiles_[static_cast<std::size_t>(tile)].shown().get();
  }

  /// Bytes held, roughly.
  std::size_t bytesHeld() const;

 private:
  /// What is known of one stroke of the scene.
  struct Entry {
    std::uint64_t serial = 0;
    strokes::StrokeId id;
    int colorIndex = 0;
    StrokeColors colors{};
    double alpha = 1;
    std::size_t pointCount = 0;
    strokes::StrokePoint lastPoint;
    std::vector<int> tiles;
    // While it is laid, and longer while strokes fade and every frame lays it again.
    std::unique_ptr<StrokeShape> shape;
    PixelRect shapeTiles;  // The tiles that `shape` is right for.
    // What it does to the tiles of its shape, row by row, while every frame lays it again; none
    // where it does nothing or there was no room.
    std::vector<std::optional<KeptShares>> shares;

    /// Whether the stroke is this one, perhaps longer by now.
    bool isFor(const strokes::Stroke& stroke) const;
  };

  /// What one thread lays strokes with.
  struct Worker {
    TileBrush brush;
    std::shared_ptr<PaintTile> spare;  // Memory near the processor.
  };

  /// A shape that is wanted, for these tiles.
  struct Missing {
    Entry* entry;
    const strokes::Stroke* stroke;
    PixelRect tiles;
  };

  bool follows(const RenderScene& scene, const CanvasMapping& mapping, int width, int height);
  void takeAwayMissing(const RenderScene& scene);
  void takeAway(const Entry& entry);
  void grow(Entry& entry, const strokes::Stroke& stroke);
  void addNew(const RenderScene& scene);
  void fadeAll(const RenderScene& scene);
  void join(Entry& entry, const strokes::StrokePoints& points);
  void markChanged(int tile);
  void paintStale(const RenderScene& scene, StrokesLayer& layer);
  int noteMissing(Entry& entry, const strokes::Stroke& stroke);
  void makeShapes();
  void shapeAhead(const RenderScene& scene);
  void dropShape(Entry& entry);
  void keepShares(Entry& entry);
  const KeptShares* keptShares(const Entry& entry, int tileX, int tileY) const;
  void layBefore(std::size_t first, std::size_t end, int work, StrokesLayer& layer);
  void layUpTo(std::uint64_t endSerial, int number, Worker& worker, StrokesLayer& layer);
  void layNext(LiveTile& tile, const Entry& entry, int number, Worker& worker);
  bool isUnsettledAfter(const LiveTile& tile, const Entry& laid) const;
  bool isFading(const LiveTile& tile) const;
  const Entry& entryOf(std::uint64_t serial) const;
  std::size_t indexOf(std::uint64_t serial) const;

  int workPerUpdate_;
  CanvasMapping mapping_;
  PixelRect area_;
  PixelRect tilesRect_;
  bool glow_ = false;
  bool isBuilding_ = false;
  bool anyFades_ = false;  // Whether any entry's alpha is below 1.
  std::uint64_t nextSerial_ = 0;
  std::vector<Entry> entries_;  // As many as the scene has strokes, in its order.
  std::vector<LiveTile> tiles_;
  std::vector<int> stale_;    // Tiles with isStale().
  std::vector<int> changed_;  // By the running update.
  std::size_t mostCheckpoints_ = 2;
  std::size_t shapeBytes_ = 0;                    // Of all entries' shapes and shares.
  std::vector<Missing> missing_;                  // To be made by the running update.
  std::vector<std::unique_ptr<Worker>> workers_;  // One for each thread.
};

}  // namespace render
