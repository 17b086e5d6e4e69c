// Materials composed of others: layers in series, effective media, and double layers with local fields.
#include "types/frame.h"
#include "types/types.h"

namespace kalvex {
namespace {

// The sign of the square root with absorption: 1 if the imaginary part of its argument is at least 0, else -1.
double BranchOf(const Cplx& underRoot) { return underRoot.im >= 0 ? 1 : -1; }

struct SerialResistor {
  enum Input { kFirst, kFirstWeight, kSecond, kSecondWeight };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "first medium"), Own(0, Wp, "its weight", 0.4),
                                      Partner(1, Wo, "second medium"), Own(1, Wp, "its weight", 0.6)};

  static Cplx Response(const TypeInputs<double>& in) {
    const Cplx first{in[kFirstWeight], 0}, second{in[kSecondWeight], 0};
    return Quotient(first + second, Quotient(first, in.eps(kFirst)) + Quotient(second, in.eps(kSecond)));
  }
};

struct BilayerLocalField {
  enum Input { kA, kWeightA, kDistanceA, kB, kWeightB, kDistanceB, kC, kWeightC, kBackground, kD };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "first layer, ea"),
                                      Own(0, Wp, "weight of the coupling at the first layer", 0.3),
                                      Own(0, G, "thickness of the first layer, any unit", 3),
                                      Partner(1, Wo, "second layer, eb"),
                                      Own(1, Wp, "weight of the coupling at the second layer", 0.4),
                                      Own(1, G, "thickness of the second layer, the same unit", 8),
                                      Partner(2, Wo, "mode that both layers drive, ec"),
                                      Own(2, Wp, "weight of the mode in the second layer", 0.2),
                                      Own(2, G, "background constant B", 5),
                                      Partner(3, Wo, "mode of the second layer, ed")};

  static Cplx Response(const TypeInputs<double>& in) {
    const Cplx ea = in.eps(kA), eb = in.eps(kB), ec = in.eps(kC), ed = in.eps(kD);
    const double B = HeldFromZero(in[kBackground]), da = in[kDistanceA], db = in[kDistanceB], twoB2 = 2 * B * B;
    const double wa = in[kWeightA], wb = in[kWeightB], wc = in[kWeightC];
    const Cplx A11 = 1.0 + ea / B - ec * wa * ea / twoB2, A12 = -eb / B + ec * wa * eb / twoB2;
    const Cplx A21 = -(ec * wb * ea / twoB2), A22 = 1.0 + ec * wb * eb / twoB2;
    const Cplx b1 = 1.0 - ec * wa / B, b2 = 1.0 - ec * wb / B - ed * wc / B;
    const Cplx determinant = A11 * A22 - A12 * A21;
    const Cplx Ea = Quotient(b1 * A22 - A12 * b2, determinant), Eb = Quotient(A11 * b2 - b1 * A21, determinant);
    const double both = HeldFromZero(da + db);
    const Cplx mean = (Ea * da + Eb * db) / both;
    return B + Quotient(ea * Ea * da + eb * Eb * db, mean * both) +
           Quotient(ec * (1.0 + (eb * Eb - ea * Ea) / (2 * B)) + ed, mean);
  }
};

struct PowderMixture {
  enum Input { kFirst, kSecond, kFilling };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "first medium, e0"), Partner(0, Wp, "second medium, e1"),
                                      Own(0, G, "filling f", 0.6)};

  static Cplx Response(const TypeInputs<double>& in) {
    const double f = in[kFilling], a = (3 * f - 3) / (3 * f - 5), b = (3 * f - 1) / (3 * f - 5);
    const double h = 2 * a * b - 4 * a - 4 * b + 4;
    const Cplx e0 = in.eps(kFirst), e1 = in.eps(kSecond);
    const Cplx underRoot = e0 * e0 * (a * a) + e1 * e1 * (b * b) + e0 * e1 * h;
    return 0.5 * (e0 * a + e1 * b + BranchOf(underRoot) * Sqrt(underRoot));
  }
};

