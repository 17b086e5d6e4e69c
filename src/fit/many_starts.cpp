#include "fit/many_starts.h"

#include <algorithm>
#include <cmath>

namespace kalvex {
namespace {

constexpr double kSameSum = 1e-6;

// SplitMix64 (Steele, Lea, Flood, OOPSLA 2014): the next number of a sequence.
std::uint64_t NextOf(std::uint64_t& state) {
  state += 0x9E3779B97F4A7C15U;
  std::uint64_t z = state;
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
  return z ^ (z >> 31);
}

double FractionOf(double number) { return number - std::floor(number); }

// The root of r^(n+1) = r + 1 by iteration, which contracts.
double RootOf(std::size_t dimensions) {
  double root = 2;
  for (int i = 0; i < 60; ++i) root = std::pow(1 + root, 1 / static_cast<double>(dimensions + 1));
  return root;
}

std::vector<Minimum> MinimaOf(std::vector<double> sums, double startSum) {
  constexpr double kRounding = 1e-12;  // of the sum at the start, for data without noise
  std::sort(sums.begin(), sums.end());
  std::vector<Minimum> minima;
  for (const double sum : sums) {
    const bool isNew = minima.empty() || sum - minima.back().sum > kSameSum * sum + kRounding * startSum;
    if (isNew) minima.push_back({sum, 0});
    ++minima.back().count;
  }
  return minima;
}

}  // namespace

EvenPoints::EvenPoints(std::size_t dimensions, std::uint32_t seed) {
  const double root = RootOf(dimensions);
  std::uint64_t state = seed;
  double step = 1;
  for (std::size_t i = 0; i < dimensions; ++i) {
    shifts_.push_back(std::ldexp(static_cast<double>(NextOf(state) >> 11), -53));
    steps_.push_back(step /= root);
  }
}

std::vector<double> EvenPoints::Point(std::size_t number) const {
  std::vector<double> point;
  for (std::size_t i = 0; i < steps_.size(); ++i) {
    point.push_back(FractionOf(shifts_[i] + static_cast<double>(number) * steps_[i]));
  }
  return point;
}

std::vector<double> ScatteredStart(std::span<const double> x, std::span<const double> lower,
                                   std::span<const double> upper, std::span<const double> evenPoint) {
  // Limits this far apart are those of numbers, not of a person.
  constexpr double kWidest = 1e30;
  std::vector<double> start;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const bool hasBoth = upper[i] - lower[i] < kWidest;
    const double value =
        hasBoth ? lower[i] + evenPoint[i] * (upper[i] - lower[i]) : x[i] * std::exp2(2 * evenPoint[i] - 1);
    start.push_back(std::clamp(value, lower[i], upper[i]));
  }
  return start;
}

ManyStartsResult FitFromManyStarts(LeastSquares& problem, std::span<double> x, std::span<const double> lower,
                                   std::span<const double> upper, int starts, std::uint32_t seed,
                                   const BoundedFitOptions& options,
                                   const std::function<bool(const BoundedFitProgress&)>& goesOn) {
  const std::vector<double> first(x.begin(), x.end());
  const EvenPoints points(x.size(), seed);
  ManyStartsResult all;
  std::vector<double> sums;
  double startSum = 0;
  for (int k = 0; k < starts; ++k) {
    std::vector<double> at =
        k == 0 ? first : ScatteredStart(first, lower, upper, points.Point(static_cast<std::size_t>(k)));
    BoundedFitResult result = FitWithinLimits(problem, at, lower, upper, options, goesOn);
    if (k == 0) startSum = result.startSum;
    IsConverged(result.end) ? sums.push_back(result.sum) : static_cast<void>(++all.notConverged);
    result.endsAtX = false;  // of the last fit, which is perhaps not the best
    const bool isBest = k == 0 || result.sum < all.best.sum || !std::isfinite(all.best.sum);
    const bool stopped = result.end == BoundedFitEnd::kStopped;
    result.iterations += k == 0 ? 0 : all.best.iterations;
    result.sums += k == 0 ? 0 : all.best.sums;
    if (isBest) {
      std::copy(at.begin(), at.end(), x.begin());
      all.best = std::move(result);
    } else {
      all.best.iterations = result.iterations;
      all.best.sums = result.sums;
    }
    if (stopped) break;
  }
  all.best.startSum = startSum;
  all.minima = MinimaOf(std::move(sums), startSum);
  return all;
}

}  // namespace kalvex
