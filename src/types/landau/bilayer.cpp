// Bilayer graphene and graphite in a magnetic field.
#include <algorithm>
#include <numbers>

#include "types/landau/bilayer_levels.h"
#include "types/magneto/circular.h"
#include "types/types.h"

namespace kalvex {
namespace {

constexpr int kUsualLevels = 60, kMostLevels = 20000;

int LevelsOf(double setting) {
  return setting >= 1 ? static_cast<int>(std::min(setting, static_cast<double>(kMostLevels))) : kUsualLevels;
}

// ---- bilayer graphene

enum BilayerInput {
  kTemperature,
  kField,
  kBroadening,
  kG0,
  kG1,
  kG4,
  kU,
  kDimer,
  kPotential,
  kHighest,
  kBackground,
  kHallBackground,
  kSubstrate,
  kBilayers
};
constexpr std::array<RowCell, 12> kBilayerCells = {
    {Own(0, Wo, "temperature, K", 50), Own(0, Wp, "magnetic field, T, signed", 8), Own(0, G, "broadening, eV", 0.06),
     Own(1, Wo, "in-plane hopping g0, eV", 3.1), Own(1, Wp, "hopping of the dimer g1, eV", 0.38),
     Own(1, G, "hopping g4, eV", 0.14), Own(2, Wo, "energy between the layers U, eV", 0.1),
     Own(2, Wp, "site energy of the dimer, eV", 0.02), Own(2, G, "chemical potential, eV", 0.1),
     Setting(3, Wo, "highest level, 0 for 60", 12), Own(3, Wp, "background of Re sigma_xx, Ohm^-1 cm^-1", 50),
     Own(3, G, "background of Re sigma_xy, Ohm^-1 cm^-1", 20)}};

template <class T>
struct FieldTables {
  LadderTable<T> inField;
  LadderTable<T> withoutField;
};

template <class T>
BilayerBands<T> BandsOf(const TypeInputs<T>& in, double valley) {
  const T g4 = in.value(kG0) == 0 ? T(0) : in[kG4] / in[kG0];
  return {g4, in[kG1], T(valley) * in[kU], in[kDimer], T(0)};
}

template <class T>
T LadderUnit(const T& field, const T& velocity) {
  return Sqrt(T(kLadderScale) * Magnitude(field)) * Magnitude(velocity);
}

// False if the field or the velocity is 0: then there are no Landau levels.
template <class T>
bool HasLevels(const TypeInputs<T>& in) {
  return in.value(kField) != 0 && in.value(kG0) != 0;
}

template <class T>
void PrepareBilayer(const TypeInputs<T>& in, bool withoutFieldToo, FieldTables<T>& tables) {
  tables.inField.Clear();
  tables.withoutField.Clear();
  const T kT = T(kElectronvoltPerKelvin) * in[kTemperature];
  const bool field = HasLevels(in);
  for (const double valley : {1.0, -1.0}) {
    const BilayerBands<T> bands = BandsOf(in, valley);
    if (field) {
      const T eps = LadderUnit(in[kField], T(kVelocityPerHopping) * in[kG0]);
      AddBilayerTransitions(tables.inField, bands, eps, T(0.5), in[kPotential], kT, LevelsOf(in.value(kHighest)));
    }
    if (!field || withoutFieldToo) {
      AddBilayerContinuum(field ? tables.withoutField : tables.inField, bands, T(0.5), in[kPotential], kT,
                          in.value(kBroadening));
    }
  }
}

// sigma_xx and sigma_xy of one bilayer, treated as a layer of 3.35 A.
template <class T>
SheetTensor<T> BilayerTensor(const TypeInputs<T>& in, const LadderTable<T>& table, bool reversed) {
  const Complex<T> z{T(kElectronvoltPerWavenumber * in.x), in[kBroadening]};
  SheetTensor<T> tensor = LadderTensor(table, z, reversed, in.ahead());
  tensor.xx += Complex<T>{in[kBackground], T(0)};
  return tensor;
}

std::uint64_t IdleInBilayer(const TypeInputs<double>& in) {
  if (HasLevels(in)) return 0;
  return in.value(kG0) == 0 ? InputBits({kField, kG4}) : InputBits({kField});
}

struct BilayerOnSubstrate {
  static constexpr Hooks kHooks = hook::kIdle | hook::kPrepare;
  static constexpr auto kCells = [] {
    std::array<RowCell, 14> cells{};
    std::copy(kBilayerCells.begin(), kBilayerCells.end(), cells.begin());
    cells[kSubstrate] = OptionalPartner(4, Wo, "substrate");
    cells[kBilayers] = Own(4, Wp, "number of bilayers", 1, 1);
    return cells;
  }();
  static constexpr std::span<const RowCell> kHead = kCells;
  static constexpr std::uint64_t kBands = InputBits({kTemperature, kBroadening, kG0, kG1, kG4, kU, kDimer, kPotential}),
                                 kWithoutField = kBands | InputBits({kBackground}),
                                 kInField = kBands | InputBits({kField, kBackground, kHallBackground});
  // sigma_+- = sigma_xx +- i sigma_xy. The backgrounds are real: each one affects either Re sigma_+- or Im sigma_+-.
  static constexpr auto kAll = [] {
    auto fills = SheetFills(kInField, kWithoutField, InputBits({kSubstrate, kBilayers}));
    for (SlotUse& fill : fills) {
      if (fill.quantity == kS1 || fill.quantity == kN1) fill.inputs &= ~InputBits({kHallBackground});
      if (fill.quantity == kS2 || fill.quantity == kN2) fill.inputs &= ~InputBits({kBackground});
    }
    return fills;
  }();
  static constexpr std::span<const SlotUse> kFills = kAll;

