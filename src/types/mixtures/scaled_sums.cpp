// Sums of dielectric functions with factors that depend on the temperature.
#include <algorithm>
#include <map>
#include <numbers>
#include <vector>

#include "evaluation/eps_sum.h"
#include "terms/boson_coupling.h"
#include "terms/units.h"
#include "types/frame.h"
#include "types/types.h"

namespace kalvex {
namespace {

// A sum with a response that depends only on the quotient of frequency and temperature.
struct UniversalRatio {
  static constexpr Hooks kHooks = hook::kFrequencyOf | hook::kAdmits | hook::kSumOfPartners;
  enum Input { kConstant, kQuadratic, kUniversal, kTemperature, kReduction };
  static constexpr RowCell kHead[] = {
      Partner(0, Wo, "part without temperature, e0"), Partner(0, Wp, "part with the square of the temperature, e1"),
      Partner(0, G, "universal part, e2, a function of x/T"), Setting(1, Wo, "temperature T, above 0", 2),
      Experimental(kScalingFactorOfT, "\"Scaling factor of T\": b, the reduction of the universal part")};

  static constexpr bool kSumOfPartners = true;

  static bool Admits(const TypeInputs<double>& in) { return in.value(kTemperature) > 0; }
  static double FrequencyOf(const TypeInputs<double>& in, std::size_t input) {
    return input == kUniversal ? in.x / in.value(kTemperature) : in.x;
  }

  template <class T>
  static Complex<T> Response(const TypeInputs<T>& in) {
    const double t2 = in.value(kTemperature) * in.value(kTemperature);
    return in.eps(kConstant) + in.eps(kQuadratic) * T(t2) +
           in.eps(kUniversal) * ((T(1) - in[kReduction] * T(t2)) / T(t2));
  }
};

// Free carriers scattered by bosons. The coupling spectrum a2F is the mesh of a variational dielectric function.
struct MeshCoupling {
  enum Input { kConstant, kQuadratic, kSpectrum, kTemperature, kPlasma, kRate, kReduction };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "part without temperature, e0"),
                                      Partner(0, Wp, "part with the square of the temperature, e1"),
                                      MeshPartner(0, G, "model whose mesh is a2F, in its imaginary part"),
                                      Own(1, Wo, "temperature T, K", 2),
                                      Own(1, Wp, "plasma frequency, cm-1", 8000),
                                      Own(1, G, "rate without bosons, cm-1", 100),
                                      Own(2, Wo, "reduction of the carriers' part by t^2, cm2", 0.05)};
  static constexpr RowMap kMap{.rows = Exactly(3), .head = kHead, .group = {}, .groupStart = 0, .groupRows = 1};

  // Integration weight of mesh point k: half the distance between its neighbours.
  static double WeightOf(const VarDielFunc& vdf, std::size_t k) {
    const std::size_t left = k == 0 ? 0 : k - 1, right = std::min(k + 1, vdf.mesh.size() - 1);
    return 0.5 * (vdf.mesh[right].x - vdf.mesh[left].x);
  }
};

// Cache of the kernels at the mesh points, for every frequency at one temperature and mesh. In a fit of a2F the kernels
// take nearly all the time.
struct KeptKernels {
  double kelvins = 0;
  std::vector<double> places;  // of the mesh, cm-1
  std::map<double, std::vector<BosonKernel>> at;

  bool AreFor(const VarDielFunc& vdf, double T) const {
    return T == kelvins && std::equal(places.begin(), places.end(), vdf.mesh.begin(), vdf.mesh.end(),
                                      [](double x, const VdfMeshPoint& point) { return x == point.x; });
  }
};

const std::vector<BosonKernel>& KernelsAt(const VarDielFunc& vdf, double x, double kelvins, KeptKernels& kept) {
  constexpr std::size_t kMost = std::size_t{1} << 20;  // 32 MiB
  if (!kept.AreFor(vdf, kelvins)) {
    kept = {.kelvins = kelvins, .places = {}, .at = {}};
    for (const VdfMeshPoint& point : vdf.mesh) kept.places.push_back(point.x);
  }
  const auto found = kept.at.find(x);
  if (found != kept.at.end()) return found->second;
  if (kept.at.size() * kept.places.size() >= kMost) kept.at.clear();
  const double unit = 2 * std::numbers::pi * kWavenumberPerKelvin * kelvins;
  std::vector<BosonKernel>& kernels = kept.at[x];
  for (const double place : kept.places) {
    kernels.push_back(place > 0 ? BosonKernelAt(x / unit, place / unit) : BosonKernel{});
  }
  return kernels;
}

// The kernel at each mesh point times twice its weight, stored in the context for the derivatives.
struct MeshKernels {
  KeptKernels kept;
  std::vector<Cplx> byValue;
  Cplx memory;
  Cplx slope;  // of the memory function by T
};

void FillKernels(const VarDielFunc& vdf, double x, double kelvins, MeshKernels& kernels) {
  const std::vector<BosonKernel>& at = KernelsAt(vdf, x, kelvins, kernels.kept);
  kernels.byValue.assign(vdf.mesh.size(), {});
  kernels.memory = kernels.slope = {};
  for (std::size_t k = 0; k < vdf.mesh.size(); ++k) {
    if (vdf.mesh[k].x <= 0) continue;
    const double weight = 2 * MeshCoupling::WeightOf(vdf, k), a2F = vdf.mesh[k].e2.value;
    kernels.byValue[k] = at[k].value * weight;
    kernels.memory += kernels.byValue[k] * a2F;
    kernels.slope -= at[k].slope * (weight * a2F / kelvins);
  }
}

