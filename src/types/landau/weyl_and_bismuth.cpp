// Bulk semimetals in a magnetic field: Weyl nodes, and bismuth.
#include <algorithm>
#include <numbers>

#include "core/files.h"
#include "core/text.h"
#include "types/landau/dirac_levels.h"
#include "types/magneto/circular.h"
#include "types/types.h"

namespace kalvex {
namespace {

constexpr double kPerCentimetre = 1e-2;
constexpr double kMetresPerNanometre = 1e-9;
constexpr int kMostPoints = 20000, kMostLevels = 20000;

// e B/h for 1 T, 1/m^2.
constexpr double kOrbitsPerTesla = 2.417989e14;

// ---- Weyl nodes

enum WeylInput {
  kTemperature,
  kField,
  kBroadening,
  kVelocity,
  kPotential,
  kNodes,
  kShift,
  kHighest,
  kFrom,
  kTo,
  kCount,
  kBackground,
  kHallBackground
};
constexpr RowCell kWeylHead[] = {Own(0, Wo, "temperature, K", 20),
                                 Own(0, Wp, "magnetic field, T, signed", 5),
                                 Own(0, G, "broadening, eV", 0.01),
                                 Own(1, Wo, "velocity, m/s", 5e5),
                                 Own(1, Wp, "chemical potential, eV", 0.05),
                                 Setting(1, G, "number of nodes, half of each chirality", 2),
                                 Own(2, Wp, "shift of the chemical potential with the chirality, eV", 0.01),
                                 Setting(3, Wo, "highest level", 20),
                                 Setting(4, Wo, "wave vector along the field from, 1/nm", -1),
                                 Setting(4, Wp, "to, 1/nm", 1),
                                 Setting(4, G, "number of wave vectors", 40),
                                 Own(5, Wo, "background of Re sigma_xx, Ohm^-1 cm^-1", 50),
                                 Own(5, Wp, "background of Re sigma_xy, Ohm^-1 cm^-1", 20)};
constexpr SlotUse kWeylFills[] = {{kRps, "density of electrons minus holes, cm-3"},
                                  {kE1, "Re eps_xx"},
                                  {kE2, "Im eps_xx"},
                                  {kS1, "Re sigma_xx, Ohm^-1 cm^-1"},
                                  {kS2, "Im sigma_xx"},
                                  {kN1, "Re eps_xy"},
                                  {kN2, "Im eps_xy"},
                                  {kDepth, "Re sigma_xy"},
                                  {kLoss, "Im sigma_xy"},
                                  {kDefringed, "electrons and holes, cm-3"}};
constexpr RowMap kWeylMap{.rows = AtLeast(6), .head = kWeylHead, .group = {}, .groupStart = 0, .groupRows = 1};

struct WeylTable {
  std::vector<double> numbers;  // from which it was computed
  LadderTable<double> ladder;
  double charge = 0;  // per cm^3
  double carriers = 0;
};

// The level n of a node at m = chi hbar v k, k the wave vector along the field.
struct WeylLevel {
  double energy;
  double up;  // weight of the component whose ladder index is one lower
};
WeylLevel LevelOf(double m, double eps, double n, int side) {
  if (n == 0) return {-m, 0};
  const double E = side * std::sqrt(m * m + n * eps * eps);
  return {E, E == 0 ? 0.5 : 0.5 * (1 + m / E)};
}

struct WeylMesh {
  double from, step;
  int count;
  double At(int i) const { return from + (i + 0.5) * step; }
};
WeylMesh MeshOf(const TypeInputs<double>& in) {
  const int count = std::clamp(in.setting(kCount), 1, kMostPoints);
  return {in.value(kFrom), (in.value(kTo) - in.value(kFrom)) / count, count};
}
// hbar v k in eV for k in 1/nm.
double EnergyOf(const TypeInputs<double>& in, double k) {
  return 6.58211899e-16 * in[kVelocity] * k / kMetresPerNanometre;
}
double UnitOf(const TypeInputs<double>& in) {
  return std::sqrt(2 * in[kVelocity] * in[kVelocity] * 6.58211899e-16 * std::fabs(in[kField]));
}

void AddWeylPairs(const TypeInputs<double>& in, double m, double mu, double lower, double upper, double eps,
                  double weight, LadderTable<double>& ladder) {
  const double kT = kElectronvoltPerKelvin * in[kTemperature];
  for (const int f : {1, -1}) {
    if (lower == 0 && f == -1) continue;
    for (const int i : {1, -1}) {
      const WeylLevel from = LevelOf(m, eps, lower, f), to = LevelOf(m, eps, upper, i);
      AddTransition(ladder, weight * (1 - from.up) * to.up, from.energy - mu, to.energy - mu, kT);
    }
  }
}

void CountCarriers(double energy, double mu, double kT, double weight, WeylTable& table) {
  const double f = Fermi(energy - mu, kT), hole = Fermi(mu - energy, kT);
  table.charge += weight * (energy > 0 ? f : energy < 0 ? -hole : f - 0.5);
  table.carriers += weight * (energy > 0 ? f : energy < 0 ? hole : 0.5);
}

// At zero field the sum over levels becomes an integral over the energy of the motion across the field.
void AddWeylContinuum(const TypeInputs<double>& in, double m, double mu, double weight, LadderTable<double>& ladder) {
  constexpr double kLargest = 1;  // eV
  const int count =
      static_cast<int>(std::clamp(4 * kLargest / std::fmax(std::fabs(in[kBroadening]), 1e-9), 200.0, 4000.0));
  const double step = kLargest / count;
  for (int i = 0; i < count; ++i) {
    const double k = (i + 0.5) * step;
    AddWeylPairs(in, m, mu, 1, 1, k, weight * 2 * k * step, ladder);
  }
}

void FillWeylTable(const TypeInputs<double>& in, WeylTable& table) {
  table.ladder.Clear();
  table.charge = table.carriers = 0;
  const WeylMesh mesh = MeshOf(in);
  const double eps = UnitOf(in), kT = kElectronvoltPerKelvin * in[kTemperature];
  const int highest = std::clamp(in.setting(kHighest), 1, kMostLevels);
  const double dk = mesh.step / kMetresPerNanometre / (2 * std::numbers::pi), nodes = 0.5 * in.value(kNodes);
  const double orbits = nodes * dk * kOrbitsPerTesla * std::fabs(in[kField]) * 1e-6;  // states per cm^3
  for (int k = 0; k < mesh.count; ++k) {
    for (const int chirality : {1, -1}) {
      const double m = chirality * EnergyOf(in, mesh.At(k)), mu = in[kPotential] + chirality * in[kShift];
      if (eps == 0) {
        AddWeylContinuum(in, m, mu, nodes * dk, table.ladder);
        continue;
      }
      CountCarriers(-m, mu, kT, orbits, table);
      for (int n = 1; n <= highest; ++n) {
        AddWeylPairs(in, m, mu, n - 1, n, eps, nodes * dk * eps * eps, table.ladder);
        for (const int side : {1, -1}) CountCarriers(LevelOf(m, eps, n, side).energy, mu, kT, orbits, table);
      }
    }
  }
}

// The levels of one node at a wave vector, ascending.
std::vector<double> WeylEnergies(const TypeInputs<double>& in, double k) {
  const double m = EnergyOf(in, k), eps = UnitOf(in);
  std::vector<double> energies = {-m};
  for (int n = 1; n <= std::clamp(in.setting(kHighest), 1, kMostLevels); ++n) {
    for (const int side : {1, -1}) energies.push_back(LevelOf(m, eps, n, side).energy);
  }
  std::sort(energies.begin(), energies.end());
  return energies;
}

// Writes files of the middle level of the list and the two above it, against the number of the mesh point.
void WriteLevels(const TypeInputs<double>& in) {
  const WeylMesh mesh = MeshOf(in);
  std::string text[3];
  for (int k = 0; k < mesh.count; ++k) {
    const std::vector<double> energies = WeylEnergies(in, mesh.At(k));
    const std::size_t middle = (energies.size() - 1) / 2;
    for (std::size_t f = 0; f < 3; ++f) {
      const double energy = energies[std::min(middle + f, energies.size() - 1)];
      text[f] += std::to_string(k) + ' ' + TextG(energy) + " \n";
    }
  }
  // A failure is ignored: the files are for the user only, the spectrum does not need them.
  for (std::size_t f = 0; f < 3; ++f) WriteWholeFile("EV" + std::to_string(f) + ".dat", text[f]).Ignore();
}

int EvaluateWeyl(EvalContext& ctx, const Model& model, double x, bool) {
  TypeRun run(ctx, model, kWeylMap, kWeylFills);
  if (const int status = run.ReadRows()) return status;
  for (std::size_t i = 0; i < run.InputCount(); ++i) run.Ask(i, x, false);
  const TypeInputs<double> in(run.scratch(), kWeylMap, x);
  if (in[kField] == 0) WriteLevels(in);
  auto& table = CacheOf<WeylTable>(ctx, model);
  if (table.numbers != run.scratch().raw) {
    FillWeylTable(in, table);
    table.numbers = run.scratch().raw;
  }
  Slots<double> q{};
  q[kRps] = table.charge;
  q[kDefringed] = table.carriers;
  // For one node, a quarter of four flavours; in siemens per metre.
  constexpr double kPrefactor = 2 / std::numbers::pi * 6.085432e-05;
  const Cplx z{kElectronvoltPerWavenumber * x, in[kBroadening]};
  const LadderSums<double> sums = SumLadder(table.ladder, z, in.ahead());
  const double scale = kPrefactor * kPerCentimetre, side = in[kField] > 0 ? -1 : in[kField] < 0 ? 1 : 0;
  const Cplx xx = -TimesI(z * sums.diagonal) * scale + in[kBackground],
             xy = sums.hall * (side * scale) + in[kHallBackground];
  q[kS1] = xx.re;
  q[kS2] = xx.im;
  q[kDepth] = xy.re;
  q[kLoss] = xy.im;
  if (x != 0) {
    q[kE1] = 1 - 60 / x * xx.im;
    q[kE2] = 60 / x * xx.re;
    q[kN1] = -60 / x * xy.im;
    q[kN2] = 60 / x * xy.re;
  }
  run.Store(q);
  return 0;
}

constexpr RowCell kWeylLevelsHead[] = {
    EvaluatedType(0, Wo, "Weyl bands, of type 93", 93),
    Setting(0, Wp,
            "number of the level, 0 for the lowest; the partner's highest level N gives the one through the node", 20)};
constexpr SlotUse kLevelFill[] = {{kRefl, "energy of the level, eV"}};
constexpr RowMap kWeylLevelsMap{
    .rows = Exactly(1), .head = kWeylLevelsHead, .group = {}, .groupStart = 0, .groupRows = 1};

// Reads the rows of a partner with the row map of its type.
template <class Read>
int ReadRowsOf(EvalContext& ctx, const Model& partner, const RowMap& map, Read read) {
  TypeRun run(ctx, partner, map, {});
  if (run.ReadRows() != 0) return -1;
  for (std::size_t i = 0; i < run.InputCount(); ++i) run.scratch().at[i] = {run.scratch().raw[i], 0};
  read(TypeInputs<double>(run.scratch(), map, 0));
  return 0;
}

int EvaluateWeylLevels(EvalContext& ctx, const Model& model, double x, bool) {
  TypeRun run(ctx, model, kWeylLevelsMap, kLevelFill);
  if (const int status = run.ReadRows()) return status;
  const double index = std::trunc(run.scratch().raw[1]);
  Slots<double> q{};
  const int status = ReadRowsOf(ctx, *run.scratch().partner[0], kWeylMap, [&](const TypeInputs<double>& in) {
    const std::vector<double> energies = WeylEnergies(in, x);
    if (index >= 0 && index < static_cast<double>(energies.size()))
      q[kRefl] = energies[static_cast<std::size_t>(index)];
  });
  if (status == 0) run.Store(q);
  return status;
}

// ---- bismuth

enum BismuthInput {
  kBiTemperature,
  kBiField,
  kBiBroadening,
  kBiGap,
  kBiPotential,
  kBiMass,
  kBiMassZ,
  kBiPockets,
  kBiHighest,
  kHoleTop,
  kHoleMass,
  kHoleMassZ,
  kHoleFactor,
  kBiLargest,
  kBiCount,
  kBiBackground,
  kBiHall,
  kBiEpsInf
};
constexpr RowCell kBismuthHead[] = {Own(0, Wo, "temperature, K", 20),
                                    Own(0, Wp, "magnetic field, T, signed", 4),
                                    Own(0, G, "broadening, eV", 0.006),
                                    Own(1, Wo, "gap Eg at L, eV", 0.0153),
                                    Own(1, Wp, "chemical potential, from the middle of the gap, eV", 0.035),
                                    Own(1, G, "cyclotron mass at the edge, electron masses", 0.006),
                                    Own(2, Wo, "mass along the field at L, electron masses", 0.25),
                                    Setting(2, Wp, "number of electron pockets", 3),
                                    Setting(2, G, "highest level, 0 for 60", 25),
                                    Own(3, Wo, "top of the hole band at T, eV", 0.046),
                                    Own(3, Wp, "cyclotron mass of the holes, electron masses", 0.064),
                                    Own(3, G, "mass of the holes along the field, electron masses", 0.7),
                                    Own(4, Wo, "g factor of the holes", 30),
                                    Setting(4, Wp, "largest wave vector along the field, 1/nm", 0.8),
                                    Setting(4, G, "number of wave vectors", 12),
                                    Own(5, Wo, "background of Re sigma_xx, Ohm^-1 cm^-1", 50),
                                    Own(5, Wp, "background of Re sigma_xy, Ohm^-1 cm^-1", 20),
                                    Own(6, Wo, "eps_inf", 80)};

constexpr double kCyclotronPerTesla = 2 * 5.7879892e-05;  // hbar e/m of the free electron, eV/T
constexpr double kMagneton = 5.7879892e-05;               // eV/T
constexpr double kKineticPerMass = 0.0380998;             // hbar^2/(2m) of the free electron, eV nm^2

template <class T>
T ElectronGap(const TypeInputs<T>& in, double k) {
  const T half = T(0.5) * in[kBiGap];
  return Sqrt(half * half + in[kBiGap] * T(kKineticPerMass * k * k) / HeldFromZero(in[kBiMassZ]));
}
template <class T>
T HoleLevel(const TypeInputs<T>& in, double k, int n, int spin) {
  const T cyclotron = T(kCyclotronPerTesla) * Magnitude(in[kBiField]) / HeldFromZero(in[kHoleMass]);
  return in[kHoleTop] - T(n + 0.5) * cyclotron + T(0.5 * spin * kMagneton) * in[kHoleFactor] * Magnitude(in[kBiField]) -
         T(kKineticPerMass * k * k) / HeldFromZero(in[kHoleMassZ]);
}
int BismuthLevels(double setting) {
  return setting >= 1 ? static_cast<int>(std::min(setting, static_cast<double>(kMostLevels))) : 60;
}

struct Bismuth {
  static constexpr Hooks kHooks = hook::kIdle | hook::kPrepare;
  static constexpr std::span<const RowCell> kHead = kBismuthHead;
  static constexpr auto kMasked = [] {
    auto fills = MagnetisedFills("the same reflectivity", ~std::uint64_t{0}, ~InputBits({kBiBackground, kBiEpsInf}));
    for (SlotUse& fill : fills) {
      switch (fill.quantity) {
        case kE1:
          fill.inputs = ~InputBits({kBiBackground, kBiHall});
          break;
        case kE2:
        case kS1:
          fill.inputs = ~InputBits({kBiHall, kBiEpsInf});
          break;
        case kS2:
          fill.inputs = ~InputBits({kBiBackground, kBiHall});
          break;
        case kN1:
        case kLoss:
          fill.inputs = ~InputBits({kBiBackground, kBiHall, kBiEpsInf});
          break;
        default:
          break;
      }
    }
    return fills;
  }();
  static constexpr std::span<const SlotUse> kFills = kMasked;