  template <class T>
  using Table = FieldTables<T>;
  static std::uint64_t Idle(const TypeInputs<double>& in) { return IdleInBilayer(in); }
  template <class T>
  static void Prepare(const TypeInputs<T>& in, Table<T>& table) {
    PrepareBilayer(in, true, table);
  }
  template <class T>
  static void Fill(const TypeInputs<T>& in, const Table<T>& table, Slots<T>& q) {
    const SheetTensor<T> tensor = BilayerTensor(in, table.inField, in.value(kField) < 0);
    const bool field = HasLevels(in);
    const Complex<T> zero = BilayerTensor(in, field ? table.withoutField : table.inField, false).xx;
    const Complex<T> xy = (field ? tensor.xy : Complex<T>{}) + in[kHallBackground];
    FillSheetOnSubstrate(CircularOf(tensor.xx, xy), zero, in[kBilayers], Sqrt(in.eps(kSubstrate)), q);
  }
};

struct BilayerMaterial {
  static constexpr Hooks kHooks = hook::kIdle | hook::kPrepare;
  static constexpr std::span<const RowCell> kHead = kBilayerCells;
  static constexpr std::uint64_t kNoBackground = ~InputBits({kBackground, kHallBackground}),
                                 kDiagonal = ~InputBits({kHallBackground}), kHall = ~InputBits({kBackground});
  static constexpr SlotUse kFills[] = {{kE1, "Re eps_xx of a layer of 6.7 A", kNoBackground},
                                       {kE2, "Im eps_xx", kDiagonal},
                                       {kS1, "Re sigma_xx of a layer of 6.7 A, Ohm^-1 cm^-1", kDiagonal},
                                       {kS2, "Im sigma_xx", kNoBackground},
                                       {kN1, "Re eps_xy", kNoBackground},
                                       {kN2, "Im eps_xy", kHall},
                                       {kDepth, "Re sigma_xy, Ohm^-1 cm^-1", kHall},
                                       {kLoss, "Im sigma_xy", kNoBackground},
                                       {kDefringed, "reflectivity of - of such a material"}};

