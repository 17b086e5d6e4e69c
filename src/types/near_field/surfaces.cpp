// Surfaces with a conducting sheet: p-polarised reflection at a momentum along the surface, and a slab at normal
// incidence.
#include <numbers>

#include "types/near_field/sheet_on_surface.h"
#include "types/stacks/film_optics.h"
#include "types/types.h"

namespace kalvex {
namespace {

constexpr std::array<SlotUse, 2> kReflection = {{{kE1, "Re r_p at the momentum"}, {kE2, "Im r_p at the momentum"}}};

struct SurfaceAtMomentum {
  enum Input { kSubstrate, kSheetRe, kSheetIm, kMomentum, kMomentumIm };
  static constexpr RowCell kHead[] = {
      Partner(0, Wo, "substrate"),
      DatasetSlot(0, Wp, "real part of the sheet's conductivity, Ohm^-1 cm^-1 of a layer of 3.35 A"),
      DatasetSlot(0, G, "imaginary part of it"), Own(1, Wo, "momentum q over 2 pi, cm-1", 3000),
      Own(1, Wp, "imaginary part of it, cm-1", 0)};
  static constexpr std::span<const SlotUse> kFills = kReflection;

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    const Cplx sheet = SheetOfData(in.data(kSheetRe), in.data(kSheetIm));
    const Cplx r =
        SurfaceReflection(in.x, {in[kMomentum], in[kMomentumIm]}, in.eps(kSubstrate), in.eps(kSubstrate), sheet);
    q[kE1] = r.re;
    q[kE2] = r.im;
  }
};

struct AnisotropicSurface {
  enum Input { kAlong, kNormal, kSheetRe, kSheetIm, kMomentum, kMomentumIm };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "substrate, along the surface"),
                                      Partner(0, Wp, "substrate, along the normal"),
                                      DatasetSlot(1, Wo, "real part of the sheet's conductivity"),
                                      DatasetSlot(1, Wp, "imaginary part of it"),
                                      Own(2, Wo, "momentum q over 2 pi, cm-1", 3000),
                                      Own(2, Wp, "imaginary part of it, cm-1", 0)};
  static constexpr std::span<const SlotUse> kFills = kReflection;

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    const Cplx sheet = SheetOfData(in.data(kSheetRe), in.data(kSheetIm));
    const Cplx r = SurfaceReflection(in.x, {in[kMomentum], in[kMomentumIm]}, in.eps(kAlong), in.eps(kNormal), sheet);
    q[kE1] = r.re;
    q[kE2] = r.im;
  }
};

// Intensities of a slab without fringes, with and without a sheet on its front face.
struct SlabWithSheet {
  enum Input { kSubstrate, kSheetRe, kSheetIm, kThickness };
  static constexpr RowCell kHead[] = {
      Partner(0, Wo, "substrate"), DatasetSlot(0, Wp, "real part of the sheet's conductivity"),
      DatasetSlot(0, G, "imaginary part of it"), Own(1, Wo, "thickness of the substrate, cm", 0.01)};
  static constexpr SlotUse kFills[] = {
      {kRefl, "reflectivity without the sheet"}, {kTrans, "transmission without the sheet"},
      {kRp, "reflectivity with the sheet"},      {kRs, "transmission with the sheet"},
      {kE1, "ratio of the reflectivities"},      {kE2, "difference of the reflectivities"},
      {kS1, "ratio of the transmissions"},       {kS2, "difference of the transmissions"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    const Cplx n = Sqrt(in.eps(kSubstrate));
    const Cplx u = SheetOfData(in.data(kSheetRe), in.data(kSheetIm)) * kUniversalSheet;
    const double e = Abs(PassageFactor(n, in[kThickness], in.x));
    const Cplx t1 = 2.0 / (1.0 + n), r1 = (1.0 - n) / (1.0 + n);
    const Cplx t1Sheet = 2.0 / (1.0 + n + u), r1Sheet = (1.0 - n - u) / (1.0 + n + u);
    FillIntensities(n, t1, r1, e, q[kRefl], q[kTrans]);
    FillIntensities(n, t1Sheet, r1Sheet, e, q[kRp], q[kRs]);
    q[kE1] = q[kRefl] == 0 ? 0 : q[kRp] / q[kRefl];
    q[kE2] = q[kRp] - q[kRefl];
    q[kS1] = q[kTrans] == 0 ? 0 : q[kRs] / q[kTrans];
    q[kS2] = q[kRs] - q[kTrans];
  }

 private:
  static void FillIntensities(const Cplx& n, const Cplx& t1, const Cplx& r1, double e, double& R, double& T) {
    const Cplx t2 = 2.0 * n / (n + 1.0), r2 = (n - 1.0) / (n + 1.0);
    const double echoes = std::fmax(1 - Norm(r2 * r2 * (e * e)), kTinyNorm);
    T = Norm(t1 * t2 * e) / echoes;
    R = Norm(r1) + Norm(t1 * t2 * r2 * (e * e)) / echoes;
  }
};

constexpr TypePage SurfacePage(const char* sample, const char* normal) {
  return {.sample = sample,
          .formula = normal,
          .source = "L. Novotny, B. Hecht, Principles of Nano-Optics, chapter 10; sheet by the boundary condition of H",
          .from = 500,
          .to = 2000};
}

}  // namespace

constinit const ModelType kNearFieldReflection = ShownType<SurfaceAtMomentum, Exactly(2)>(
    73, "Rp(q,w) - near field",
    SurfacePage("a surface with or without a conducting sheet, at a momentum larger than that of light",
                "k = 2 pi x, Q = 2 pi q, kz1 = sqrt(k^2 - Q^2), kz2 = sqrt(e k^2 - Q^2)\n"
                "sigma = 0.00055050922 (D1 + i D2), S = 0.0229242 (kz1 kz2/k) sigma, D1 and D2 the datasets\n"
                "r_p = (e kz1 - kz2 + S)/(e kz1 + kz2 + S)"));

constinit const ModelType kNearFieldAnisotropicSubstrate = ShownType<AnisotropicSurface, Exactly(3)>(
    77, "Rp(q,w) anis. substr",
    SurfacePage(
        "the surface of a uniaxial crystal with or without a conducting sheet, at a momentum larger than that of "
        "light",
        "as type 73, with kz2 = sqrt(e_a k^2 - Q^2 e_a/e_c) and e_a for e\n"
        "The root is the principal one: if e_a/e_c has a positive imaginary part, its wave grows into the substrate."));

constinit const ModelType kSlabWithSheet = ShownType<SlabWithSheet, Exactly(2)>(
    78, "Rp(q,w) anis. substr",
    {.sample = "a slab at normal incidence, with and without a conducting sheet on its front face",
     .formula = "u = 0.00055050922 0.0229242 (D1 + i D2), t1 = 2/(1 + n + u), r1 = (1 - n - u)/(1 + n + u),\n"
                "t2 = 2n/(n + 1), r2 = (n - 1)/(n + 1), e = |exp(2 pi i x n d)|\n"
                "T = |t1 t2 e|^2/(1 - |r2^2 e^2|^2), R = |r1|^2 + |t1 t2 r2 e^2|^2/(1 - |r2^2 e^2|^2); without: u = 0",
     .source = "incoherent sum of the echoes; M. Born, E. Wolf, Principles of Optics, chapter 7.6",
     .from = 500,
     .to = 2000});

}  // namespace kalvex
