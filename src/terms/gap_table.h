// The gap of a superconductor as a function of temperature.
#pragma once

#include <array>
#include <cstddef>

#include "core/status.h"
#include "numeric/dual.h"

namespace kalvex {

// Delta(T)/Delta(0) of the weak-coupling gap equation (Muehlschlegel, Z. Physik 155, 313 (1959)) at equal steps of t =
// T/Tc from 0 to 1. The table holds the square, which is smooth up to t = 1, and its slope.
struct GapTable {
  static constexpr std::size_t kPoints = 101;
  static constexpr double kSpacing = 1.0 / (kPoints - 1);
  std::array<double, kPoints> square{};
  std::array<double, kPoints> slope{};
};

GapTable MakeGapTable();
// Writes "Tab.dat" to the current directory: a line "T/Tc Delta/Delta(0)" for each point.
Status WriteGapTable(const GapTable& table);

// Delta/Delta(0) at t = T/Tc: 1 for t <= 0, 0 for t >= 1. Cubic interpolation between the points, with the slopes of
// the gap equation.
template <class T>
T ReducedGap(const GapTable& table, const T& t) {
  if (!(ValueOf(t) > 0)) return T(1);
  if (ValueOf(t) >= 1) return T(0);
  const auto i = static_cast<std::size_t>(ValueOf(t) / GapTable::kSpacing);
  const std::size_t left = i < GapTable::kPoints - 2 ? i : GapTable::kPoints - 2;
  const T u = t / GapTable::kSpacing - double(left), v = 1.0 - u;
  const auto from = [&](std::size_t k, const T& near, const T& far, double sign) {
    return near * near * ((1.0 + 2.0 * far) * table.square[k] + sign * GapTable::kSpacing * far * table.slope[k]);
  };
  return Sqrt(from(left, v, u, 1) + from(left + 1, u, v, -1));
}

}  // namespace kalvex
