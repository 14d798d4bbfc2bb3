#include "render/live_painting.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "render/fading.h"
#include "render/stroke_colors.h"

namespace render {

namespace {

// For pictures of tiles to go back to when strokes are undone.
constexpr std::size_t kCheckpointBytes = 140u << 20;
constexpr std::size_t kFewestCheckpoints = 2, kMostCheckpoints = 12;
// Finding out which tiles a stroke reaches takes this much less than laying it over them.
constexpr int kJoinedPerWork = 6;

double alphaOf(const RenderScene& scene, const strokes::Stroke& stroke) {
  const double alpha = fadeAlpha(scene, stroke);
  return alpha > 0 ? std::min(alpha, 1.0) : 0;
}

bool isSamePoint(const strokes::StrokePoint& a, const strokes::StrokePoint& b) {
  const auto isSame = [](double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); };
  return isSame(a.x, b.x) && isSame(a.y, b.y) && isSame(a.w, b.w);
}

}  // namespace

LivePainting::LivePainting(int workPerUpdate) : workPerUpdate_(workPerUpdate) {
  workers_.push_back(std::make_unique<Worker>());
}

bool LivePainting::Entry::isFor(const strokes::Stroke& stroke) const {
  return stroke.id == id && stroke.colorIndex == colorIndex && stroke.points.size() >= pointCount &&
         (pointCount == 0 || isSamePoint(stroke.points[pointCount - 1], lastPoint));
}

const std::vector<int>& LivePainting::update(const RenderScene& scene, const CanvasMapping& mapping,
                                             int width, int height, StrokesLayer& layer) {
  changed_.clear();
  if (!follows(scene, mapping, width, height)) {
    mapping_ = mapping;
    glow_ = scene.glow;
    area_ = {0, 0, width, height};
    tilesRect_ = tilesAround(area_);
    entries_.clear();
    tiles_.clear();
    stale_.clear();
    shapeBytes_ = 0;
    const auto count = static_cast<std::size_t>(tilesRect_.width()) *
                       static_cast<std::size_t>(tilesRect_.height());
    tiles_.resize(count);
    mostCheckpoints_ =
        std::clamp(kCheckpointBytes / std::max<std::size_t>(count * sizeof(PaintTile), 1),
                   kFewestCheckpoints, kMostCheckpoints);
    isBuilding_ = true;
  }
  takeAwayMissing(scene);
  if (!entries_.empty()) {
    const std::size_t last = entries_.size() - 1;
    grow(entries_[last], scene.strokes[last]);
  }
  addNew(scene);
  if (entries_.size() < scene.strokes.size()) return changed_;  // The others join in later updates.
  if (!isBuilding_ || stale_.empty()) fadeAll(scene);
  paintStale(scene, layer);
  if (isBuilding_ && stale_.empty()) {
    // Meanwhile time has gone on.
    isBuilding_ = false;
    fadeAll(scene);
    paintStale(scene, layer);
    isBuilding_ = !stale_.empty();
  }
  if (!isBuilding_) shapeAhead(scene);
  // Some may have got ready by one change and be late after the next.
  std::erase_if(changed_,
                [this](int tile) { return tiles_[static_cast<std::size_t>(tile)].isStale(); });
  return changed_;
}

bool LivePainting::follows(const RenderScene& scene, const CanvasMapping& mapping, int width,
                           int height) {
  return mapping == mapping_ && scene.glow == glow_ && area_ == PixelRect{0, 0, width, height};
}

void LivePainting::takeAwayMissing(const RenderScene& scene) {
  // Entries that are in the scene keep their order, so one pass over both finds the others.
  std::size_t place = 0;
  const auto isMissing = [&](Entry& entry) {
    if (place < scene.strokes.size() && entry.isFor(scene.strokes[place])) {
      ++place;
      return false;
    }
    takeAway(entry);
    dropShape(entry);
    return true;
  };
  entries_.erase(std::remove_if(entries_.begin(), entries_.end(), isMissing), entries_.end());
}

void LivePainting::takeAway(const Entry& entry) {
  for (const int index : entry.tiles) {
    LiveTile& tile = tiles_[static_cast<std::size_t>(index)];
    tile.remove(entry.serial);
    markChanged(index);
  }
}

void LivePainting::markChanged(int tile) {
  if (tiles_[static_cast<std::size_t>(tile)].isStale()) {
    stale_.push_back(tile);
  } else {
    changed_.push_back(tile);
  }
}