  template <class T>
  struct Table {
    LadderTable<T> electrons;
    LadderTable<T> holes;
  };
  static std::uint64_t Idle(const TypeInputs<double>& in) {
    return in.value(kBiField) == 0 ? InputBits({kBiField, kHoleTop, kHoleMass, kHoleMassZ, kHoleFactor}) : 0;
  }

  template <class T>
  static void Prepare(const TypeInputs<T>& in, Table<T>& table) {
    table.electrons.Clear();
    table.holes.Clear();
    const int count = std::clamp(in.setting(kBiCount), 1, kMostPoints), highest = BismuthLevels(in.value(kBiHighest));
    const double dk = in.value(kBiLargest) / count;  // k > 0 only; the factor 2 of perLayer stands for both signs
    const T kT = T(kElectronvoltPerKelvin) * in[kBiTemperature], mu = in[kBiPotential];
    const T field = Magnitude(in[kBiField]),
            unit = in[kBiGap] * T(kCyclotronPerTesla) * field / HeldFromZero(in[kBiMass]);
    // From a layer of 3.35 A to a sheet, and to a sum of sheets along the field. A pocket has two of the four flavours.
    const double perLayer = 2 * dk * 1e7 / (2 * std::numbers::pi) * 3.35e-8;
    const T pockets(0.5 * in.value(kBiPockets) * perLayer);
    for (int i = 0; i < count; ++i) {
      const double k = (i + 0.5) * dk;
      const T gap = ElectronGap(in, k);
      if (in.value(kBiField) == 0) {
        AddDiracContinuum(table.electrons, pockets, gap, mu, kT, 1, in.value(kBiBroadening));
        continue;
      }
      AddDiracTransitions(table.electrons, pockets * unit, unit, gap, mu, kT, highest);
      AddHoles(in, k, highest, T(0.25 * perLayer), mu, kT, table.holes);
    }
  }