  template <class T>
  using Table = FieldTables<T>;
  static std::uint64_t Idle(const TypeInputs<double>& in) { return IdleInBilayer(in); }
  template <class T>
  static void Prepare(const TypeInputs<T>& in, Table<T>& table) {
    PrepareBilayer(in, false, table);
  }
  template <class T>
  static void Fill(const TypeInputs<T>& in, const Table<T>& table, Slots<T>& q) {
    if (in.x == 0) return;
    const SheetTensor<T> tensor = BilayerTensor(in, table.inField, in.value(kField) < 0);
    const Complex<T> xy = (HasLevels(in) ? tensor.xy : Complex<T>{}) + in[kHallBackground];
    const Circular<T> sigma = CircularOf(tensor.xx, xy);
    const T perSigma(0.5 * 60 / in.x);  // two layers of 3.35 A
    FillMagnetised({TimesI(sigma.plus) * perSigma + T(1), TimesI(sigma.minus) * perSigma + T(1)}, in.x, q);
    q[kRefl] = q[kRp] = q[kRs] = q[kRps] = T(0);
  }
};

// ---- graphite: a bilayer at each kz, with hoppings that depend on kz

enum GraphiteInput {
  kGraphiteT,
  kGraphiteB,
  kGraphiteWidth,
  kGraphiteG0,
  kGraphiteG1,
  kGraphiteG2,
  kGraphiteG4,
  kGraphiteG5,
  kGraphiteDimer,
  kGraphitePotential,
  kGraphiteVelocity,
  kKzFrom,
  kKzTo,
  kKzCount,
  kGraphiteHighest,
  kGraphiteBackground,
  kGraphiteHall
};
constexpr RowCell kGraphiteCells[] = {Own(0, Wo, "temperature, K", 50),
                                      Own(0, Wp, "magnetic field, T, signed", 8),
                                      Own(0, G, "broadening, eV", 0.06),
                                      Own(1, Wo, "in-plane hopping g0, eV", 3.1),
                                      Own(1, Wp, "hopping g1, eV", 0.38),
                                      Own(1, G, "hopping g2, eV", -0.02),
                                      Own(2, Wp, "hopping g4, eV", 0.08),
                                      Own(2, G, "hopping g5, eV", 0.04),
                                      Own(3, Wo, "site energy of the dimer, eV", 0.03),
                                      Own(3, Wp, "chemical potential, eV", 0.02),
                                      Own(3, G, "velocity, m/s, 0 for 326000 g0", 9.0e5),
                                      Setting(4, Wo, "kz from, in units of 2 pi over the cell", -0.5),
                                      Setting(4, Wp, "kz to", 0.5),
                                      Setting(4, G, "number of kz", 4),
                                      Setting(5, Wo, "highest level, 0 for 60", 12),
                                      Own(5, Wp, "background of Re sigma_xx, Ohm^-1 cm^-1", 50),
                                      Own(5, G, "background of Re sigma_xy, Ohm^-1 cm^-1", 20)};

template <class T>
BilayerBands<T> GraphiteBands(const TypeInputs<T>& in, double kz) {
  const double c = 2 * std::cos(std::numbers::pi * kz);
  const T g4 = in.value(kGraphiteG0) == 0 ? T(0) : T(c) * in[kGraphiteG4] / in[kGraphiteG0];
  return {g4, T(c) * in[kGraphiteG1], T(0), in[kGraphiteDimer] + T(0.5 * c * c) * in[kGraphiteG5],
          T(0.5 * c * c) * in[kGraphiteG2]};
}

template <class T>
T GraphiteUnit(const TypeInputs<T>& in, const T& field) {
  const bool given = in.value(kGraphiteVelocity) != 0;
  return LadderUnit(field, given ? in[kGraphiteVelocity] : T(kVelocityPerHopping) * in[kGraphiteG0]);
}

struct Graphite {
  static constexpr Hooks kHooks = hook::kIdle | hook::kPrepare;
  static constexpr std::span<const RowCell> kHead = kGraphiteCells;
  static constexpr auto kAll =
      MagnetisedFills("the same reflectivity", ~InputBits({}), ~InputBits({kGraphiteBackground}));
  static constexpr auto kMasked = [] {
    auto fills = kAll;
    for (SlotUse& fill : fills) {
      const bool diagonal =
          fill.quantity == kE1 || fill.quantity == kE2 || fill.quantity == kS1 || fill.quantity == kS2;
      if (diagonal) fill.inputs &= ~InputBits({kGraphiteHall});
      const bool real = fill.quantity == kE2 || fill.quantity == kS1 || fill.quantity == kN2 || fill.quantity == kDepth;
      const bool tensor = fill.quantity >= kE1 && fill.quantity <= kLoss;
      if (tensor && !real) fill.inputs &= ~InputBits({kGraphiteBackground, kGraphiteHall});
    }
    return fills;
  }();
  static constexpr std::span<const SlotUse> kFills = kMasked;

