#include "strokes/stroke_store.h"

#include <cmath>
#include <optional>
#include <random>

namespace strokes {

namespace {

StrokeId freshId() {
  static std::random_device entropy;
  const auto word = [] {
    return (static_cast<std::uint64_t>(entropy()) << 32) | static_cast<std::uint64_t>(entropy());
  };
  const std::uint64_t high = word();
  return {high, word()};
}

}  // namespace

void StrokeStore::begin(const StrokePoint& point, int colorIndex, double now) {
  strokes_.push_back({freshId(), {point}, colorIndex, now});
  isDrawing_ = true;
}

void StrokeStore::add(const StrokePoint& point, double now) {
  if (!isDrawing_ || strokes_.empty() || strokes_.back().points.empty()) return;
  Stroke& stroke = strokes_.back();
  const StrokePoint& last = stroke.points.back();
  const double distance = std::hypot(point.x - last.x, point.y - last.y);
  if (distance > maxJump) {
    const int colorIndex = stroke.colorIndex;
    end(now);
    begin(point, colorIndex, now);
    return;
  }
  if (!(distance < minStep)) stroke.points.append(point);
  stroke.lastTime = now;
}

void StrokeStore::end(double now) {
  touch(now);
  isDrawing_ = false;
}

void StrokeStore::touch(double now) {
  if (isDrawing_ && !strokes_.empty()) strokes_.back().lastTime = now;
}

bool StrokeStore::pruneFaded(double now, double fadeSeconds) {
  std::optional<StrokeId> open;
  if (isDrawing_ && !strokes_.empty()) open = strokes_.back().id;
  const auto hasFaded = [&](const Stroke& stroke) {
    const double age = now - stroke.lastTime;
    return stroke.id != open && age > fadeSeconds && fadeSeconds - age + fadeLength <= 0;
  };
  return std::erase_if(strokes_, hasFaded) > 0;
}

void StrokeStore::undo() {
  isDrawing_ = false;
  if (!strokes_.empty()) strokes_.pop_back();
}

void StrokeStore::clear() {
  isDrawing_ = false;
  strokes_.clear();
}

}  // namespace strokes
