// A band on a square lattice with hopping up to fifth neighbours: energies along a path, and the tunnelling spectrum.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

#include "numeric/digamma.h"
#include "types/frame.h"
#include "types/types.h"

namespace kalvex {
namespace {

// Energy at (kx, ky) in units of the reciprocal lattice. `first` is the input t1; t2 ... t5 and mu follow it.
template <class T>
T BandEnergy(const TypeInputs<T>& in, std::size_t first, double kx, double ky) {
  const double x1 = std::cos(2 * std::numbers::pi * kx), y1 = std::cos(2 * std::numbers::pi * ky);
  const double x2 = std::cos(4 * std::numbers::pi * kx), y2 = std::cos(4 * std::numbers::pi * ky);
  return in[first] * T(2 * (x1 + y1)) + in[first + 1] * T(4 * x1 * y1) + in[first + 2] * T(2 * (x2 + y2)) +
         in[first + 3] * T(4 * (x1 * y2 + x2 * y1)) + in[first + 4] * T(4 * x2 * y2) - in[first + 5];
}

struct BandPath {
  enum Head { kT1, kT2, kT3, kT4, kT5, kMu };
  enum Node { kPosition, kX, kY };
  static constexpr RowCell kHead[] = {Own(0, Wo, "t1", -100), Own(0, Wp, "t2", 30), Own(0, G, "t3", -10),
                                      Own(1, Wo, "t4", 5),    Own(1, Wp, "t5", 3),  Own(1, G, "mu", -80)};
  static constexpr RowCell kGroup[] = {Setting(0, Wo, "position of a node on the axis", 0),
                                       Setting(0, Wp, "kx of the node", 0), Setting(0, G, "ky of the node", 0.5)};
  static constexpr int kGroupStart = 2, kGroupRows = 1;
  static constexpr SlotUse kFills[] = {{kRefl, "energy of the band"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    for (std::size_t k = 0; k + 1 < in.groups(); ++k) {
      const double from = in.value(in.Of(k, kPosition)), to = in.value(in.Of(k + 1, kPosition));
      if (!(in.x >= from && in.x <= to)) continue;
      const double t = to > from ? (in.x - from) / (to - from) : 0;
      const auto mix = [&](std::size_t cell) {
        return (1 - t) * in.value(in.Of(k, cell)) + t * in.value(in.Of(k + 1, cell));
      };
      q[kRefl] = BandEnergy(in, kT1, mix(kX), mix(kY));
      return;
    }
  }
};

// The tunnelling spectrum: a sum of Lorentzians of all states, broadened by the temperature.
struct Tunnelling {
  static constexpr Hooks kHooks = hook::kIdle | hook::kPrepare;
  enum Input {
    kMesh,
    kTemperature,
    kT1,
    kT2,
    kT3,
    kT4,
    kT5,
    kMu,
    kWidth,
    kLinear,
    kQuadratic,
    kWidth2,
    kLinear2,
    kQuadratic2
  };
  static constexpr RowCell kHead[] = {Setting(0, Wo, "points of the mesh of wave vectors in each direction", 8),
                                      Own(0, Wp, "temperature, K", 150),
                                      Own(2, Wo, "t1, meV", -100),
                                      Own(2, Wp, "t2, meV", 30),
                                      Own(2, G, "t3, meV", -10),
                                      Own(3, Wo, "t4, meV", 5),
                                      Own(3, Wp, "t5, meV", 3),
                                      Own(3, G, "mu, meV", -80),
                                      Own(5, Wo, "broadening, meV", 20),
                                      Own(5, Wp, "part of it that grows with the energy of the state", 0.1),
                                      Own(5, G, "part of it that grows with the square, 1/meV", 1e-4),
                                      Own(6, Wo, "broadening at negative x, meV, 0 for the same", 25),
                                      Own(6, Wp, "its linear part", 0.05),
                                      Own(6, G, "its quadratic part, 1/meV", 2e-4)};
  static constexpr SlotUse kFills[] = {{kRefl, "tunnelling density of states, 1/meV"}};

  template <class T>
  static bool TakesSecond(const TypeInputs<T>& in) {
    return in.value(kWidth2) > 0;
  }
  static std::uint64_t Idle(const TypeInputs<double>& in) {
    return TakesSecond(in) ? 0 : InputBits({kWidth2, kLinear2, kQuadratic2});
  }

  // The states of the mesh, one for each set of equivalent ones, with the broadenings at positive and negative x.
  template <class T>
  struct State {
    T energy, width, widthBelow;
    double share;
  };
  template <class T>
  struct Table {
    std::vector<State<T>> states;
  };