void LivePainting::join(Entry& entry, const strokes::StrokePoints& points) {
  StrokeShape shape;
  shape.outline(points, mapping_, glow_, area_);
  const PixelRect reached = shape.tiles().intersected(tilesRect_);
  for (int y = reached.top; y < reached.bottom; ++y) {
    for (int x = reached.left; x < reached.right; ++x) {
      if (!shape.isReached(x, y)) continue;
      const int index = y * tilesRect_.width() + x;
      LiveTile& tile = tiles_[static_cast<std::size_t>(index)];
      if (!tile.isStale()) stale_.push_back(index);
      if (tile.holds(entry.serial)) {
        tile.change(entry.serial);
      } else {
        tile.add(entry.serial, !isFading(tile), mostCheckpoints_);
        entry.tiles.push_back(index);
      }
    }
  }
}

void LivePainting::grow(Entry& entry, const strokes::Stroke& stroke) {
  const std::size_t before = entry.pointCount, now = stroke.points.size();
  if (now == before) return;
  dropShape(entry);
  // The last segment ran straight to the last point and bends there now.
  const std::size_t first = before >= 2 ? before - 2 : 0;
  const auto pointsFrom = [&](std::size_t from, std::size_t to) {
    return strokes::StrokePoints(std::vector<strokes::StrokePoint>(stroke.points.begin() + from,
                                                                   stroke.points.begin() + to));
  };
  join(entry, pointsFrom(first, before));
  join(entry, pointsFrom(first, now));
  entry.pointCount = now;
  entry.lastPoint = stroke.points.back();
}

void LivePainting::addNew(const RenderScene& scene) {
  std::size_t joined = 0;
  const auto most = static_cast<std::size_t>(workPerUpdate_) * kJoinedPerWork;
  for (std::size_t i = entries_.size(); i < scene.strokes.size(); ++i) {
    if (isBuilding_ && joined > most) return;
    const strokes::Stroke& stroke = scene.strokes[i];
    Entry& entry = entries_.emplace_back();
    entry.serial = nextSerial_++;
    entry.id = stroke.id;
    entry.colorIndex = stroke.colorIndex;
    entry.colors = strokeColors(stroke.colorIndex);
    entry.alpha = alphaOf(scene, stroke);
    anyFades_ = anyFades_ || entry.alpha < 1;
    entry.pointCount = stroke.points.size();
    if (!stroke.points.empty()) entry.lastPoint = stroke.points.back();
    join(entry, stroke.points);
    joined += entry.tiles.size();
  }
}

void LivePainting::fadeAll(const RenderScene& scene) {
  anyFades_ = false;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    Entry& entry = entries_[i];
    const double alpha = alphaOf(scene, scene.strokes[i]);
    anyFades_ = anyFades_ || alpha < 1;
    if (alpha == entry.alpha) continue;
    entry.alpha = alpha;
    for (const int index : entry.tiles) {
      LiveTile& tile = tiles_[static_cast<std::size_t>(index)];
      if (!tile.isStale()) stale_.push_back(index);
      tile.change(entry.serial);
    }
  }
}

std::size_t LivePainting::indexOf(std::uint64_t serial) const {
  const auto place = std::lower_bound(
      entries_.begin(), entries_.end(), serial,
      [](const Entry& entry, std::uint64_t wanted) { return entry.serial < wanted; });
  return static_cast<std::size_t>(place - entries_.begin());
}

const LivePainting::Entry& LivePainting::entryOf(std::uint64_t serial) const {
  return entries_[indexOf(serial)];
}

bool LivePainting::isFading(const LiveTile& tile) const {
  return anyFades_ &&
         std::any_of(tile.strokes().begin(), tile.strokes().end(),
                     [this](std::uint64_t serial) { return entryOf(serial).alpha < 1; });
}

bool LivePainting::isUnsettledAfter(const LiveTile& tile, const Entry& laid) const {
  if (laid.alpha < 1) return false;
  // The next stroke above will change with the next frame, while this one and those below stay.
  const auto& strokes = tile.strokes();
  const auto next = std::upper_bound(strokes.begin(), strokes.end(), laid.serial);
  if (next == strokes.end()) return false;
  const bool willChange = *next == entries_.back().serial || entryOf(*next).alpha < 1;
  return willChange && std::all_of(strokes.begin(), next, [this](std::uint64_t below) {
           return entryOf(below).alpha >= 1;
         });
}

std::size_t LivePainting::bytesHeld() const {
  std::size_t bytes = shapeBytes_;
  for (const LiveTile& tile : tiles_) bytes += tile.bytesHeld();
  for (const Entry& entry : entries_) bytes += sizeof entry + entry.tiles.capacity() * sizeof(int);
  return bytes;
}

}  // namespace render