  template <class T>
  struct Table {
    LadderTable<T> ladder;
  };
  static std::uint64_t Idle(const TypeInputs<double>& in) {
    std::uint64_t idle = 0;
    if (in.value(kGraphiteB) == 0) idle |= InputBits({kGraphiteB, kGraphiteVelocity});
    if (in.value(kGraphiteG0) == 0) idle |= InputBits({kGraphiteG4});
    return idle;
  }

  template <class T>
  static void Prepare(const TypeInputs<T>& in, Table<T>& table) {
    table.ladder.Clear();
    const int count = std::clamp(in.setting(kKzCount), 1, 2000);
    const double from = in.value(kKzFrom), step = (in.value(kKzTo) - from) / count;
    const T kT = T(kElectronvoltPerKelvin) * in[kGraphiteT], weight(0.5 / count);
    for (int i = 0; i < count; ++i) {
      const BilayerBands<T> bands = GraphiteBands(in, from + (i + 0.5) * step);
      if (in.value(kGraphiteB) == 0) {
        AddBilayerContinuum(table.ladder, bands, weight, in[kGraphitePotential], kT, in.value(kGraphiteWidth));
      } else {
        AddBilayerTransitions(table.ladder, bands, GraphiteUnit(in, in[kGraphiteB]), weight, in[kGraphitePotential], kT,
                              LevelsOf(in.value(kGraphiteHighest)));
      }
    }
  }

