// A stack of plates with a fast and a slow axis, in vacuum.
#include <numbers>

#include "types/magneto/circular.h"
#include "types/types.h"

namespace kalvex {
namespace {

// 2 by 2 block of matrix elements between tangential fields along x and y.
using Block = std::array<std::array<Cplx, 2>, 2>;

Block operator*(const Block& a, const Block& b) {
  Block product{};
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) product[i][j] = a[i][0] * b[0][j] + a[i][1] * b[1][j];
  }
  return product;
}
Block operator+(const Block& a, const Block& b) {
  Block sum{};
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) sum[i][j] = a[i][j] + b[i][j];
  }
  return sum;
}

// (E, H) on the front side = [[ee, eh], [he, hh]] (E, H) on the back side, times a factor that keeps the matrices of
// thick absorbing plates finite.
struct Fields {
  Block ee, eh, he, hh;
};
Fields operator*(const Fields& a, const Fields& b) {
  return {a.ee * b.ee + a.eh * b.he, a.ee * b.eh + a.eh * b.hh, a.he * b.ee + a.hh * b.he, a.he * b.eh + a.hh * b.hh};
}

// diag(fast, slow), rotated by an angle.
Block Turned(const Cplx& fast, const Cplx& slow, double angle) {
  const double c = std::cos(angle), s = std::sin(angle);
  const Cplx mixed = (fast - slow) * (c * s);
  return {{{fast * (c * c) + slow * (s * s), mixed}, {mixed, fast * (s * s) + slow * (c * c)}}};
}

struct Waveplates {
  enum Input { kCount, kFast, kSlow, kAngle, kThickness, kStep };
  static constexpr RowCell kHead[] = {
      Setting(0, Wp, "number of plates", 3),
      Partner(1, Wo, "fast axis"),
      Partner(1, Wp, "slow axis"),
      Own(1, G, "angle between the fast axis and the light's polarisation, degrees", 30),
      Own(2, Wo, "thickness of one plate, cm", 0.0008),
      Own(2, Wp, "further rotation of each plate relative to the previous one, degrees", 10)};
  static constexpr SlotUse kFills[] = {{kRefl, "transmission into both polarisations"},
                                       {kRp, "transmission into the incoming polarisation"},
                                       {kRs, "transmission into the other polarisation"},
                                       {kRps, "transmission into the other over that into the incoming polarisation"},
                                       {kDefringed, "ellipticity angle of the transmitted light, degrees"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    constexpr int kMostPlates = 10000;
    const int plates = std::clamp(in.setting(kCount), 0, kMostPlates);
    const Cplx nf = Sqrt(in.eps(kFast)), ns = Sqrt(in.eps(kSlow));
    const double path = 2 * std::numbers::pi * in.x * in[kThickness];
    const Cplx ef = GuardedExp(TimesI(nf) * path), es = GuardedExp(TimesI(ns) * path);
    const Cplx common = Norm(ef) > Norm(es) ? ef : es;
    Fields all{Turned({1, 0}, {1, 0}, 0), {}, {}, Turned({1, 0}, {1, 0}, 0)};
    Cplx passed{1, 0};
    for (int k = 0; k < plates; ++k) {
      all = all * PlateOf(nf, ns, ef, es, common, (in[kAngle] + k * in[kStep]) / kDegreesPerRadian);
      passed *= common;
    }
    // On the back side H = E. On the front side the incoming wave is (E + H)/2, polarised along x.
    const Block sum = all.ee + all.eh + all.he + all.hh;
    const Cplx determinant = sum[0][0] * sum[1][1] - sum[0][1] * sum[1][0];
    const Cplx tx = Quotient(2.0 * passed * sum[1][1], determinant),
               ty = Quotient(-2.0 * passed * sum[1][0], determinant);
    q[kRp] = Norm(tx);
    q[kRs] = Norm(ty);
    q[kRefl] = q[kRp] + q[kRs];
    if (q[kRp] > 0) q[kRps] = q[kRs] / q[kRp];
    if (q[kRefl] > 0) {
      q[kDefringed] = 0.5 * kDegreesPerRadian * std::asin(std::clamp(2 * (Conj(tx) * ty).im / q[kRefl], -1.0, 1.0));
    }
  }

 private:
  // One plate, times the common phase factor e: e cos p, and e i sin p.
  static Fields PlateOf(const Cplx& nf, const Cplx& ns, const Cplx& ef, const Cplx& es, const Cplx& e, double angle) {
    const auto scaled = [&](const Cplx& own, double sign) { return 0.5 * (Quotient(e, own) + sign * (e * own)); };
    const Cplx cf = scaled(ef, 1), cs = scaled(es, 1), sf = -scaled(ef, -1), ss = -scaled(es, -1);
    return {Turned(cf, cs, angle), Turned(-Quotient(sf, nf), -Quotient(ss, ns), angle),
            Turned(-(sf * nf), -(ss * ns), angle), Turned(cf, cs, angle)};
  }
};

}  // namespace

constinit const ModelType kComplexWaveplates = ShownType<Waveplates, AtLeast(3)>(
    85, "Complex waveplates",
    {.sample = "a stack of birefringent, absorbing plates in vacuum, with all echoes, in linearly polarised light",
     .formula =
         "each plate and axis: fields (E, H) through [[cos p, -i sin p/n], [-i n sin p, cos p]], p = 2 pi x n d;\n"
         "both axes turned by the angle, plate k by k further turns; the 4-by-4 matrices multiplied\n"
         "t = 2 (M11 + M12 + M21 + M22)^-1 on light polarised along x; ellipticity angle asin(2 Im(tx* ty)/T)/2",
     .source = "D. W. Berreman, J. Opt. Soc. Am. 62, 502 (1972), at normal incidence; the order of the rows beyond the "
               "axes and the thickness is a choice of this program"});

}  // namespace kalvex
