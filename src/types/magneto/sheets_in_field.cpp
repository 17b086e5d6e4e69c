// Conducting sheets in a magnetic field: free-carrier sheets on a substrate and in a cavity, and a gapped chiral band.
#include <numbers>

#include "types/landau/dirac_levels.h"
#include "types/magneto/circular.h"
#include "types/magneto/device_stack.h"
#include "types/types.h"

namespace kalvex {
namespace {

// (i Wp^2/60)/(x + shift + iG - W0^2/x) + background, in Ohm^-1 cm^-1; the carriers are bound if W0 is not 0. The first
// term is 0 if its denominator is 0.
template <class T>
Complex<T> CarrierSheet(double x, const T& plasma, const T& shift, const T& width, const T& bound,
                        const T& background) {
  const Complex<T> D{T(x) + shift - (x == 0 ? T(0) : bound * bound / T(x)), width};
  if (Norm(ValueOf(D)) < 1e-20) return {background, T(0)};
  return Complex<T>{T(0), plasma * plasma / T(60)} / D + background;
}
template <class T>
Circular<T> CarrierSheets(double x, const T& plasma, const T& cyclotron, const T& width, const T& bound,
                          const T& background) {
  return {CarrierSheet(x, plasma, -cyclotron, width, bound, background),
          CarrierSheet(x, plasma, cyclotron, width, bound, background)};
}

// A sheet on a substrate, averaged over a spread of the cyclotron frequency.
struct FaradayCheck {
  enum Input { kCyclotron, kPlasma, kWidth, kBound, kBackground, kSpread, kSubstrate, kNodes };
  static constexpr RowCell kHead[] = {Own(0, Wo, "cyclotron frequency W1, cm-1", 40),
                                      Own(0, Wp, "plasma frequency of a layer of 3.35 A, cm-1", 3000),
                                      Own(0, G, "width G, cm-1", 30),
                                      Own(1, Wo, "resonance frequency W0 of bound carriers, cm-1", 20),
                                      Own(1, Wp, "background conductivity, Ohm^-1 cm^-1", 100),
                                      Own(1, G, "spread of the cyclotron frequency, cm-1", 10),
                                      OptionalPartner(2, Wo, "substrate"),
                                      Setting(2, G, "number of nodes of the spread", 9)};
  static constexpr SlotUse kFills[] = {{kTrans, "transmission relative to the bare substrate"},
                                       {kRp, "Faraday rotation, radians"},
                                       {kE1, "the rotation for a small conductivity, radians"},
                                       {kE2, "the relative transmission for a small conductivity"},
                                       {kS1, "Re sigma_+, Ohm^-1 cm^-1"},
                                       {kS2, "Im sigma_+"},
                                       {kN1, "Re sigma_-"},
                                       {kN2, "Im sigma_-"},
                                       {kDepth, "relative transmission of +"},
                                       {kLoss, "relative transmission of -"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    constexpr int kMostNodes = 100000;
    const int nodes = std::clamp(in.setting(kNodes), 1, kMostNodes);
    const Cplx bare = 1.0 + Sqrt(in.eps(kSubstrate));
    Circular<double> sigma, s;
    for (int i = 0; i < nodes; ++i) {
      const double cyclotron = in[kCyclotron] + in[kSpread] * (static_cast<double>(i) / nodes - 0.5);
      const Circular<double> at = CarrierSheets(in.x, in[kPlasma], nodes == 1 ? in[kCyclotron] : cyclotron, in[kWidth],
                                                in[kBound], in[kBackground]);
      const Circular<double> sheet{at.plus * kSheetOfLayer, at.minus * kSheetOfLayer};
      const Circular<double> ratio{Quotient(bare, bare + sheet.plus), Quotient(bare, bare + sheet.minus)};
      const double share = 1.0 / nodes;
      sigma.plus += at.plus * share;
      sigma.minus += at.minus * share;
      s.plus += sheet.plus * share;
      s.minus += sheet.minus * share;
      q[kDepth] += share * Norm(ratio.plus);
      q[kLoss] += share * Norm(ratio.minus);
      q[kRp] += share * PolarisationOf(ratio).rotation;
    }
    q[kTrans] = 0.5 * (q[kDepth] + q[kLoss]);
    q[kE1] = 0.5 * Quotient(s.plus - s.minus, bare).im;
    q[kE2] = 1 - Quotient(s.plus + s.minus, bare).re;
    q[kS1] = sigma.plus.re;
    q[kS2] = sigma.plus.im;
    q[kN1] = sigma.minus.re;
    q[kN2] = sigma.minus.im;
  }
};

// A chiral band with a gap in each valley, on a substrate, at zero field: Kerr angle of an anomalous Hall state.
struct GappedBilayer {
  enum Input { kGapK, kGapOther, kBroadening, kPotential, kWinding, kSubstrate, kBackground, kHallBackground };
  static constexpr RowCell kHead[] = {Own(0, Wo, "half gap in valley K, signed, eV", 0.05),
                                      Own(0, Wp, "half gap in the other valley, signed, eV", 0.04),
                                      Own(0, G, "broadening, eV", 0.01),
                                      Own(1, Wo, "chemical potential, eV", 0.02),
                                      Setting(1, Wp, "winding: 1 single layer, 2 bilayer", 2),
                                      OptionalPartner(2, Wo, "substrate"),
                                      Own(3, Wo, "background of sigma_xx, Ohm^-1 cm^-1", 50),
                                      Own(3, Wp, "background of sigma_xy, Ohm^-1 cm^-1", 20)};
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity, mean of both circular ones"},
                                       {kTrans, "transmission into the substrate, mean of both"},
                                       {kRp, "Kerr rotation, radians"},
                                       {kRs, "Kerr ellipticity"},
                                       {kE1, "transmission of + relative to that without Hall conductivity"},
                                       {kE2, "transmission of - relative to that without Hall conductivity"},
                                       {kS1, "Re sigma_+, Ohm^-1 cm^-1 of a layer of 3.35 A"},
                                       {kS2, "Im sigma_+"},
                                       {kN1, "Re sigma_-"},
                                       {kN2, "Im sigma_-"},
                                       {kDepth, "Faraday rotation, radians"},
                                       {kLoss, "rotation of the reflected light, radians"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    const Cplx z{kElectronvoltPerWavenumber * in.x, in[kBroadening]};
    Cplx xx{in[kBackground], 0}, xy{in[kHallBackground], 0};
    for (const std::size_t valley : {kGapK, kGapOther}) {
      const SheetTensor<double> band = ChiralBand(z, in[valley], in[kPotential], in.value(kWinding));
      xx += 2.0 * band.xx;  // both spins
      xy += 2.0 * band.xy;
    }
    const Cplx n = Sqrt(in.eps(kSubstrate)), one{1, 0};
    const Circular<double> sigma = CircularOf(xx, xy);
    FillSheetOnSubstrate(sigma, xx, 1.0, n, q);
    q[kDefringed] = 0;
    const Polarisation<double> kerr = PolarisationOf(Circular<double>{
        SheetReflection(one, n, sigma.plus * kSheetOfLayer), SheetReflection(one, n, sigma.minus * kSheetOfLayer)});
    q[kRp] = kerr.rotation;
    q[kRs] = kerr.ellipticity;
  }
};

// A carrier sheet inside a slab, whose faces are the mirrors of a cavity. A second sheet can lie on the front face.
struct Cavity {
  static constexpr Hooks kHooks = hook::kIdle;
  enum Input {
    kCyclotron,
    kPlasma,
    kWidth,
    kBound,
    kBackground,
    kMedium,
    kThickness,
    kBack,
    kPlace,
    kIndex,
    kExtinction,
    kFront
  };
  static constexpr RowCell kHead[] = {
      Own(0, Wo, "cyclotron frequency W1, cm-1", 40),
      Own(0, Wp, "plasma frequency of a layer of 3.35 A, cm-1", 20000),
      Own(0, G, "width G, cm-1", 60),
      Own(1, Wo, "resonance frequency W0 of bound carriers, cm-1", 20),
      Own(1, Wp, "background conductivity, Ohm^-1 cm^-1", 500),
      OptionalPartner(1, G, "medium of the slab, 0 for the index in row 4"),
      Own(2, Wo, "thickness of the slab, cm", 0.003),
      OptionalPartner(2, Wp, "half-space on the back side"),
      Own(2, G, "position p of the sheet, a fraction of the thickness from the front", 0.4),
      Own(3, Wo, "refractive index of the slab", 2),
      Own(3, Wp, "extinction of the slab", 0.01),
      Own(3, G, "second sheet on the front face, relative to the first", 0.3)};
  static constexpr std::uint64_t kSheet = InputBits({kCyclotron, kPlasma, kWidth, kBound, kBackground}),
                                 kSlab = InputBits({kMedium, kThickness, kBack, kIndex, kExtinction}),
                                 kAll = kSheet | kSlab | InputBits({kPlace, kFront});
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity, mean of both circular ones", kAll},
                                       {kTrans, "transmission, mean of both circular ones", kAll},
                                       {kRp, "Faraday rotation, radians", kAll},
                                       {kE1, "|t_+|^2", kAll},
                                       {kE2, "|t_-|^2", kAll},
                                       {kS1, "Re sigma_+, Ohm^-1 cm^-1", kSheet},
                                       {kS2, "Im sigma_+", kSheet & ~InputBits({kBackground})},
                                       {kN1, "Re sigma_-", kSheet},
                                       {kN2, "Im sigma_-", kSheet & ~InputBits({kBackground})},
                                       {kDepth, "arg t_+, radians", kAll},
                                       {kLoss, "arg t_-, radians", kAll},
                                       {kDefringed, "transmission without the sheets", kSlab}};