  template <class T>
  static void Fill(const TypeInputs<T>& in, const Table<T>& table, Slots<T>& q) {
    if (in.x == 0) return;
    const Complex<T> z{T(kElectronvoltPerWavenumber * in.x), in[kBiBroadening]};
    const bool reversed = in.value(kBiField) < 0;
    const SheetTensor<T> electrons = LadderTensor(table.electrons, z, reversed, in.ahead()),
                         holes = LadderTensor(table.holes, z, reversed, in.ahead());
    const Complex<T> xx = electrons.xx + holes.xx + in[kBiBackground];
    const Complex<T> hall = in.value(kBiField) == 0 ? Complex<T>{} : electrons.xy + holes.xy;
    const Circular<T> sigma = CircularOf(xx, hall + in[kBiHall]);
    const T perSigma(60 / in.x);
    FillMagnetised({TimesI(sigma.plus) * perSigma + in[kBiEpsInf], TimesI(sigma.minus) * perSigma + in[kBiEpsInf]},
                   in.x, q);
    q[kTrans] = q[kRefl];
  }

 private:
  // A parabolic band that opens downwards, H = -hbar w (a+ a + 1/2). The matrix element between the levels n and n + 1
  // is hbar w sqrt(n + 1).
  template <class T>
  static void AddHoles(const TypeInputs<T>& in, double k, int highest, const T& weight, const T& mu, const T& kT,
                       LadderTable<T>& table) {
    const T cyclotron = T(kCyclotronPerTesla) * Magnitude(in[kBiField]) / HeldFromZero(in[kHoleMass]);
    for (const int spin : {1, -1}) {
      for (int n = 0; n < highest; ++n) {
        AddTransition(table, weight * cyclotron * cyclotron * T(n + 1), HoleLevel(in, k, n, spin) - mu,
                      HoleLevel(in, k, n + 1, spin) - mu, kT);
      }
    }
  }
};

constexpr RowCell kBismuthLevelsHead[] = {EvaluatedType(0, Wo, "bismuth, of type 74", 74)};
constexpr SlotUse kBismuthLevelFills[] = {{kRefl, "edge of the electron level, eV"},
                                          {kTrans, "edge of the hole level, spin up, eV"},
                                          {kRp, "edge of the hole level, spin down, eV"}};
constexpr RowMap kBismuthLevelsMap{
    .rows = Exactly(1), .head = kBismuthLevelsHead, .group = {}, .groupStart = 0, .groupRows = 1};
constexpr RowMap kBismuthMap{.rows = Exactly(10), .head = kBismuthHead, .group = {}, .groupStart = 0, .groupRows = 1};

int EvaluateBismuthLevels(EvalContext& ctx, const Model& model, double x, bool) {
  TypeRun run(ctx, model, kBismuthLevelsMap, kBismuthLevelFills);
  if (const int status = run.ReadRows()) return status;
  Slots<double> q{};
  const int status = ReadRowsOf(ctx, *run.scratch().partner[0], kBismuthMap, [&](const TypeInputs<double>& in) {
    const double n = std::fmin(std::trunc(std::fabs(x)), kMostLevels), gap = ElectronGap(in, 0);
    const double unit = in[kBiGap] * kCyclotronPerTesla * std::fabs(in[kBiField]) / HeldFromZero(in[kBiMass]);
    q[kRefl] = Sqrt(gap * gap + n * unit);
    q[kTrans] = HoleLevel(in, 0, static_cast<int>(n), 1);
    q[kRp] = HoleLevel(in, 0, static_cast<int>(n), -1);
  });
  if (status == 0) run.Store(q);
  return status;
}

}  // namespace

constinit const ModelType kWeylKubo = {
    .code = 93,
    .name = "Weyl-Kubo",
    .evaluate = EvaluateWeyl,
    .after = AfterNothing,
    .fitted = false,
    .material = false,
    .map = kWeylMap,
    .fills = kWeylFills,
    .page =
        {.sample = "a Weyl semimetal in a magnetic field: densities and conductivity tensor",
         .formula =
             "E_0 = -chi hbar v k, E_n = +-sqrt(eps^2 n + (hbar v k)^2), eps^2 = 2 v^2 6.58211899e-16 |B|\n"
             "sigma = nodes sum over k dk/(2 pi) (2/pi) 6.085432e-5 eps^2 sum over n - 1 -> n, both chiralities,\n"
             "|A|^2 = (1 - m/E_f)(1 + m/E_i)/4, m = chi hbar v k; B = 0: integral over the energy across the field,\n"
             "up to 1 eV. B = 0 writes EV0.dat, EV1.dat, EV2.dat: number of the mesh point, and the middle level, the\n"
             "next and the one after it. Row 3, column Wo, a tilt, has no effect. The broadening should exceed\n"
             "hbar v times the step of the wave vectors.",
         .source = "P. E. C. Ashby, J. P. Carbotte, Phys. Rev. B 87, 245131 (2013); the order of the rows is a choice "
                   "of this program",
         .from = 50,
         .to = 2000},
    .whole = true};

constinit const ModelType kWeylBands = {
    .code = 94,
    .name = "Weyl-bands",
    .evaluate = EvaluateWeylLevels,
    .after = AfterNothing,
    .fitted = false,
    .material = false,
    .map = kWeylLevelsMap,
    .fills = kLevelFill,
    .page = {.sample = "a Landau level of a Weyl node along the field",
             .formula = "the levels of type 93 for chirality 1, ascending: that of the given number at k = x",
             .source = "P. E. C. Ashby, J. P. Carbotte, Phys. Rev. B 87, 245131 (2013)",
             .from = -1,
             .to = 1,
             .axis = "wave vector along the field, 1/nm"}};

constinit const ModelType kBismuthMagnetooptics = FittedType<Bismuth, Exactly(10)>(
    74, "Bismuth-magnetoopt",
    {.sample = "bismuth with the field along the trigonal axis: reflectivity, Kerr angles, tensors of eps and sigma",
     .formula =
         "electrons at L: E = +-sqrt((Eg/2)^2 + Eg (j hbar wc + hbar^2 k^2/2m_z)), j = 0, 1, ..., two-band sum over\n"
         "j -> j + 1; holes at T: E = E0 - (n + 1/2) hbar w_h +- g mu_B B/2 - hbar^2 k^2/2M, element hbar w_h sqrt(n + "
         "1)\n"
         "summed over k from 0 to the largest, both signs. At B = 0 the electrons alone, up to 1 eV.\n"
         "Rows 8 to 10 are free.",
     .source =
         "P. A. Wolff, J. Phys. Chem. Solids 25, 1057 (1964); M. P. Vecchi, J. R. Pereira, M. S. Dresselhaus, Phys. "
         "Rev. B 14, 298 (1976); the order of the rows and the results of a thick sample are choices of this program",
     .from = 50,
     .to = 1500});

constinit const ModelType kBismuthBands = {.code = 75,
                                           .name = "Bismuth-bands",
                                           .evaluate = EvaluateBismuthLevels,
                                           .after = AfterNothing,
                                           .fitted = false,
                                           .material = false,
                                           .map = kBismuthLevelsMap,
                                           .fills = kBismuthLevelFills,
                                           .page = {.sample = "edges of the Landau levels of bismuth",
                                                    .formula = "the energies of type 74 at k = 0 for the level |x|",
                                                    .source = "P. A. Wolff, J. Phys. Chem. Solids 25, 1057 (1964)",
                                                    .from = 0,
                                                    .to = 20,
                                                    .axis = "number of the level"}};

}  // namespace kalvex