  template <class T>
  static void Prepare(const TypeInputs<T>& in, Table<T>& table) {
    constexpr int kMostPoints = 2000;
    const int count = std::clamp(in.setting(kMesh), 1, kMostPoints);
    const std::size_t below = TakesSecond(in) ? kWidth2 : kWidth;
    table.states.clear();
    // kx -> -kx, ky -> -ky and exchange of kx and ky keep the energy: the wedge 0 <= j <= i <= N/2 is enough.
    const auto twins = [&](int i) { return i == 0 || 2 * i == count ? 1.0 : 2.0; };
    for (int i = 0; 2 * i <= count; ++i) {
      for (int j = 0; j <= i; ++j) {
        const T e = BandEnergy(in, kT1, static_cast<double>(i) / count, static_cast<double>(j) / count);
        const T size = ValueOf(e) < 0 ? -e : e;
        const auto width = [&](std::size_t first) { return in[first] + in[first + 1] * size + in[first + 2] * e * e; };
        table.states.push_back({e, width(kWidth), width(below), twins(i) * twins(j) * (i == j ? 1 : 2)});
      }
    }
  }

  template <class T>
  static void Fill(const TypeInputs<T>& in, const Table<T>& table, Slots<T>& q) {
    constexpr double kMillivoltsPerKelvin = 0.0861734215079;
    const T kT = T(kMillivoltsPerKelvin) * in[kTemperature];
    if (!(ValueOf(kT) > 0)) return;
    const T perUnit = T(1) / (T(2 * std::numbers::pi) * kT);
    T sum(0);
    double states = 0;
    for (std::size_t first = 0; first < table.states.size(); first += kTogether) {
      const std::size_t count = std::min(kTogether, table.states.size() - first);
      sum += SumOfStates(in.x, perUnit, std::span(table.states).subspan(first, count));
      for (std::size_t i = first; i < first + count; ++i) states += table.states[i].share;
    }
    q[kRefl] = sum * perUnit / T(std::numbers::pi * states);
  }

 private:
  // Number of states in a call of Trigammas.
  static constexpr std::size_t kTogether = 64;

  template <class T>
  static T SumOfStates(double x, const T& perUnit, std::span<const State<T>> states) {
    std::array<Complex<T>, kTogether> z;
    std::array<Cplx, kTogether> at, values, slopes;
    for (std::size_t i = 0; i < states.size(); ++i) {
      const T& width = x < 0 ? states[i].widthBelow : states[i].width;
      z[i] = {T(0.5) + width * perUnit, (T(x) - states[i].energy) * perUnit};
      at[i] = ValueOf(z[i]);
    }
    Trigammas(std::span(at).first(states.size()), values, slopes);
    T sum(0);
    for (std::size_t i = 0; i < states.size(); ++i) {
      if (at[i].re > 0) sum += Analytic(z[i], values[i], slopes[i]).re * T(states[i].share);
    }
    return sum;
  }
};

}  // namespace

constinit const ModelType kStmBandStructure = ShownType<BandPath, AtLeast(4)>(
    27, "STM (band structure)",
    {.sample = "the energy of a band on a square lattice along a path of wave vectors",
     .formula =
         "E = 2 t1 (cos X + cos Y) + 4 t2 cos X cos Y + 2 t3 (cos 2X + cos 2Y) + 4 t4 (cos X cos 2Y + cos 2X cos Y)\n"
         "+ 4 t5 cos 2X cos 2Y - mu, X = 2 pi kx, Y = 2 pi ky; kx and ky run linearly from node to node; 0 outside",
     .source = "tight binding, N. W. Ashcroft, N. D. Mermin, Solid State Physics, chapter 10",
     .from = 0,
     .to = 1,
     .axis = "position on the path, in the unit of the nodes"});

constinit const ModelType kStmTarneck = FittedType<Tunnelling, Exactly(8)>(
    26, "STM (Tarneck)",
    {.sample = "the tunnelling spectrum of a band on a square lattice, broadened by lifetime and temperature",
     .formula = "g = N^-2 sum over k of Re psi1(1/2 + (G + i (x - e_k))/(2 pi kT))/(2 pi^2 kT), kT = 0.0861734 T,\n"
                "G = a + b |e_k| + c e_k^2 of row 6; for negative x of row 7 if its a is above 0; e_k as in type 27,\n"
                "k = i/N in both directions. Rows 2, 5 and 8 are free.",
     .source =
         "Lorentzians in the mean with the slope of the Fermi function: sum over Matsubara frequencies, G. D. Mahan, "
         "Many-Particle Physics, chapter 3; the roles of rows 5 to 8 are a choice of this program",
     .from = -300,
     .to = 300,
     .axis = "energy, meV"});

}  // namespace kalvex
