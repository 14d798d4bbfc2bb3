#pragma once

#include <optional>

namespace hand {

/// Calms a value that a person moves: heavy smoothing while it rests, little lag while it moves,
/// because the cutoff frequency rises with the filtered speed. The algorithm is the 1 euro filter
/// of Casiez, Roussel and Vogel (CHI 2012, doi:10.1145/2207676.2208639). One thread at a time.
class OneEuroFilter {
 public:
  /// Samples closer together than this, or going back in time, count as this far apart.
  static constexpr double kShortestStepSeconds = 1.0 / 240;

  /// `minCutoff`: hertz, > 0, the cutoff at rest. `beta`: hertz per (value unit per second), >= 0.
  OneEuroFilter(double minCutoff, double beta) : minCutoff_(minCutoff), beta_(beta) {}

  /// Takes one sample and returns the filtered value; the first one passes unchanged.
  /// `time`: seconds, on any clock that all samples share.
  double filter(double x, double time);

  /// Forgets every sample: the next one is the first again.
  void reset();

 private:
  double minCutoff_;
  double beta_;
  std::optional<double> xPrev_;  ///< The last filtered value.
  double dxPrev_ = 0;            ///< The last filtered speed, value units per second.
  double tPrev_ = 0;
};

}  // namespace hand