struct TwoComponents {
  enum Input { kFirst, kSecond, kDepolarisation, kFilling };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "first medium, e0"), Partner(0, Wp, "second medium, e1"),
                                      Own(1, Wo, "depolarisation L", 0.33), Own(1, Wp, "filling f of the second", 0.4)};

  static Cplx Response(const TypeInputs<double>& in) {
    const double L = in[kDepolarisation], f = in[kFilling], g = 1 - f;
    const Cplx e0 = in.eps(kFirst), e1 = in.eps(kSecond);
    const double A = L * (f + g);
    const Cplx B = f * e1 + g * e0 - (f * e0 + g * e1) * L, product = e0 * e1 * (f + g);
    if (A == 0) return -Quotient(product, B);  // the limit of the finite root
    const Cplx underRoot = B * B - 4.0 * product * A;
    return (-B + BranchOf(underRoot) * Sqrt(underRoot)) / (2 * A);
  }
};

}  // namespace

constinit const ModelType kSerialResistor = ShownType<SerialResistor, Exactly(2)>(
    8, "Serial resistor",
    {.sample = "two media in series along the electric field",
     .formula = "e = (w0 + w1)/(w0/e0 + w1/e1), w0 and w1 the weights (thicknesses)",
     .source = "capacitors in series; M. Born, E. Wolf, Principles of Optics, chapter 15.5"});

constinit const ModelType kBilayerLocalField = ShownType<BilayerLocalField, Exactly(4)>(
    7, "Bilayer-local field",
    {.sample = "a crystal of double layers along the normal: plasma and phonon modes with different local fields",
     .formula = "A11 = 1 + ea/B - ec wa ea/(2 B^2), A12 = -eb/B + ec wa eb/(2 B^2), A21 = -ec wb ea/(2 B^2),\n"
                "A22 = 1 + ec wb eb/(2 B^2); b1 = 1 - ec wa/B, b2 = 1 - ec wb/B - ed wc/B; A (Ea, Eb) = (b1, b2)\n"
                "mean = (Ea da + Eb db)/(da + db)\n"
                "e = B + (ea Ea da + eb Eb db)/((da + db) mean) + (ec (1 + (eb Eb - ea Ea)/(2B)) + ed)/mean",
     .source = "double layers with local fields, D. Munzar et al., Solid State Commun. 112, 365 (1999)"});

constinit const ModelType kEmaPowder = ShownType<PowderMixture, Exactly(1)>(
    15, "EMA - powder",
    {.sample = "a powder or a mixture of two media",
     .formula =
         "a = (3f - 3)/(3f - 5), b = (3f - 1)/(3f - 5), h = 2ab - 4a - 4b + 4\n"
         "e = [a e0 + b e1 +- sqrt(a^2 e0^2 + b^2 e1^2 + h e0 e1)]/2, + if the imaginary part of the\n"
         "root's argument is at least 0, else -\n"
         "Two equal media give that medium. f = 1 gives [sqrt(e1^2 + 8 e0 e1) - e1]/2, which is neither medium:\n"
         "f is not the volume fraction. f = 5/3 is excluded.",
     .source = "self-consistent mixture in the form with two weights, used as given"});

constinit const ModelType kEmaTwoComponents = ShownType<TwoComponents, Exactly(2)>(
    40, "EMA - 2 components",
    {.sample = "a mixture of two media with a depolarisation factor",
     .formula =
         "g = 1 - f, A = L (f + g), B = f e1 + g e0 - (f e0 + g e1) L\n"
         "e = [-B +- sqrt(B^2 - 4 e0 e1 (f + g) A)]/(2A), + if the imaginary part of the root's argument is at\n"
         "least 0, else -; L = 0: e = -e0 e1/B\n"
         "The signs differ from those of the self-consistent equation of ellipsoids: two equal media do not give\n"
         "that medium.",
     .source = "effective medium with a depolarisation factor, used as given; the value at L = 0 is the limit"});

}  // namespace kalvex