  template <class T>
  static void Fill(const TypeInputs<T>& in, const Table<T>& table, Slots<T>& q) {
    if (in.x == 0) return;
    const Complex<T> z{T(kElectronvoltPerWavenumber * in.x), in[kGraphiteWidth]};
    const SheetTensor<T> tensor = LadderTensor(table.ladder, z, in.value(kGraphiteB) < 0, in.ahead());
    const Complex<T> xx = tensor.xx + in[kGraphiteBackground];
    const Complex<T> xy = (in.value(kGraphiteB) != 0 ? tensor.xy : Complex<T>{}) + in[kGraphiteHall];
    const Circular<T> sigma = CircularOf(xx, xy);
    const T perSigma(60 / in.x);
    FillMagnetised({TimesI(sigma.plus) * perSigma + T(1), TimesI(sigma.minus) * perSigma + T(1)}, in.x, q);
    q[kTrans] = q[kRefl];
  }
};

// ---- the levels themselves

// Reads the rows of a partner with the row map of the partner's type.
template <class Read>
int ReadPartner(EvalContext& ctx, const Model& partner, Read read) {
  const ModelType* const type = TypeOf(ctx, partner);
  TypeRun run(ctx, partner, type->map, type->fills);
  if (run.ReadRows() != 0) return -1;
  for (std::size_t i = 0; i < run.InputCount(); ++i) run.scratch().at[i] = {run.scratch().raw[i], 0};
  read(TypeInputs<double>(run.scratch(), type->map, 0), run.scratch().raw);
  return 0;
}

double LevelAt(const std::vector<double>& energies, double index) {
  const double k = std::trunc(std::fabs(index));
  return k < static_cast<double>(energies.size()) ? energies[static_cast<std::size_t>(k)] : 0;
}

constexpr RowCell kBilayerLevelsHead[] = {EvaluatedType(0, Wo, "bilayer, of type 62", 62)};
constexpr SlotUse kBilayerLevelFills[] = {{kRefl, "energy of the level in one valley, eV"},
                                          {kTrans, "energy of the level in the other valley, eV"}};
constexpr RowMap kBilayerLevelsMap{
    .rows = Exactly(1), .head = kBilayerLevelsHead, .group = {}, .groupStart = 0, .groupRows = 1};

struct BilayerLevelsKept {
  std::vector<double> numbers;  // of the partner
  std::vector<double> inOneValley, inTheOther;
};

int EvaluateBilayerLevels(EvalContext& ctx, const Model& model, double x, bool) {
  TypeRun run(ctx, model, kBilayerLevelsMap, kBilayerLevelFills);
  if (const int status = run.ReadRows()) return status;
  auto& levels = CacheOf<BilayerLevelsKept>(ctx, model);
  Slots<double> q{};
  const int status = ReadPartner(ctx, *run.scratch().partner[0],
                                 [&](const TypeInputs<double>& in, const std::vector<double>& numbers) {
                                   if (levels.numbers != numbers) {
                                     const double eps = LadderUnit(in[kField], kVelocityPerHopping * in[kG0]);
                                     const int highest = LevelsOf(in.value(kHighest));
                                     levels = {numbers, BilayerEnergies(BandsOf(in, 1), eps, highest),
                                               BilayerEnergies(BandsOf(in, -1), eps, highest)};
                                   }
                                   q[kRefl] = LevelAt(levels.inOneValley, x);
                                   q[kTrans] = LevelAt(levels.inTheOther, x);
                                 });
  if (status == 0) run.Store(q);
  return status;
}

constexpr SlotUse kGraphiteLevelFills[] = {{kRefl, "energy of the level, eV"}};
enum LevelInput { kGraphiteModel, kLevelIndex, kByField };
template <int kCode>
constexpr RowCell kGraphiteLevelsHead[] = {
    EvaluatedType(0, Wo, "graphite, of the matching type", kCode),
    Setting(0, Wp, "number of the level, counted from the lowest", 40),
    Setting(0, G, "0: x is kz at the field of the model; 1: x is the field at kz = 0", 0)};
template <int kCode, RowRule kRows>
constexpr RowMap kGraphiteLevelsMap{
    .rows = kRows, .head = kGraphiteLevelsHead<kCode>, .group = {}, .groupStart = 0, .groupRows = 1};

template <int kCode, RowRule kRows>
int EvaluateGraphiteLevels(EvalContext& ctx, const Model& model, double x, bool) {
  const RowMap& map = kGraphiteLevelsMap<kCode, kRows>;
  TypeRun run(ctx, model, map, kGraphiteLevelFills);
  if (const int status = run.ReadRows()) return status;
  const TypeInputs<double> own(run.scratch(), map, x);
  const bool byField = own.setting(kByField) == 1;
  const double index = own.value(kLevelIndex);
  Slots<double> q{};
  const int status = ReadPartner(
      ctx, *run.scratch().partner[kGraphiteModel], [&](const TypeInputs<double>& in, const std::vector<double>&) {
        const double eps = GraphiteUnit(in, byField ? x : in[kGraphiteB]);
        const auto bands = GraphiteBands(in, byField ? 0 : x);
        q[kRefl] = LevelAt(BilayerEnergies(bands, eps, LevelsOf(in.value(kGraphiteHighest))), index);
      });
  if (status == 0) run.Store(q);
  return status;
}

template <int kCode, RowRule kRows>
constexpr ModelType LevelsType(int code, const char* name, const TypePage& page) {
  return {code,  name,  EvaluateGraphiteLevels<kCode, kRows>, AfterNothing,
          false, false, kGraphiteLevelsMap<kCode, kRows>,     kGraphiteLevelFills,
          page};
}

// ---- reserved

int DoNothing(EvalContext&, const Model&, double, bool) { return 0; }

constexpr TypePage GraphitePage() {
  return {
      .sample = "graphite in a magnetic field along its axis: reflectivity, Kerr angles, tensors of eps and sigma",
      .formula =
          "at each kz the matrix of bilayer graphene with g1 c, g4 c, c = 2 cos(pi kz), site energies d + g5 c^2/2 of\n"
          "the dimer and g2 c^2/2 of the others; sigma = half the mean over kz of the sum over transitions\n"
          "eps^2 = 2 v^2 6.577e-16 |B|; B = 0: integral over the in-plane energy up to 3 eV\n"
          "Row 3, column Wo is g3: it couples level n with n + 3 and is left out. Further rows are free.",
      .source =
          "J. W. McClure, Phys. Rev. 119, 606 (1960); J. C. Slonczewski, P. R. Weiss, Phys. Rev. 109, 272 (1958); "
          "the order of the rows is a choice of this program",
      .from = 100,
      .to = 3000};
}
constexpr TypePage GraphiteLevelsPage() {
  return {
      .sample = "a Landau level of graphite along kz, or against the field",
      .formula = "energies of the levels 0 to the highest of the graphite model, ascending: that of the given number",
      .source = "J. W. McClure, Phys. Rev. 119, 606 (1960)",
      .from = -0.5,
      .to = 0.5,
      .axis = "kz in units of 2 pi over the cell, or the field in T"};
}

}  // namespace

constinit const ModelType kBilayerGrapheneMagnetooptics = FittedType<BilayerOnSubstrate, Exactly(9)>(
    62, "2L graph. - magn.opt.",
    {.sample = "bilayer graphene on a thick substrate in a magnetic field, with circularly polarised light",
     .formula =
         "levels of the 4-by-4 matrix of the components A1, B1, A2, B2 with ladder factors eps sqrt(n),\n"
         "eps sqrt(n - 1), eps^2 = 2 v^2 6.577e-16 |B|, v = 326000 g0; conductivity by the sum over transitions\n"
         "n - 1 -> n of both valleys; s = 1.2619984e-5 N sigma, t = 2/(1 + n_s + s), r = (1 - n_s - s)/(1 + n_s + s)\n"
         "without field: the integral over the in-plane energy up to 3 eV. Rows 6 to 9 are free.",
     .source =
         "E. McCann, M. Koshino, Rep. Prog. Phys. 76, 056503 (2013); trigonal hopping is left out; the order of the "
         "rows is a choice of this program",
     .from = 100,
     .to = 3000});

constinit const ModelType kBlgMagnetooptics = FittedType<BilayerMaterial, Exactly(7)>(
    111, "BLG-magnetooptics",
    {.sample = "bilayer graphene in a magnetic field: tensors of eps and sigma of a layer of 6.7 A",
     .formula = "the conductivity of type 62, halved; eps = 1 + 60 i sigma/x. Rows 5 to 7 are free.",
     .source =
         "E. McCann, M. Koshino, Rep. Prog. Phys. 76, 056503 (2013); trigonal hopping is left out; the order of the "
         "rows is a choice of this program",
     .from = 100,
     .to = 3000});

constinit const ModelType kBilayerGrapheneBands = {
    .code = 63,
    .name = "2L graph. - bands",
    .evaluate = EvaluateBilayerLevels,
    .after = AfterNothing,
    .fitted = false,
    .material = false,
    .map = kBilayerLevelsMap,
    .fills = kBilayerLevelFills,
    .page = {.sample = "the energies of the Landau levels of bilayer graphene, numbered from the lowest",
             .formula = "energies of the levels 0 to the highest of the bilayer model, ascending: that of number |x|",
             .source = "E. McCann, M. Koshino, Rep. Prog. Phys. 76, 056503 (2013)",
             .from = 0,
             .to = 60,
             .axis = "number of the level, counted from the lowest"}};

constinit const ModelType kGraphiteMagnetooptics =
    FittedType<Graphite, Exactly(9)>(55, "Graphite-magnetooptics", GraphitePage());
constinit const ModelType kGraphiteMagnetooptics3 =
    FittedType<Graphite, AtLeast(0)>(60, "Graphite-magnetoopt.-3", GraphitePage());
constinit const ModelType kGraphiteMagnetooptics2 =
    LevelsType<55, Exactly(1)>(56, "Graphite-magnetoopt.-2", GraphiteLevelsPage());
constinit const ModelType kGraphiteMagnetooptics4 =
    LevelsType<60, AtLeast(0)>(61, "Graphite-magnetoopt.-4", GraphiteLevelsPage());

constinit const ModelType kBlgLevels = {
    .code = 112,
    .name = "BLG-LLs",
    .evaluate = DoNothing,
    .after = AfterNothing,
    .fitted = false,
    .material = false,
    .map = {.rows = AtLeast(0), .head = {}, .group = {}, .groupStart = 0, .groupRows = 1},
    .fills = {},
    .page = {.sample = "nothing yet: the code is reserved for the levels of type 111",
             .formula = "The Quantities keep their previous values.",
             .source = "none"}};

}  // namespace kalvex
