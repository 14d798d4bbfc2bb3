#include "tests/e2e/frame_to_line/timeline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iomanip>
#include <ostream>
#include <utility>

namespace frame_to_line {
namespace {

constexpr double kMillisecondsPerSecond = 1000;

double percentile(const std::vector<double>& sorted, double share) {
  const double place = std::ceil(share * static_cast<double>(sorted.size())) - 1;
  return sorted[static_cast<std::size_t>(std::max(place, 0.0))];
}

std::ostream& row(std::ostream& out, const std::string& name) {
  return out << std::left << std::setw(34) << name << std::right;
}

void write(std::ostream& out, const std::string& name, std::vector<double> milliseconds) {
  row(out, name) << std::setw(7) << milliseconds.size();
  if (!milliseconds.empty()) {
    std::ranges::sort(milliseconds);
    out << std::fixed << std::setprecision(1);
    for (const double share : {0.5, 0.95, 0.99, 1.0}) {
      out << std::setw(9) << percentile(milliseconds, share);
    }
  }
  out << '\n';
}

}  // namespace

FrameNumber Timeline::frameDelivered(double now) {
  const std::lock_guard guard(lock_);
  frames_[++newest_].delivered = now;
  return newest_;
}

void Timeline::frameCaptured(FrameNumber frame, double captureTime) {
  const std::lock_guard guard(lock_);
  frames_[frame].captured = captureTime;
}

void Timeline::analysisBegan(FrameNumber frame, double now) {
  const std::lock_guard guard(lock_);
  frames_[frame].analysisBegan = now;
}

void Timeline::analysisEnded(FrameNumber frame, double now) {
  const std::lock_guard guard(lock_);
  frames_[frame].analysisEnded = now;
}

void Timeline::resultApplied(FrameNumber frame, double now, bool addedPoint) {
  const std::lock_guard guard(lock_);
  frames_[frame].applied = now;
  frames_[frame].addedPoint = addedPoint;
  if (addedPoint) pointsToDraw_.push_back(frame);
}

void Timeline::pictureDrawn(double now) {
  const std::lock_guard guard(lock_);
  pointsToShow_.insert(pointsToShow_.end(), pointsToDraw_.begin(), pointsToDraw_.end());
  pointsToDraw_.clear();
  const auto newest = frames_.find(newest_);
  if (newest == frames_.end() || newest->second.drawn) return;
  newest->second.drawn = now;
  pictureToShow_ = newest_;
}

void Timeline::pictureShown(double now) {
  const std::lock_guard guard(lock_);
  for (const FrameNumber frame : std::exchange(pointsToShow_, {})) frames_[frame].pointShown = now;
  if (const auto frame = std::exchange(pictureToShow_, std::nullopt)) frames_[*frame].shown = now;
}

void Timeline::mainThreadBusy(const std::string& what, double seconds, double cpuSeconds) {
  const std::lock_guard guard(lock_);
  busy_[what].milliseconds.push_back(seconds * kMillisecondsPerSecond);
  busy_[what].cpuMilliseconds.push_back(cpuSeconds * kMillisecondsPerSecond);
}

void Timeline::startOver() {
  const std::lock_guard guard(lock_);
  frames_.clear();
  pointsToDraw_.clear();
  pointsToShow_.clear();
  pictureToShow_.reset();
  busy_.clear();
}

void Timeline::report(std::ostream& out) const {
  const std::lock_guard guard(lock_);
  std::map<std::string, std::vector<double>> spans;
  const auto add = [&](const char* name, std::optional<double> from, std::optional<double> to) {
    if (from && to) spans[name].push_back((*to - *from) * kMillisecondsPerSecond);
  };
  std::size_t delivered = 0;
  std::size_t analysed = 0;
  for (const auto& [number, frame] : frames_) {
    if (!frame.delivered) continue;
    ++delivered;
    if (frame.analysisEnded) ++analysed;
    add("1 captured to delivered", frame.captured, frame.delivered);
    add("2 delivered to analysis", frame.delivered, frame.analysisBegan);
    add("3 analysis", frame.analysisBegan, frame.analysisEnded);
    add("4 analysed to applied", frame.analysisEnded, frame.applied);
    if (frame.addedPoint) {
      add("5 point applied to shown", frame.applied, frame.pointShown);
      add("  point: delivered to shown", frame.delivered, frame.pointShown);
      add("  point: captured to shown", frame.captured, frame.pointShown);
    }
    add("  picture: delivered to drawn", frame.delivered, frame.drawn);
    add("  picture: delivered to shown", frame.delivered, frame.shown);
  }
  out << delivered << " frames delivered, " << analysed << " of them analysed (" << std::fixed
      << std::setprecision(1)
      << 100.0 * static_cast<double>(analysed) /
             static_cast<double>(std::max<std::size_t>(delivered, 1))
      << " %)\n";
  row(out, "milliseconds") << "  count   median     95 %     99 %      max\n";
  for (const auto& [name, milliseconds] : spans) write(out, name, milliseconds);
  for (const auto& [what, busy] : busy_) {
    write(out, "main thread: " + what, busy.milliseconds);
    write(out, "  of the processor", busy.cpuMilliseconds);
  }
}

}  // namespace frame_to_line
