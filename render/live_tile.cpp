#include "render/live_tile.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace render {

bool LiveTile::holds(std::uint64_t stroke) const {
  return std::binary_search(strokes_.begin(), strokes_.end(), stroke);
}

void LiveTile::keepCheckpoint(std::size_t count, Paint paint, std::size_t most) {
  if (!checkpoints_.empty() && checkpoints_.back().count >= count) return;
  if (checkpoints_.size() >= most) checkpoints_.erase(checkpoints_.begin());
  checkpoints_.push_back({count, std::move(paint)});
}

void LiveTile::restartFrom(std::size_t index) {
  while (!checkpoints_.empty() && checkpoints_.back().count > index) checkpoints_.pop_back();
  if (work_ && done_ <= index) return;
  work_.reset();
  done_ = checkpoints_.empty() ? 0 : checkpoints_.back().count;
}

void LiveTile::add(std::uint64_t stroke, bool isSettled, std::size_t mostCheckpoints) {
  if (!isStale_) {
    if (isSettled && shown_) keepCheckpoint(strokes_.size(), shown_, mostCheckpoints);
    restartFrom(strokes_.size());
  }
  strokes_.push_back(stroke);
  isStale_ = true;
}

void LiveTile::remove(std::uint64_t stroke) {
  const auto place = std::lower_bound(strokes_.begin(), strokes_.end(), stroke);
  if (place == strokes_.end() || *place != stroke) return;
  const auto index = static_cast<std::size_t>(place - strokes_.begin());
  strokes_.erase(place);
  restartFrom(index);
  isStale_ = true;
  if (done_ < strokes_.size()) return;
  // Nothing is left to lay: the picture so far is the picture.
  if (work_) {
    shown_ = std::move(work_);
  } else {
    shown_ = checkpoints_.empty() ? nullptr : checkpoints_.back().paint;
  }
  isStale_ = isGivenUp_ = false;
}

void LiveTile::change(std::uint64_t stroke) {
  const auto place = std::lower_bound(strokes_.begin(), strokes_.end(), stroke);
  restartFrom(static_cast<std::size_t>(place - strokes_.begin()));
  isStale_ = true;
}

PaintTile& LiveTile::workPaint(std::shared_ptr<PaintTile>& spare) {
  if (work_) return *work_;
  // The last picture is not wanted any more; unless a checkpoint holds it, its memory can be had.
  if (shown_.use_count() == 1) {
    work_ = std::const_pointer_cast<PaintTile>(std::exchange(shown_, nullptr));
  } else {
    work_ = std::exchange(spare, nullptr);
  }
  const PaintTile* start = checkpoints_.empty() ? nullptr : checkpoints_.back().paint.get();
  if (!work_) {
    work_ = start ? std::make_shared<PaintTile>(*start) : std::make_shared<PaintTile>();
  } else if (start) {
    *work_ = *start;
  } else {
    std::memset(work_.get(), 0, sizeof *work_);
  }
  return *work_;
}

void LiveTile::finishStroke(bool keep, std::size_t mostCheckpoints) {
  ++done_;
  const bool isLast = done_ == strokes_.size();
  if (isLast) {
    shown_ = std::move(work_);
    work_.reset();
    isStale_ = isGivenUp_ = false;
  }
  if (keep) {
    keepCheckpoint(done_, isLast ? shown_ : std::make_shared<PaintTile>(*work_), mostCheckpoints);
  }
}

std::shared_ptr<PaintTile> LiveTile::giveUp() {
  isGivenUp_ = true;
  Paint given = std::exchange(shown_, nullptr);
  return given.use_count() == 1 ? std::const_pointer_cast<PaintTile>(given) : nullptr;
}

std::size_t LiveTile::bytesHeld() const {
  std::vector<const PaintTile*> paints{shown_.get(), work_.get()};
  for (const Checkpoint& checkpoint : checkpoints_) paints.push_back(checkpoint.paint.get());
  std::sort(paints.begin(), paints.end());
  paints.erase(std::unique(paints.begin(), paints.end()), paints.end());
  const auto count =
      paints.size() - static_cast<std::size_t>(std::count(paints.begin(), paints.end(), nullptr));
  return count * sizeof(PaintTile) + strokes_.capacity() * sizeof(std::uint64_t);
}

}  // namespace render
