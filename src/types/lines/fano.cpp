// Asymmetric lines: a mode that interferes with a continuum, or a phonon screened by an electronic transition.
#include <cmath>

#include "types/frame.h"
#include "types/lines/oscillator.h"
#include "types/types.h"

namespace kalvex {
namespace {

// A phonon and an electronic oscillator that screens it.
struct CoupledPhonon {
  enum Input { kFrequency, kPlasma, kWidth, kElectronic, kCoupling, kElectronicWidth };
  static constexpr RowCell kHead[] = {Own(0, Wo, "phonon frequency, cm-1", 200),
                                      Own(0, Wp, "phonon plasma frequency, cm-1", 300),
                                      Own(0, G, "phonon width, cm-1", 15),
                                      Own(1, Wo, "electronic frequency, cm-1", 350),
                                      Own(1, Wp, "coupling", 0.05),
                                      Own(1, G, "electronic width, cm-1", 150)};
  static constexpr SlotUse kFills[] = {{kRefl, "Re sigma of the phonon alone, Ohm^-1 cm^-1"},
                                       {kTrans, "Im sigma of the phonon alone"},
                                       {kRp, "Re of the change by the coupling"},
                                       {kRs, "Im of the change by the coupling"},
                                       {kS1, "Re sigma of the coupled phonon"},
                                       {kS2, "Im sigma of the coupled phonon"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    const double x = in.x;
    const Cplx phonon = Oscillator(in[kPlasma] * in[kPlasma], in[kFrequency], in[kWidth], x);
    const Cplx electronic = Oscillator(in[kElectronic] * in[kElectronic], in[kElectronic], in[kElectronicWidth], x);
    const Cplx alone = -TimesI(phonon) * (x / 60);
    const Cplx coupled = -TimesI(ScreenedPhonon(phonon, electronic, in[kCoupling])) * (x / 60);
    q[kRefl] = alone.re;
    q[kTrans] = alone.im;
    q[kRp] = coupled.re - alone.re;
    q[kRs] = coupled.im - alone.im;
    q[kS1] = coupled.re;
    q[kS2] = coupled.im;
  }
};

// One line or the sum of two. Each line has two rows.
template <std::size_t kLines>
struct FanoLines {
  enum Cell { kPosition, kStrength, kWidth, kAsymmetry, kCells };
  static constexpr auto kHeadCells = [] {
    std::array<RowCell, kLines * kCells> cells{};
    int row = 0;
    double position = 150;
    for (std::size_t at = 0; at < cells.size(); at += kCells, row += 2, position += 120) {
      cells[at] = Own(row, Wo, "position, cm-1", position);
      cells[at + 1] = Own(row, Wp, "strength, cm-1", 200);
      cells[at + 2] = Own(row, G, "width, cm-1", 40);
      cells[at + 3] = Own(row + 1, Wo, "asymmetry q", 3);
    }
    return cells;
  }();
  static constexpr std::span<const RowCell> kHead = kHeadCells;
  static constexpr SlotUse kFills[] = {{kS1, "conductivity, Ohm^-1 cm^-1"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    for (std::size_t at = 0; at < kHeadCells.size(); at += kCells) {
      const T width = AtLeast(in[at + kWidth]), asymmetry = AtLeast(in[at + kAsymmetry]), strength = in[at + kStrength];
      const T t = T(2) * (T(in.x) - in[at + kPosition]) / width, q2 = asymmetry * asymmetry;
      q[kS1] += strength * strength / (T(60) * width) * (q2 + T(2) * asymmetry * t - T(1)) / ((t * t + T(1)) * q2);
    }
  }

 private:
  template <class T>
  static T AtLeast(const T& value) {
    constexpr double kLeast = 1e-10;
    return std::fabs(ValueOf(value)) < kLeast ? T(kLeast) : value;
  }
};

}  // namespace

constinit const ModelType kFano = ShownType<CoupledPhonon, Exactly(2)>(
    39, "Fano",
    {.sample = "a phonon screened by an electronic transition",
     .formula = "Lp = Wp^2/(W^2 - x^2 - iGx), Le = W1^2/(W1^2 - x^2 - iG1 x)\n"
                "sigma0 = -i x Lp/60, sigma = sigma0/(1 - k Lp Le), k the coupling",
     .source = "two coupled oscillators, U. Fano, Phys. Rev. 124, 1866 (1961)"});

constinit const ModelType kFanoOriginal = FittedType<FanoLines<1>, AtLeast(2)>(
    42, "Fano-original",
    {.sample = "an asymmetric line in the conductivity",
     .formula = "t = 2 (x - W)/G, sigma = Wp^2/(60 G) (q^2 + 2qt - 1)/((t^2 + 1) q^2)",
     .source = "U. Fano, Phys. Rev. 124, 1866 (1961), without the continuum"});

constinit const ModelType kFano2Original = FittedType<FanoLines<2>, AtLeast(4)>(
    46, "Fano2-original",
    {.sample = "two asymmetric lines in the conductivity",
     .formula = "sum of two lines: t = 2 (x - W)/G, sigma = Wp^2/(60 G) (q^2 + 2qt - 1)/((t^2 + 1) q^2)",
     .source = "U. Fano, Phys. Rev. 124, 1866 (1961), without the continuum"});

}  // namespace kalvex
