#include "evaluation/vdf_eval.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kalvex {
namespace {

double F(double u) {
  const double size = std::fabs(u);
  return size >= 1e-10 ? u * std::log(size) : 0;
}

VdfMeshPoint& PointAt(VarDielFunc& vdf, int i) { return vdf.mesh[static_cast<std::size_t>(i)]; }

void ClearSlopes(VarDielFunc& vdf) {
  for (VdfMeshPoint& point : vdf.mesh) {
    point.e1.dEpsRe = point.e1.dEpsIm = 0;
    point.e2.dEpsRe = point.e2.dEpsIm = 0;
  }
}

// Calls visit(point, weight) for the points that hold up the curve at X.
template <class Visit>
void ForEachWeight(VarDielFunc& vdf, double X, Visit visit) {
  const VdfWeights at = VdfWeightsAt(vdf, X);
  if (at.first >= 0) visit(PointAt(vdf, at.first), at.firstWeight);
  if (at.second >= 0) visit(PointAt(vdf, at.second), at.secondWeight);
}

}  // namespace

void VdfKernel(const VarDielFunc& vdf, double X, double* out) {
  const auto& mesh = vdf.mesh;
  const std::size_t n = mesh.size();
  std::fill_n(out, n, 0.0);
  if (n < 3) return;
  const auto term = [&](std::size_t j) { return F(X + mesh[j].x) - F(X - mesh[j].x); };
  double before = term(0), here = term(1);
  for (std::size_t j = 1; j + 1 < n; ++j) {
    const double a = mesh[j - 1].x, b = mesh[j].x, c = mesh[j + 1].x;
    const double after = term(j + 1);
    out[j] = std::numbers::inv_pi * (before / (b - a) + after / (c - b) - here * (c - a) / ((c - b) * (b - a)));
    before = here;
    here = after;
  }
}

VdfWeights VdfWeightsAt(const VarDielFunc& vdf, double X) {
  const int i = FindVdfInterval(X, vdf);
  if (i < 0) return {};
  if (i + 1 == static_cast<int>(vdf.mesh.size())) return {i, -1, 1, 0};
  const double a = vdf.mesh[static_cast<std::size_t>(i)].x, b = vdf.mesh[static_cast<std::size_t>(i) + 1].x;
  return {i, i + 1, (b - X) / (b - a), (X - a) / (b - a)};
}

Cplx EvalVdf(VarDielFunc& vdf, double X, bool derivatives) {
  if (derivatives) ClearSlopes(vdf);
  Cplx sum;
  ForEachWeight(vdf, X, [&](VdfMeshPoint& point, double weight) {
    sum.im += weight * point.e2.value;
    if (!vdf.KK) sum.re += weight * point.e1.value;
    if (!derivatives) return;
    point.e2.dEpsIm = weight;
    if (!vdf.KK) point.e1.dEpsRe = weight;
  });
  if (!vdf.KK) return sum;
  std::vector<double> kernel(vdf.mesh.size());
  VdfKernel(vdf, X, kernel.data());
  for (std::size_t j = 0; j < kernel.size(); ++j) {
    sum.re += kernel[j] * vdf.mesh[j].e2.value;
    if (derivatives) vdf.mesh[j].e2.dEpsRe = kernel[j];
  }
  return sum;
}

void VdfGradient(VarDielFunc& vdf) {
  const auto mark = [](ModelParam& param, double re, double im) {
    if (!param.adjustable) return;
    param.dEpsRe = re;
    param.dEpsIm = im;
  };
  for (std::size_t j = 0; j < vdf.mesh.size(); ++j) {
    VdfMeshPoint& point = vdf.mesh[j];
    const bool end = j == 0 || j + 1 == vdf.mesh.size();
    const double inner = vdf.KK && end ? 0 : 1;  // the ends of a constrained mesh have no triangle
    mark(point.e1, vdf.KK ? 0 : 1, 0);
    mark(point.e2, vdf.KK ? inner : 0, inner);
  }
}

// On a segment from a to b the imaginary part is s w + c, and the integral of w (s w + c)/(4 pi) is closed.
double VdfScalarSum(VarDielFunc& vdf, double limit, bool derivatives) {
  if (derivatives) {
    for (VdfMeshPoint& point : vdf.mesh) {
      if (point.e1.adjustable) point.e1.dScalar = 0;
      if (point.e2.adjustable) point.e2.dScalar = 0;
    }
  }
  double sum = 0;
  for (std::size_t i = 0; i + 1 < vdf.mesh.size(); ++i) {
    VdfMeshPoint& left = vdf.mesh[i];
    VdfMeshPoint& right = vdf.mesh[i + 1];
    const double a = left.x, b = right.x, u = std::min(b, limit);
    if (!(a < limit)) break;
    const double A = (u * u * u - a * a * a) / (12 * std::numbers::pi);
    const double B = (u * u - a * a) / (8 * std::numbers::pi);
    const double byLeft = (-A + B * b) / (b - a), byRight = (A - B * a) / (b - a);
    sum += byLeft * left.e2.value + byRight * right.e2.value;
    if (!derivatives) continue;
    if (left.e2.adjustable) left.e2.dScalar += byLeft;
    if (right.e2.adjustable) right.e2.dScalar += byRight;
  }
  return sum;
}

void VdfScalarGradient(VarDielFunc& vdf) {
  for (VdfMeshPoint& point : vdf.mesh) {
    if (!point.e2.adjustable) continue;
    point.e2.dScalar = 1;
    point.e1.dScalar = 0;
  }
}

}  // namespace kalvex
