// Wave vectors in the cells of a mesh, and the share of the Brillouin zone that each one represents.
#pragma once

#include <array>
#include <cmath>
#include <numbers>

namespace kalvex {

using Vector3 = std::array<double, 3>;

inline double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
inline Vector3 Cross(const Vector3& a, const Vector3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// Square: cells between two corners, in coordinates relative to the reciprocal vectors. Radial: cells of a ring in the
// plane of the first two reciprocal vectors. Its centre is in their coordinates, its radii in lengths of the first one.
struct WaveVectorMesh {
  bool radial = false;
  std::array<long, 3> grid = {1, 1, 1};  // cells along the axes; radial: along the radius, around, along z
  Vector3 from{}, to{};                  // corners; radial: only the third counts
  std::array<double, 2> centre{};
  double radiusFrom = 0, radiusTo = 0;
};

inline constexpr double kMostWaveVectors = 4e6;

// The number of wave vectors, as a double, which cannot overflow.
inline double CountOf(const WaveVectorMesh& mesh) {
  return static_cast<double>(mesh.grid[0]) * static_cast<double>(mesh.grid[1]) * static_cast<double>(mesh.grid[2]);
}

// Calls visit(k, share) for each cell, k in the unit of the reciprocal vectors. share: the volume of the cell divided
// by that of the zone. A single cell between equal ends stands for the whole axis.
template <class Visit>
void ForEachWaveVector(const WaveVectorMesh& mesh, const std::array<Vector3, 3>& reciprocal, Visit visit) {
  const auto middle = [](double from, double to, long i, long count) {
    return from + (to - from) * (static_cast<double>(i) + 0.5) / static_cast<double>(count);
  };
  const auto shareOf = [](double from, double to, long count) {
    return count == 1 && from == to ? 1.0 : (to - from) / static_cast<double>(count);
  };
  const auto [countA, countB, countC] = mesh.grid;
  const Vector3 normal = Cross(reciprocal[0], reciprocal[1]);
  const double length = std::sqrt(Dot(reciprocal[0], reciprocal[0]));
  const double ringUnit = length * length / std::sqrt(Dot(normal, normal));  // of radius times arc, in zones
  const Vector3 along = {reciprocal[0][0] / length, reciprocal[0][1] / length, reciprocal[0][2] / length};
  Vector3 across = Cross(normal, along);
  const double acrossLength = std::sqrt(Dot(across, across));
  for (double& part : across) part /= acrossLength;
  const double shareC = shareOf(mesh.from[2], mesh.to[2], countC);
  for (long a = 0; a < countA; ++a) {
    for (long b = 0; b < countB; ++b) {
      Vector3 q = {middle(mesh.from[0], mesh.to[0], a, countA), middle(mesh.from[1], mesh.to[1], b, countB), 0};
      double share = shareOf(mesh.from[0], mesh.to[0], countA) * shareOf(mesh.from[1], mesh.to[1], countB) * shareC;
      double u = 0, v = 0;
      if (mesh.radial) {
        const double radius = middle(mesh.radiusFrom, mesh.radiusTo, a, countA);
        const double step = 2 * std::numbers::pi / static_cast<double>(countB);
        const double angle = (static_cast<double>(b) + 0.5) * step;
        q = {mesh.centre[0], mesh.centre[1], 0};
        share = radius * (mesh.radiusTo - mesh.radiusFrom) / static_cast<double>(countA) * step * ringUnit * shareC;
        u = radius * length * std::cos(angle);
        v = radius * length * std::sin(angle);
      }
      for (long c = 0; c < countC; ++c) {
        q[2] = middle(mesh.from[2], mesh.to[2], c, countC);
        Vector3 k{};
        for (std::size_t i = 0; i < 3; ++i) {
          k[i] = q[0] * reciprocal[0][i] + q[1] * reciprocal[1][i] + q[2] * reciprocal[2][i] + u * along[i] +
                 v * across[i];
        }
        visit(k, share);
      }
    }
  }
}

}  // namespace kalvex
