// Graphene in a magnetic field: the Kubo sum over Landau levels, and a sheet of it on a substrate.
#include "types/landau/dirac_levels.h"
#include "types/magneto/circular.h"
#include "types/types.h"

namespace kalvex {
namespace {

// Several kinds of electrons, each with its own gap, chemical potential, broadening and velocity.
struct GrapheneMagnetooptics {
  static constexpr Hooks kHooks = hook::kPrepare;
  enum Head { kTemperature, kField, kWindow, kCutoff, kBackground, kHallBackground };
  enum Block { kGap, kPotential, kBroadening, kVelocity, kWeight };
  static constexpr RowCell kHead[] = {Own(0, Wo, "temperature, K", 50),
                                      Own(0, Wp, "magnetic field, T, signed", 7),
                                      Setting(0, G, "thermal window, kT", 40),
                                      Setting(1, Wo, "cut-off: twice the largest level energy, eV", 1.2),
                                      Own(1, Wp, "background of Re sigma_xx, Ohm^-1 cm^-1", 50),
                                      Own(1, G, "background of Re sigma_xy, Ohm^-1 cm^-1", 20)};
  static constexpr RowCell kGroup[] = {Own(0, Wo, "gap D, eV", 0.03), Own(0, Wp, "chemical potential, eV", 0.15),
                                       Own(0, G, "broadening g, eV", 0.01), Own(1, Wo, "velocity, m/s", 1.0e6),
                                       Own(1, Wp, "weight", 1)};
  static constexpr int kGroupStart = 2, kGroupRows = 2;
  static constexpr std::uint64_t kOfSum = InputBits({kTemperature, kField, 6, 7, 8, 9, 10});
  static constexpr SlotUse kFills[] = {
      {kS1, "Re sigma_xx, Ohm^-1 cm^-1 of a layer of 3.35 A", kOfSum | InputBits({kBackground})},
      {kS2, "Im sigma_xx", kOfSum},
      {kN1, "Re sigma_xy", kOfSum | InputBits({kHallBackground})},
      {kN2, "Im sigma_xy", kOfSum}};

  template <class T>
  struct Table {
    struct Carriers {
      LadderTable<T> ladder;
      T perDiagonal{};  // 7266 v^2 6.577e-16 |B|/pi, and signed by the field
      T perHall{};
      T width{};
      T weight{};
    };
    std::vector<Carriers> carriers;
  };

  template <class T>
  static void Prepare(const TypeInputs<T>& in, Table<T>& table) {
    table.carriers.resize(in.groups());
    for (std::size_t k = 0; k < in.groups(); ++k) {
      auto& carriers = table.carriers[k];
      carriers.ladder.Clear();
      carriers.width = in[in.Of(k, kBroadening)];
      carriers.weight = in[in.Of(k, kWeight)];
      const T v = in[in.Of(k, kVelocity)], B = in[kField], half = T(7266 * 6.577e-16 / std::numbers::pi) * v * v;
      if (!AddLevels(in, k, carriers.ladder)) {
        carriers.perDiagonal = half * Magnitude(B);
        carriers.perHall = -(half * B);
        continue;
      }
      carriers.perDiagonal = T(kLadderConductivity / std::numbers::pi);
      carriers.perHall = T(0);
    }
  }

  template <class T>
  static void Fill(const TypeInputs<T>& in, const Table<T>& table, Slots<T>& q) {
    q[kS1] = in[kBackground];
    q[kN1] = in[kHallBackground];
    const double w = kElectronvoltPerWavenumber * in.x;
    for (const auto& carriers : table.carriers) {
      const Complex<T> W{T(w), T(2) * carriers.width};
      const LadderSums<T> sums = SumLadder(carriers.ladder, W, in.ahead());
      const Complex<T> xx = -TimesI(W * sums.diagonal * carriers.perDiagonal), xy = sums.hall * carriers.perHall;
      q[kS1] += carriers.weight * xx.re;
      q[kS2] += carriers.weight * xx.im;
      q[kN1] += carriers.weight * xy.re;
      q[kN2] += carriers.weight * xy.im;
    }
  }

 private:
  // With more levels than this the continuum of zero field is used.
  static constexpr double kMostLevels = 200000;