  static std::uint64_t Idle(const TypeInputs<double>& in) {
    return in.has(kMedium) ? InputBits({kIndex, kExtinction}) : 0;
  }

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Circular<T> sigma = CarrierSheets(in.x, in[kPlasma], in[kCyclotron], in[kWidth], in[kBound], in[kBackground]);
    const Complex<T> n = in.has(kMedium) ? Sqrt(in.eps(kMedium)) : Complex<T>{in[kIndex], in[kExtinction]};
    const Complex<T> back = Sqrt(in.eps(kBack));
    const Amplitudes<T> plus = Through(in, n, back, sigma.plus * T(kSheetOfLayer)),
                        minus = Through(in, n, back, sigma.minus * T(kSheetOfLayer)),
                        none = Through(in, n, back, Complex<T>{});
    q[kE1] = Norm(plus.t);
    q[kE2] = Norm(minus.t);
    q[kRefl] = T(0.5) * (Norm(plus.r) + Norm(minus.r));
    q[kTrans] = T(0.5) * (q[kE1] + q[kE2]) * back.re;
    q[kRp] = PolarisationOf(Circular<T>{plus.t, minus.t}).rotation;
    q[kS1] = sigma.plus.re;
    q[kS2] = sigma.plus.im;
    q[kN1] = sigma.minus.re;
    q[kN2] = sigma.minus.im;
    q[kDepth] = Argument(plus.t);
    q[kLoss] = Argument(minus.t);
    q[kDefringed] = Norm(none.t) * back.re;
  }

