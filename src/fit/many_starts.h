// The bounded fit from many starts, for a sum of squares with several minima.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "fit/bounded_fit.h"

namespace kalvex {

// Points that fill the space evenly: number k has the coordinates s_i + k a_i modulo 1, where the a_i are the powers of
// the inverse of the root of r^(n+1) = r + 1 (the golden ratio for n = 1), and the shifts s_i follow from the seed.
class EvenPoints {
 public:
  EvenPoints(std::size_t dimensions, std::uint32_t seed);
  // Each coordinate is from 0 up to, but not including, 1.
  std::vector<double> Point(std::size_t number) const;

 private:
  std::vector<double> shifts_, steps_;
};

// A start between two limits, or within a factor of 4 around the value: half of it to twice of it. The result is within
// the limits. A value of 0 without two limits stays.
std::vector<double> ScatteredStart(std::span<const double> x, std::span<const double> lower,
                                   std::span<const double> upper, std::span<const double> evenPoint);

// A minimum, and how many starts led to it.
struct Minimum {
  double sum = 0;
  int count = 0;
  bool operator==(const Minimum&) const = default;
};

struct ManyStartsResult {
  BoundedFitResult best;
  std::vector<Minimum> minima;  // of the fits that converged, the lowest first
  int notConverged = 0;
};

// Fits from x and from starts - 1 scattered points. x holds the best point at the end. Two fits have the same minimum
// if their sums agree within 1e-6. goesOn is called after each step of every fit; false ends all.
ManyStartsResult FitFromManyStarts(LeastSquares& problem, std::span<double> x, std::span<const double> lower,
                                   std::span<const double> upper, int starts, std::uint32_t seed,
                                   const BoundedFitOptions& options,
                                   const std::function<bool(const BoundedFitProgress&)>& goesOn);

}  // namespace kalvex