  // The number of the last level between the gap and an energy, from 1 on the positive side and from -1 on the negative
  // side; 0 within the gap.
  static double PlaceOf(double energy, double gap, double unit) {
    const double above = energy * energy - gap * gap;
    if (above < 0) return 0;
    const double place = 1 + std::trunc(above / unit);
    return energy < 0 ? -place : place;
  }

  // Occupations: Fermi's function within the thermal window, 1 below and 0 above it. Its edges lie at levels.
  template <class T>
  struct Occupations {
    T mu, kT;
    double below, above;
    T Of(const T& energy, int n, int side) const {
      const double place = side * (n + 1.0);
      if (place < below) return T(1);
      if (place > above) return T(0);
      return Fermi(energy - mu, kT);
    }
  };

  // Fills the table for one kind of electrons. Returns true if it is the continuum of zero field.
  template <class T>
  static bool AddLevels(const TypeInputs<T>& in, std::size_t k, LadderTable<T>& ladder) {
    const T D = in[in.Of(k, kGap)], mu = in[in.Of(k, kPotential)], v = in[in.Of(k, kVelocity)];
    const T kT = T(kElectronvoltPerKelvin) * in[kTemperature];
    const double gap = ValueOf(D), window = in.value(kWindow) * ValueOf(kT);
    const double unit = 2 * ValueOf(v) * ValueOf(v) * std::fabs(ValueOf(in[kField])) * 6.582e-16;
    const double largest = 0.5 * in.value(kCutoff);
    const double count = (largest * largest - gap * gap) / unit;
    if (!(unit > 0) || count > kMostLevels) {
      AddDiracContinuum(ladder, T(1), D, mu, kT, largest, ValueOf(in[in.Of(k, kBroadening)]));
      return true;
    }
    const Occupations<T> f{mu, kT, PlaceOf(ValueOf(mu) - window, gap, unit), PlaceOf(ValueOf(mu) + window, gap, unit)};
    const T eps2 = T(kLadderScale) * v * v * Magnitude(in[kField]);
    T E1 = Magnitude(D);
    for (int n = 0; n <= count; ++n) {
      const T E2 = Sqrt(D * D + eps2 * T(n + 1));
      const T ratio = GapRatio(D, E1, E2), P = T(1) + ratio, M = T(1) - ratio;
      const T below = f.Of(-E1, n, -1) - f.Of(E2, n + 1, 1), above = f.Of(-E2, n + 1, -1) - f.Of(E1, n, 1);
      const T F = below + above, hall = below - above;
      const T S = E1 + E2, step = E2 - E1;
      ladder.Add(S * S, F * P / S, hall * P);
      ladder.Add(step * step, F * M / step, hall * M);
      E1 = E2;
    }
    return false;
  }
};

// Sheets of graphene on a thick substrate in circularly polarised light.
struct GrapheneCircular {
  static constexpr Hooks kHooks = hook::kPrepare;
  enum Input {
    kSubstrate,
    kLayers,
    kGap,
    kTemperature,
    kField,
    kBroadening,
    kHighest,
    kVelocity,
    kPotential,
    kBackground,
    kHallBackground
  };
  static constexpr RowCell kHead[] = {OptionalPartner(0, Wo, "substrate"),
                                      Own(0, Wp, "number of layers", 1),
                                      Own(0, G, "gap D, eV", 0.02),
                                      Own(1, Wo, "temperature, K", 50),
                                      Own(1, Wp, "magnetic field, T, signed", 7),
                                      Own(1, G, "broadening, eV", 0.01),
                                      Setting(2, Wo, "highest level, 0 for 60", 40),
                                      Own(2, Wp, "velocity, m/s", 1.0e6),
                                      Own(2, G, "chemical potential, eV", 0.12),
                                      Own(3, Wo, "background of Re sigma_xx, Ohm^-1 cm^-1", 50),
                                      Own(3, Wp, "background of Re sigma_xy, Ohm^-1 cm^-1", 20)};
  static constexpr auto kAll = SheetFills(kAllInputs, kAllInputs, kAllInputs);
  static constexpr std::span<const SlotUse> kFills = kAll;

  template <class T>
  struct Table {
    LadderTable<T> ladder;
    bool inField = false;
  };