int EvaluateMeshCoupling(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  using enum MeshCoupling::Input;
  constexpr double kLeast = 1e-10;
  TypeRun run(ctx, model, MeshCoupling::kMap, {});
  if (const int status = run.ReadRows()) return status;
  const TypeInputs<double> in(run.scratch(), MeshCoupling::kMap, x);
  const Model& spectrum = *run.scratch().partner[kSpectrum];
  const double kelvins = in.value(kTemperature), t = kWavenumberPerKelvin * kelvins;
  if (!HasVdf(spectrum) || !(kelvins > 0) || t < kLeast) return -1;
  run.AskAll(x, derivatives);
  const double w = std::fabs(x) < kLeast ? kLeast : x, t2 = t * t;
  auto& kernels = CacheOf<MeshKernels>(ctx, model);
  FillKernels(spectrum.vdf, w, kelvins, kernels);
  const Cplx denominator = (w + kernels.memory + Cplx{0, in[kRate]}) * w;
  const bool vanishes = Abs(denominator) < 1e-30;
  const Cplx inverse = vanishes ? Cplx{} : Cplx{1, 0} / denominator;
  const Cplx D = inverse * -(in[kPlasma] * in[kPlasma]);
  const double c = 1 - in[kReduction] * t2;
  run.StoreMaterial(in.eps(kConstant) + in.eps(kQuadratic) * t2 + D * c, x, derivatives);
  if (!derivatives) return 0;

  const Cplx byMemory = -(D * inverse * w) * c;
  run.CountDirections();
  const auto set = [&](std::size_t input, std::size_t offset, const Cplx& slope) {
    const std::size_t direction = run.scratch().direction[input];
    if (direction != kNoDirection) run.SetEpsSlope(direction + offset, slope);
  };
  set(kConstant, 0, {1, 0});
  set(kConstant, 1, {0, 1});
  set(kQuadratic, 0, {t2, 0});
  set(kQuadratic, 1, {0, t2});
  const double t2Slope = 2 * t2 / kelvins;
  set(kTemperature, 0, in.eps(kQuadratic) * t2Slope - D * (in[kReduction] * t2Slope) + byMemory * kernels.slope);
  set(kPlasma, 0, inverse * (-2 * in[kPlasma] * c));
  set(kRate, 0, TimesI(byMemory));
  set(kReduction, 0, -(D * t2));
  const QuantityTable ofMaterial = ctx.quantities;
  run.ChainOfMaterial();
  std::vector<MeshSlopes>& slopes = SlopesOf(ctx, spectrum).mesh;
  for (const Quantity q : kEveryQuantity) {
    const QuantityResult& of = ofMaterial[q];
    if (!of.wanted) continue;
    for (std::size_t k = 0; k < spectrum.vdf.mesh.size(); ++k) {
      const Cplx slope = byMemory * kernels.byValue[k];
      if (spectrum.vdf.mesh[k].e2.adjustable) slopes[k].e2.Add(q, of.dRe * slope.re + of.dIm * slope.im);
    }
  }
  return 0;
}

int AfterMeshCoupling(EvalContext& ctx, const Model& model) {
  if (const int status = MarkDependencies(ctx, model, MeshCoupling::kMap, {}, {}, Parts::kApart, nullptr))
    return status;
  const Model& spectrum = *PartnerAt(ctx, model, 0, G);
  if (!HasVdf(spectrum)) return -1;
  std::vector<MeshSlopes>& slopes = SlopesOf(ctx, spectrum).mesh;
  for (const Quantity q : kEveryQuantity) {
    if (!ctx.quantities[q].wanted) continue;
    for (std::size_t k = 0; k < spectrum.vdf.mesh.size(); ++k) {
      const VdfMeshPoint& point = spectrum.vdf.mesh[k];
      if (point.e2.adjustable && point.x > 0) slopes[k].e2.Put(q, 1);
    }
  }
  return 0;
}

}  // namespace

constinit const ModelType kUniversalOmegaT = FittedType<UniversalRatio, Exactly(2)>(
    11, "Universal omega/T",
    {.sample = "a metal whose response is a universal function of frequency over temperature",
     .formula = "e = e0(x) + T^2 e1(x) + [(1 - b T^2)/T^2] e2(x/T)\n"
                "The temperature is that of the measurement: it is not fitted.",
     .source = "scaling form, used as given"});

constinit const ModelType kElectronPhonon = {
    .code = 12,
    .name = "EPI (adjustable a2F)",
    .evaluate = EvaluateMeshCoupling,
    .after = AfterMeshCoupling,
    .fitted = true,
    .material = true,
    .map = MeshCoupling::kMap,
    .page = {.sample = "free carriers scattered by bosons, with a coupling spectrum a2F that is fitted point by point",
             .formula =
                 "t = 0.69508 T in cm-1, M = i r + 2 sum a2F(W) dW K(x/(2 pi t), W/(2 pi t)), dW half the distance\n"
                 "between the neighbours; D = -Wp^2/((x + M) x)\n"
                 "e = e0 + t^2 e1 + (1 - c t^2) D\n"
                 "K(x, y) = [(y - x) P(y - x) - 2 y P(y) + (y + x) P(y + x)]/x - i pi ((y + x)/x) (coth pi(x + y) "
                 "- coth pi y), P(u) = psi(1 + iu)\n"
                 "The variational dielectric function of the spectrum's model must be on and have a mesh. Mesh points\n"
                 "at or below 0 are not used.",
             .source = "P. B. Allen, Phys. Rev. B 3, 305 (1971); S. V. Shulga, O. V. Dolgov, E. G. Maksimov, Physica C "
                       "178, 266 (1991)"}};

}  // namespace kalvex
