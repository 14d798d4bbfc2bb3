// How a LivePainting lays strokes over its tiles: their shapes, what is kept of them, and the
// threads that share the work.

#include <algorithm>
#include <atomic>
#include <functional>
#include <iterator>
#include <thread>
#include <utility>

#include "render/live_painting.h"
#include "render/parallel.h"

namespace render {

namespace {

// For the shapes of fading strokes, laid anew every frame.
constexpr std::size_t kKeptShapeBytes = 160u << 20;
// With what they do to tiles: less, so that this pushes no shape out.
constexpr std::size_t kKeptShareBytes = 130u << 20;
// Strokes whose shapes are made and at hand together.
constexpr std::size_t kShapedTogether = 64;
// Shapes are made this long before they are laid in every frame, a few in each.
constexpr double kAheadSeconds = 1;
constexpr int kShapedAhead = 8;
// Less than this, in strokes over tiles, is done before another thread has begun.
constexpr int kWorkWorthAThread = 500;
// To shape a stroke is as much work.
constexpr int kWorkOfShape = 100;
// Other work goes on beside the window's.
constexpr unsigned kMostThreads = 4;

unsigned threadsFor(int work) {
  if (work < 2 * kWorkWorthAThread) return 1;
  static const unsigned cores = std::max(std::thread::hardware_concurrency(), 1u);
  return std::min({static_cast<unsigned>(work / kWorkWorthAThread), cores, kMostThreads});
}

}  // namespace

void LivePainting::paintStale(const RenderScene& scene, StrokesLayer& layer) {
  std::sort(stale_.begin(), stale_.end());
  stale_.erase(std::unique(stale_.begin(), stale_.end()), stale_.end());
  const auto isFresh = [this](int tile) {
    return !tiles_[static_cast<std::size_t>(tile)].isStale();
  };
  std::erase_if(stale_, isFresh);
  if (stale_.empty()) return;
  std::uint64_t first = nextSerial_;
  for (const int tile : stale_)
    first = std::min(first, tiles_[static_cast<std::size_t>(tile)].nextStroke());
  // Fading is never late: half a fade shown for one stroke and not for another would look wrong.
  const bool mayBeLate = isBuilding_ || !anyFades_;
  int work = 0;
  std::size_t i = 0;
  while (i < entries_.size() && entries_[i].serial < first) ++i;
  while (i < entries_.size() && !(mayBeLate && work >= workPerUpdate_)) {
    // Tile by tile, as a tile and the processor are close then.
    const std::size_t start = i;
    const int before = work;
    missing_.clear();
    while (i < entries_.size() && missing_.size() < kShapedTogether &&
           !(mayBeLate && work >= workPerUpdate_)) {
      work += noteMissing(entries_[i], scene.strokes[i]);
      ++i;
    }
    makeShapes();
    layBefore(start, i, work - before, layer);
    for (std::size_t laid = start; laid < i; ++laid) {
      const bool isWanted = scene.fadeEnabled && entries_[laid].shapeTiles == tilesRect_;
      if (isBuilding_ || !isWanted || shapeBytes_ > kKeptShapeBytes) dropShape(entries_[laid]);
    }
  }
  std::copy_if(stale_.begin(), stale_.end(), std::back_inserter(changed_), isFresh);
  std::erase_if(stale_, isFresh);
}

/// Notes the stroke's shape as missing where stale tiles want it. How many do.
int LivePainting::noteMissing(Entry& entry, const strokes::Stroke& stroke) {
  int wanted = 0;
  PixelRect tiles;
  for (const int number : entry.tiles) {
    const LiveTile& tile = tiles_[static_cast<std::size_t>(number)];
    if (!tile.isStale() || tile.nextStroke() > entry.serial) continue;
    ++wanted;
    const int x = number % tilesRect_.width(), y = number / tilesRect_.width();
    tiles = tiles.united({x, y, x + 1, y + 1});
  }
  if (wanted == 0 || !(entry.alpha > 0)) return wanted;
  const bool isThere = entry.shape && tiles.intersected(entry.shapeTiles) == tiles;
  if (!isThere)
    missing_.push_back({&entry, &stroke, anyFades_ && !isBuilding_ ? tilesRect_ : tiles});
  return wanted;
}

void LivePainting::makeShapes() {
  for (const Missing& missing : missing_) dropShape(*missing.entry);
  const int count = static_cast<int>(missing_.size());
  shareOut(count, threadsFor(count * kWorkOfShape), [&](const std::function<int()>& next) {
    for (int i = next(); i < count; i = next()) {
      const Missing& missing = missing_[static_cast<std::size_t>(i)];
      missing.entry->shape = std::make_unique<StrokeShape>();
      missing.entry->shape->build(missing.stroke->points, mapping_, glow_,
                                  pixelsOfTiles(missing.tiles).intersected(area_));
      missing.entry->shapeTiles = missing.tiles;
    }
  });
  for (const Missing& missing : missing_) shapeBytes_ += missing.entry->shape->bytesHeld();
}

void LivePainting::shapeAhead(const RenderScene& scene) {
  if (!scene.fadeEnabled) {
    for (Entry& entry : entries_) dropShape(entry);
    return;
  }
  missing_.clear();
  // The newest stroke may still grow.
  for (std::size_t i = 0; i + 1 < entries_.size() && missing_.size() < kShapedAhead; ++i) {
    if (shapeBytes_ > kKeptShapeBytes) break;
    const strokes::Stroke& stroke = scene.strokes[i];
    const bool fadesSoon = scene.now - stroke.lastTime > scene.fadeSeconds - kAheadSeconds;
    if (fadesSoon && !entries_[i].shape && entries_[i].alpha > 0)
      missing_.push_back({&entries_[i], &stroke, tilesRect_});
  }
  makeShapes();
  for (const Missing& missing : missing_) keepShares(*missing.entry);
}

void LivePainting::dropShape(Entry& entry) {
  if (!entry.shape) return;
  shapeBytes_ -= entry.shape->bytesHeld();
  for (const auto& shares : entry.shares) shapeBytes_ -= shares ? shares->bytesHeld() : 0;
  entry.shape.reset();
  entry.shares.clear();
}

/// Works out what the stroke does to its tiles, which all the next frames want, while there is
/// room.
void LivePainting::keepShares(Entry& entry) {
  const PixelRect& reached = entry.shape->tiles();
  entry.shares.resize(static_cast<std::size_t>(reached.width()) *
                      static_cast<std::size_t>(reached.height()));
  auto place = entry.shares.begin();
  for (int y = reached.top; y < reached.bottom; ++y) {
    for (int x = reached.left; x < reached.right; ++x, ++place) {
      if (shapeBytes_ > kKeptShareBytes) return;
      if (*place || !entry.shape->isReached(x, y)) continue;
      workers_.front()->brush.keep(*entry.shape, x, y, place->emplace());
      shapeBytes_ += (*place)->bytesHeld();
    }
  }
}

/// Null where nothing is kept.
const KeptShares* LivePainting::keptShares(const Entry& entry, int tileX, int tileY) const {
  const PixelRect& reached = entry.shape->tiles();
  const bool isWithin = tileX >= reached.left && tileX < reached.right && tileY >= reached.top &&
                        tileY < reached.bottom;
  if (entry.shares.empty() || !isWithin) return nullptr;
  const int place = (tileY - reached.top) * reached.width() + tileX - reached.left;
  const std::optional<KeptShares>& kept = entry.shares[static_cast<std::size_t>(place)];
  return kept ? &*kept : nullptr;
}

/// Lays strokes number `first` up to `end` over the tiles that wait for them: `work` times.
void LivePainting::layBefore(std::size_t first, std::size_t end, int work, StrokesLayer& layer) {
  for (std::size_t i = first; anyFades_ && !isBuilding_ && i < end; ++i) {
    Entry& entry = entries_[i];
    if (entry.shape && entry.shares.empty() && entry.shapeTiles == tilesRect_) keepShares(entry);
  }
  const std::uint64_t endSerial = end < entries_.size() ? entries_[end].serial : nextSerial_;
  const unsigned threads = threadsFor(work);
  while (workers_.size() < threads) workers_.push_back(std::make_unique<Worker>());
  if (anyFades_ && !isBuilding_) layer.makeRoom();
  // Every tile is painted by one thread alone, so the picture does not depend on their number.
  const int count = static_cast<int>(stale_.size());
  std::atomic<std::size_t> nextWorker{0};
  shareOut(count, threads, [&](const std::function<int()>& next) {
    Worker& worker = *workers_[nextWorker++];
    for (int i = next(); i < count; i = next())
      layUpTo(endSerial, stale_[static_cast<std::size_t>(i)], worker, layer);
  });
}

/// Lays what the tile waits for of the strokes before `endSerial`.
void LivePainting::layUpTo(std::uint64_t endSerial, int number, Worker& worker,
                           StrokesLayer& layer) {
  LiveTile& tile = tiles_[static_cast<std::size_t>(number)];
  bool fades = false;
  while (tile.isStale() && tile.nextStroke() < endSerial) {
    const Entry& entry = entryOf(tile.nextStroke());
    layNext(tile, entry, number, worker);
    fades = fades || entry.alpha < 1;
  }
  if (!fades || isBuilding_ || tile.isStale()) return;
  const int columns = tilesRect_.width();
  layer.show(number % columns, number / columns, tile.shown().get());
  if (auto spare = tile.giveUp()) worker.spare = std::move(spare);
}

void LivePainting::layNext(LiveTile& tile, const Entry& entry, int number, Worker& worker) {
  PaintTile& paint = tile.workPaint(worker.spare);
  if (entry.alpha > 0) {
    const int x = number % tilesRect_.width(), y = number / tilesRect_.width();
    if (const KeptShares* kept = keptShares(entry, x, y)) {
      kept->lay(entry.colors, entry.alpha, paint);
    } else {
      worker.brush.lay(*entry.shape, entry.colors, entry.alpha, x, y, paint);
    }
  }
  tile.finishStroke(isUnsettledAfter(tile, entry), mostCheckpoints_);
}

}  // namespace render
