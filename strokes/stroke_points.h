#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <vector>

#include "strokes/stroke_point.h"

namespace strokes {

/// The points of one stroke in the order they were drawn. Copies share the points until one of
/// them grows, so a snapshot of a painting costs nothing per point.
class StrokePoints {
 public:
  StrokePoints() = default;
  StrokePoints(std::initializer_list<StrokePoint> points);
  explicit StrokePoints(std::vector<StrokePoint> points);

  bool empty() const { return !points_ || points_->empty(); }
  std::size_t size() const { return points_ ? points_->size() : 0; }
  const StrokePoint& operator[](std::size_t i) const { return (*points_)[i]; }
  const StrokePoint& back() const { return points_->back(); }
  const StrokePoint* begin() const { return points_ ? points_->data() : nullptr; }
  const StrokePoint* end() const { return begin() + size(); }

  /// Appends; copies the points first when somebody else shares them.
  void append(const StrokePoint& point);

  /// True when both look at the same memory, so that nothing was copied between them.
  bool sharesPointsWith(const StrokePoints& other) const { return points_ == other.points_; }

  friend bool operator==(const StrokePoints& a, const StrokePoints& b);

 private:
  std::shared_ptr<std::vector<StrokePoint>> points_;
};

}  // namespace strokes