 private:
  template <class T>
  static Amplitudes<T> Through(const TypeInputs<T>& in, const Complex<T>& n, const Complex<T>& back,
                               const Complex<T>& s) {
    FieldMatrix<T> fields;
    fields.AddSheet(s * in[kFront]);
    fields.AddLayer(n, in[kThickness] * in[kPlace], in.x);
    fields.AddSheet(s);
    fields.AddLayer(n, in[kThickness] * (T(1) - in[kPlace]), in.x);
    return AmplitudesOf(fields, Complex<T>{T(1), T(0)}, back);
  }
};

}  // namespace

constinit const ModelType kFaradayCheck = ShownType<FaradayCheck, Exactly(3)>(
    79, "Faraday_check1",
    {.sample = "a sheet of carriers on a thick substrate in a field, with a spread of the cyclotron frequency",
     .formula = "sigma_+- = (i Wp^2/60)/(x -+ W1 + iG - W0^2/x) + background, s = 1.2619984e-5 sigma\n"
                "W1 takes N values W1 + spread (i/N - 1/2), i = 0 ... N - 1, and results are their means\n"
                "relative transmission |(1 + n)/(1 + n + s_+-)|^2; rotation Im ln(t_-/t_+)/2\n"
                "small conductivity: rotation Im(s_+ - s_-)/(2 (1 + n)), transmission 1 - Re (s_+ + s_-)/(1 + n)",
     .source = "sheet at an interface: boundary conditions of the fields; the order of the rows is a choice of this "
               "program"});

constinit const ModelType kGappedBilayerKerr = ShownType<GappedBilayer, Exactly(5)>(
    82, "Gapped bilayer - Kerr",
    {.sample =
         "a gapped chiral band (graphene of one or two layers) on a substrate: Kerr angle of an anomalous Hall state",
     .formula = "z = E + iG in eV, c = max(|D|, |mu|), u = 1816.5, J the winding; for each spin and valley\n"
                "sigma_xx = (u/4) J [(1 + 4 D^2/z^2) ln((2c + z)/(2c - z)) - 4 D^2/(c z)]/(i pi)\n"
                "           + (u/pi) J i (mu^2 - D^2)/(c z) where |mu| > |D|\n"
                "sigma_xy = (u/pi) J (D/z) ln((2c + z)/(2c - z)); gaps of equal sign give a Hall state\n"
                "t_+- = 2/(1 + n + s_+-), r_+- = (1 - n - s_+-)/(1 + n + s_+-)",
     .source = "R. Nandkishore, L. Levitov, Phys. Rev. Lett. 107, 097402 (2011), at T = 0",
     .from = 100,
     .to = 3000});

constinit const ModelType kGrapheneCavity = FittedType<Cavity, Exactly(4)>(
    86, "Graphene-cavity",
    {.sample = "two sheets of carriers in a field, one inside a slab and one on its front face",
     .formula = "sigma_+- = (i Wp^2/60)/(x -+ W1 + iG - W0^2/x) + background, s = 1.2619984e-5 sigma\n"
                "fields (E, H) through: sheet f s, layer of thickness p d, sheet s, layer of thickness (1 - p) d\n"
                "layer [[cos q, -i sin q/n], [-i n sin q, cos q]], q = 2 pi x n d; sheet [[1, 0], [s, 1]]\n"
                "t = 2/(M11 + M12 nb + M21 + M22 nb)",
     .source =
         "field matrices, M. Born, E. Wolf, Principles of Optics, chapter 1.6; the order of the rows is a choice of "
         "this program"});

}  // namespace kalvex
