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

// Calls visit(index, weight) for the mesh points that determine the curve at X.
template <class Visit>
void ForEachWeight(const VarDielFunc& vdf, double X, Visit visit) {
  const VdfWeights at = VdfWeightsAt(vdf, X);
  if (at.first != VdfWeights::kNoPoint) visit(at.first, at.firstWeight);
  if (at.second != VdfWeights::kNoPoint) visit(at.second, at.secondWeight);
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
  const int interval = FindVdfInterval(X, vdf);
  if (interval < 0) return {};
  const auto i = static_cast<std::size_t>(interval);
  if (i + 1 == vdf.mesh.size()) return {i, VdfWeights::kNoPoint, 1, 0};
  const double a = vdf.mesh[i].x, b = vdf.mesh[i + 1].x;
  return {i, i + 1, (b - X) / (b - a), (X - a) / (b - a)};
}

Cplx EvalVdf(const VarDielFunc& vdf, double X, std::span<MeshSlopes> slopes) {
  for (MeshSlopes& point : slopes) {
    point.e1.PutEps(0, 0);
    point.e2.PutEps(0, 0);
  }
  Cplx sum;
  ForEachWeight(vdf, X, [&](std::size_t j, double weight) {
    sum.im += weight * vdf.mesh[j].e2.value;
    if (!vdf.KK) sum.re += weight * vdf.mesh[j].e1.value;
    if (slopes.empty()) return;
    slopes[j].e2.dEpsIm = weight;
    if (!vdf.KK) slopes[j].e1.dEpsRe = weight;
  });
  if (!vdf.KK) return sum;
  std::vector<double> kernel(vdf.mesh.size());
  VdfKernel(vdf, X, kernel.data());
  for (std::size_t j = 0; j < kernel.size(); ++j) {
    sum.re += kernel[j] * vdf.mesh[j].e2.value;
    if (!slopes.empty()) slopes[j].e2.dEpsRe = kernel[j];
  }
  return sum;
}

void VdfGradient(const VarDielFunc& vdf, std::span<MeshSlopes> slopes) {
  for (std::size_t j = 0; j < vdf.mesh.size(); ++j) {
    const bool end = j == 0 || j + 1 == vdf.mesh.size();
    const double inner = vdf.KK && end ? 0 : 1;  // the ends of a constrained mesh have no triangle
    if (vdf.mesh[j].e1.adjustable) slopes[j].e1.PutEps(vdf.KK ? 0 : 1, 0);
    if (vdf.mesh[j].e2.adjustable) slopes[j].e2.PutEps(vdf.KK ? inner : 0, inner);
  }
}

// On a segment from a to b the imaginary part is s w + c. The integral of w (s w + c)/(4 pi) has a closed form.
double VdfScalarSum(const VarDielFunc& vdf, double limit, std::span<MeshSlopes> slopes) {
  for (MeshSlopes& point : slopes) point.e1.dScalar = point.e2.dScalar = 0;
  double sum = 0;
  for (std::size_t i = 0; i + 1 < vdf.mesh.size(); ++i) {
    const VdfMeshPoint &left = vdf.mesh[i], &right = vdf.mesh[i + 1];
    const double a = left.x, b = right.x, u = std::min(b, limit);
    if (!(a < limit)) break;
    const double A = (u * u * u - a * a * a) / (12 * std::numbers::pi);
    const double B = (u * u - a * a) / (8 * std::numbers::pi);
    const double byLeft = (-A + B * b) / (b - a), byRight = (A - B * a) / (b - a);
    sum += byLeft * left.e2.value + byRight * right.e2.value;
    if (slopes.empty()) continue;
    slopes[i].e2.dScalar += byLeft;
    slopes[i + 1].e2.dScalar += byRight;
  }
  return sum;
}

void VdfScalarGradient(std::span<MeshSlopes> slopes) {
  for (MeshSlopes& point : slopes) {
    point.e2.dScalar = 1;
    point.e1.dScalar = 0;
  }
}

}  // namespace kalvex