  template <class T>
  static void Prepare(const TypeInputs<T>& in, Table<T>& table) {
    constexpr int kUsualLevels = 60, kMostLevels = 200000;
    const int highest = in.setting(kHighest) > 0 ? std::min(in.setting(kHighest), kMostLevels) : kUsualLevels;
    const T eps2 = T(kLadderScale) * in[kVelocity] * in[kVelocity] * Magnitude(in[kField]);
    table.ladder.Clear();
    table.inField = ValueOf(eps2) != 0;
    if (!table.inField) return;
    AddDiracTransitions(table.ladder, eps2, eps2, in[kGap], in[kPotential],
                        T(kElectronvoltPerKelvin) * in[kTemperature], highest);
  }

  template <class T>
  static void Fill(const TypeInputs<T>& in, const Table<T>& table, Slots<T>& q) {
    const Complex<T> z{T(kElectronvoltPerWavenumber * in.x), in[kBroadening]};
    const Complex<T> background{in[kBackground], T(0)}, hall{in[kHallBackground], T(0)};
    const SheetTensor<T> band = ChiralBand(z, in[kGap], in[kPotential], 1);
    const Complex<T> zeroField = T(4) * band.xx + background;
    const SheetTensor<T> tensor = LadderTensor(table.ladder, z, ValueOf(in[kField]) < 0, in.ahead());
    const Circular<T> sigma = CircularOf(table.inField ? tensor.xx + background : zeroField, tensor.xy + hall);
    FillSheetOnSubstrate(sigma, zeroField, in[kLayers], Sqrt(in.eps(kSubstrate)), q);
  }
};

}  // namespace

constinit const ModelType kGrapheneMagnetooptics = FittedType<GrapheneMagnetooptics, AtLeast(4)>(
    41, "Graphene-magnetooptics",
    {.sample = "graphene, or several kinds of Dirac electrons, in a magnetic field: the conductivity tensor",
     .formula =
         "E_n = sqrt(D^2 + 2 v^2 6.577e-16 |B| n), W = w + 2ig, w = 0.00012399256 x in eV, holes at -E_n\n"
         "sigma_xx = |B| 7266 v^2 6.577e-16 (W/(i pi)) sum F [P/(S (S^2 - W^2)) + M/(S' (S'^2 - W^2))]\n"
         "sigma_xy = -7266 v^2 6.577e-16 (B/pi) sum H [P/(S^2 - W^2) + M/(S'^2 - W^2)]\n"
         "E1 = E_n, E2 = E_(n+1), S = E2 + E1, S' = E2 - E1, P, M = 1 +- D^2/(E1 E2)\n"
         "F, H = [f(-E1) - f(E2)] +- [f(-E2) - f(E1)]; each kind of carriers adds with its weight\n"
         "The occupation is 1 below mu - window kT and 0 above mu + window kT. Levels count up to half the cut-off.\n"
         "Both terms of sigma_xx use the same F. The correct occupations of the transitions within a band are\n"
         "f(E1) - f(E2) + f(-E2) - f(-E1), which give the cyclotron resonance of doped graphene its weight.\n"
         "With F, pairs of empty levels contribute as well: sigma_xx grows with the cut-off, tenfold when it doubles.\n"
         "To compare with a measurement use type 97, which has the correct occupations.\n"
         "B = 0: the integral over energies with the correct occupations, no Hall part; 1816.5 above 2 mu.",
     .source = "V. P. Gusynin, S. G. Sharapov, J. P. Carbotte, J. Phys.: Condens. Matter 19, 026222 (2007)",
     .from = 100,
     .to = 3000});

constinit const ModelType kGrapheneCircular = ShownType<GrapheneCircular, Exactly(6)>(
    52, "Graphene-circular",
    {.sample = "layers of graphene on a thick substrate in a magnetic field, with circularly polarised light",
     .formula = "sigma_+- = sigma_xx +- i sigma_xy from the sum over Landau levels +-sqrt(D^2 + n eps^2),\n"
                "eps^2 = 2 v^2 6.577e-16 |B|; s_+- = 1.2619984e-5 N sigma_+-\n"
                "t_+- = 2/(1 + n_s + s_+-), r_+- = (1 - n_s - s_+-)/(1 + n_s + s_+-)\n"
                "rotation = Im ln(t_-/t_+)/2, likewise of r; t_0 with the conductivity without field at T = 0",
     .source =
         "V. P. Gusynin, S. G. Sharapov, J. P. Carbotte, J. Phys.: Condens. Matter 19, 026222 (2007); sheet at an "
         "interface: boundary conditions of the fields",
     .from = 100,
     .to = 3000});

}  // namespace kalvex
