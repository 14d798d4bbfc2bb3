#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "render/paint_tile.h"

namespace render {

/// A tile of a LivePainting: which strokes reach it, and what they look like together.
/// Strokes are named by serial numbers that grow from the oldest to the newest.
class LiveTile {
 public:
  using Paint = std::shared_ptr<const PaintTile>;

  /// The strokes that reach the tile, oldest first.
  const std::vector<std::uint64_t>& strokes() const { return strokes_; }
  bool holds(std::uint64_t stroke) const;

  /// The finished picture of the tile; null when nothing is painted. Not while isStale(), nor when
  /// isGivenUp().
  const Paint& shown() const { return shown_; }
  bool isStale() const { return isStale_; }

  /// Adds the newest stroke. `isSettled`: the strokes before it are not about to change.
  void add(std::uint64_t stroke, bool isSettled, std::size_t mostCheckpoints);

  /// Takes a stroke away. The tile is stale afterwards unless its picture from before the stroke
  /// is at hand.
  void remove(std::uint64_t stroke);

  /// Something about the stroke has changed: everything from it on has to be laid again.
  void change(std::uint64_t stroke);

  /// The next stroke to lay; only while isStale().
  std::uint64_t nextStroke() const { return strokes_[done_]; }

  /// The picture so far, to lay nextStroke() over. Taken from `spare` where it needs memory, if
  /// there is any.
  PaintTile& workPaint(std::shared_ptr<PaintTile>& spare);

  /// nextStroke() is laid. `keep`: the strokes up to it will stay as they are while later ones
  /// change; their picture is kept to start from. After the last one the tile is no longer stale.
  void finishStroke(bool keep, std::size_t mostCheckpoints);

  /// Gives up the finished picture, for the next frame will have another; not while isStale().
  /// Hands its memory over to be painted in, null when a checkpoint holds the picture too.
  std::shared_ptr<PaintTile> giveUp();
  bool isGivenUp() const { return isGivenUp_; }

  /// Of pictures.
  std::size_t bytesHeld() const;

 private:
  struct Checkpoint {
    std::size_t count;  // Of strokes laid.
    Paint paint;
  };

  void keepCheckpoint(std::size_t count, Paint paint, std::size_t most);
  void restartFrom(std::size_t index);

  std::vector<std::uint64_t> strokes_;
  Paint shown_;
  std::vector<Checkpoint> checkpoints_;  // By growing count.
  std::shared_ptr<PaintTile> work_;
  std::size_t done_ = 0;  // Strokes laid in work_, or in the last checkpoint without work_.
  bool isStale_ = false;
  bool isGivenUp_ = false;
};

}  // namespace render
