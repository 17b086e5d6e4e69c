// The common code of all special models. A type consists of a row map and a formula:
//
//     struct SampleInMedium {
//       enum Input { kMedium, kSample, kScale };
//       static constexpr RowCell kHead[] = {Partner(0, Wo, "medium"), Partner(0, Wp, "sample"), Own(0, G, "scale", 1)};
//       static constexpr SlotUse kFills[] = {{kRefl, "reflectivity"}};
//       template <class T> static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
//         const Complex<T> n1 = Sqrt(in.eps(kMedium)), n2 = Sqrt(in.eps(kSample));
//         q[kRefl] = in[kScale] * Norm(Quotient(n2 - n1, n2 + n1));
//       }
//     };
//     constinit const ModelType kSampleInMedium = FittedType<SampleInMedium, Exactly(1)>(17, "...", {page});
//
// A partner is a model that the rows name. With double the formula gives values. With dual numbers it gives exact
// derivatives by the responses of the partners and by the type's own numbers; TypeRun chains them to the parameters.
//
// Other members that a type can have:
//     kGroup, kGroupStart, kGroupRows   the cells of rows that repeat in groups
//     Complex<T> Response(const TypeInputs<T>& in)   instead of Fill, for a material: the dielectric function, from
//         which all Quantities follow
//     a `bool&` as last argument of Fill or Response   if it is set to false, the evaluation returns -1
//     bool Admits(const TypeInputs<double>& in)   false: the evaluation returns -1 before it computes anything
//     double FrequencyOf(const TypeInputs<double>&, int input)   the frequency at which a partner is evaluated
//     void Keep(TypeRun&, const TypeInputs<double>&)   stores further results in the context after an evaluation
//     std::uint64_t Idle(const TypeInputs<double>&)   the inputs (InputBits) without effect at the present settings
//     kAsked   the Quantities that are evaluated of partners; without it those that the type fills
//     kSumOfPartners   for a material whose response is a sum of its partners' with real factors: real and imaginary
//         parts do not mix
//
// What does not depend on the frequency is computed once for a spectrum:
//     template <class T> struct Table { ... };
//     template <class T> static void Prepare(const TypeInputs<T>& in, Table<T>& table);
//     template <class T> static void Fill(const TypeInputs<T>& in, const Table<T>& table, Slots<T>& q);
// Prepare reads only the type's own numbers and settings, neither a partner nor the frequency. The frame caches its
// tables, one of values and one for each pass over the directions of derivatives, until one of the numbers changes.
//
// A type lists its optional members: `static constexpr Hooks kHooks = hook::kIdle | hook::kPrepare;`. A member that is
// listed and has another signature or is missing, or that is there and not listed, does not compile.
#pragma once

#include <algorithm>
#include <concepts>
#include <type_traits>
#include <vector>

#include "evaluation/eval_context.h"
#include "evaluation/quantity_formulas.h"

namespace kalvex {

template <class T>
using Slots = PerQuantity<T>;

// The inputs of one evaluation, numbered as the cells of the row map: those of the head, then group by group.
template <class T>
class TypeInputs {
 public:
  TypeInputs(const TypeScratch& scratch, const RowMap& map, double frequency);

  double x;
  // x and the frequencies that are evaluated next: a type can compute several of them at once.
  std::span<const double> ahead() const {
    const bool stands = !scratch_.ahead.empty() && scratch_.ahead.front() == x;
    return stands ? scratch_.ahead : std::span<const double>(&x, 1);
  }
  // Dielectric function of a partner.
  const Complex<T>& eps(std::size_t i) const { return values_[i]; }
  // A number that can be fitted.
  const T& operator[](std::size_t i) const { return values_[i].re; }
  // A Quantity of an evaluated partner.
  const T& quantity(std::size_t i, Quantity q) const { return quantities_[i][q]; }
  // The value of a dataset at x.
  double data(std::size_t i) const { return scratch_.at[i].re; }
  // The number in the cell, and the same truncated to an integer.
  double value(std::size_t i) const { return scratch_.raw[i]; }
  int setting(std::size_t i) const { return TruncatedSetting(value(i)); }
  // Whether an optional partner is there.
  bool has(std::size_t i) const { return scratch_.partner[i] != nullptr; }
  const Model& partner(std::size_t i) const { return *scratch_.partner[i]; }
  std::size_t groups() const { return groups_; }
  // The input that is cell j of group k.
  std::size_t Of(std::size_t k, std::size_t j) const { return head_ + k * group_ + j; }

 private:
  static int TruncatedSetting(double value);
  const TypeScratch& scratch_;
  const Complex<T>* values_;
  const Slots<T>* quantities_;
  std::size_t head_, group_, groups_;
};

// a/b, with |b|^2 taken as at least 1e-30.
template <class T>
Complex<T> Quotient(const Complex<T>& a, const Complex<T>& b) {
  if (Norm(ValueOf(b)) < kTinyNorm) return a * Conj(b) / T(kTinyNorm);
  return a / b;
}

// a, or 1e-15 if |a| is smaller: a divisor that is not 0.
template <class T>
T HeldFromZero(const T& a) {
  constexpr double kLeast = 1e-15;  // the square root of kTinyNorm
  return std::fabs(ValueOf(a)) < kLeast ? T(kLeast) : a;
}

// exp(z), or exactly 1 if Re z exceeds the limit, which happens in a medium with gain.
inline constexpr double kGainLimit = 20;
template <class T>
Complex<T> GuardedExponent(const Complex<T>& z, double limit = kGainLimit) {
  return ValueOf(z).re > limit ? Complex<T>{} : z;
}
template <class T>
Complex<T> GuardedExp(const Complex<T>& z, double limit = kGainLimit) {
  return Exp(GuardedExponent(z, limit));
}

// Modulus and argument (radians) of z. Both are 0 with zero slopes if |z|^2 < 1e-30.
template <class T>
T Modulus(const Complex<T>& z) {
  return Norm(ValueOf(z)) < kTinyNorm ? T(0) : Sqrt(Norm(z));
}
template <class T>
T Argument(const Complex<T>& z) {
  return Norm(ValueOf(z)) < kTinyNorm ? T(0) : Log(z).im;
}

// Degree of coherence between 0 and 1.
template <class T>
T Clipped01(const T& c) {
  return ValueOf(c) < 0 ? T(0) : ValueOf(c) > 1 ? T(1) : c;
}

inline constexpr double kDegreesPerRadian = 57.29577951308232;

// What a type computes: Quantities of its own (kOwn), or the dielectric function of a material, in which the real and
// imaginary parts of the partners mix (kMixed) or stay apart (kApart).
enum class Parts : std::uint8_t { kOwn, kMixed, kApart };

using IdleInputs = std::uint64_t (*)(const TypeInputs<double>&);

// One evaluation of a type: reads the rows, stores the values, and chains the derivatives to the parameters. Types with
// a formula use it through FittedType or ShownType. A type that computes its own derivatives makes a TypeRun itself and
// fills values and Slope.
class TypeRun {
 public:
  TypeRun(EvalContext& ctx, const Model& model, const RowMap& map, std::span<const SlotUse> fills,
          std::span<const Quantity> asked = {});
  TypeRun(const TypeRun&) = delete;
  TypeRun& operator=(const TypeRun&) = delete;
  ~TypeRun();

  // Checks the number of rows, finds the partners, reads the numbers. Returns 0, or the status of the evaluation.
  int ReadRows();
  // Evaluates input i, a partner or a dataset, at a frequency. With derivatives, the slopes of the partner's response
  // stay in the slopes of its parameters.
  void Ask(std::size_t i, double x, bool derivatives);
  // The same for all inputs. Returns -1 if the evaluation of a partner fails.
  int AskAll(double x, bool derivatives);
  // Numbers the directions in which derivatives are wanted, and allocates their slopes.
  void CountDirections();
  // The slopes by input i if it is a number that can be fitted, else null. Only in an evaluation with derivatives.
  ParamSlopes* SlopesOfOwn(std::size_t i);

  std::size_t Directions() const { return directions_; }
  double& Slope(Quantity quantity, std::size_t direction) {
    return scratch_.slopes[IndexOf(quantity) * directions_ + direction];
  }
  // The inputs as dual numbers. Their lanes are the directions from `first` on.
  void MakeDuals(std::size_t first);

  // Stores the wanted values. Chain then adds the slopes to those of the parameters.
  void Store(const Slots<double>& values);
  void Chain();
  // Stores the wanted Quantities of a dielectric function, and their derivatives by it for ChainOfMaterial.
  void StoreMaterial(const Cplx& eps, double x, bool derivatives);
  // The derivative of the dielectric function by one direction.
  void SetEpsSlope(std::size_t direction, const Cplx& slope) { scratch_.epsSlopes[direction] = slope; }
  void ChainOfMaterial();

  TypeScratch& scratch() { return scratch_; }
  EvalContext& context() { return ctx_; }
  const Model& model() const { return model_; }
  std::size_t InputCount() const { return scratch_.raw.size(); }

 private:
  friend int MarkDependencies(EvalContext&, const Model&, const RowMap&, std::span<const SlotUse>,
                              std::span<const Quantity>, Parts, IdleInputs);
  std::size_t AskedCount() const { return asked_.empty() ? fills_.size() : asked_.size(); }
  Quantity Asked(std::size_t s) const { return asked_.empty() ? fills_[s].quantity : asked_[s]; }
  int SeedEvaluated(std::size_t i);
  void SeedSlopes(Quantity quantity, std::size_t slot, const SlotUse& use, double wRe, double wIm);
  template <class Visit>
  void ForEachWanted(Visit visit);
  const RowCell& CellOf(std::size_t i) const;
  bool IsEvaluatedPartner(std::size_t i) const;
  double* ColumnOf(std::size_t i, std::size_t slot);
  void ClearColumns(Quantity quantity);
  int AskEvaluated(std::size_t i, double x, bool derivatives);
  void AddEvaluated(Quantity quantity);
  bool AsksElsewhere(const Model& partner, double x) const;
  void ChainQuantity(Quantity quantity, const std::array<double, kExpParamCount>& dExp);

  EvalContext& ctx_;
  const Model& model_;
  const RowMap& map_;
  std::span<const SlotUse> fills_;
  std::span<const Quantity> asked_;  // Quantities of evaluated partners; empty: each Quantity of the fills from its own
  TypeScratch& scratch_;
  bool derivatives_ = false;
  std::size_t directions_ = 0;
};

// The after-step: marks the parameters on which each wanted Quantity depends. Returns 0, or the status of ReadRows, or
// -1 if a partner fails.
int MarkDependencies(EvalContext& ctx, const Model& model, const RowMap& map, std::span<const SlotUse> fills,
                     std::span<const Quantity> asked, Parts parts, IdleInputs idle);

// Sets which Quantities are wanted for the evaluation of a partner: a given set, or those that are wanted already. The
// destructor restores the table of Quantities; read the partner's values before.
class WantedForPartner {
 public:
  explicit WantedForPartner(QuantityTable& table) : table_(table), before_(table) {}
  WantedForPartner(QuantityTable& table, QuantitySet set) : WantedForPartner(table) { WantOnly(table, set); }
  WantedForPartner(const WantedForPartner&) = delete;
  WantedForPartner& operator=(const WantedForPartner&) = delete;
  ~WantedForPartner() { table_ = before_; }

 private:
  QuantityTable& table_;
  QuantityTable before_;
};

// The model whose number is in a cell of the rows, null if there is none of that number.
const Model* PartnerAt(EvalContext& ctx, const Model& model, int row, int column);

template <class Type>
constexpr std::size_t CellsOf() {
  std::size_t cells = 0;
  if constexpr (requires { Type::kHead; }) cells += std::size(Type::kHead);
  if constexpr (requires { Type::kGroup; }) cells += std::size(Type::kGroup);
  return cells;
}

template <class Type>
constexpr RowMap MapOf(RowRule rows) {
  static_assert(CellsOf<Type>() <= 64, "InputBits has a bit for each cell");
  RowMap map{.rows = rows, .head = {}, .group = {}, .groupStart = 0, .groupRows = 1};
  if constexpr (requires { Type::kHead; }) map.head = Type::kHead;
  if constexpr (requires { Type::kGroup; }) {
    map.group = Type::kGroup;
    map.groupStart = Type::kGroupStart;
    map.groupRows = Type::kGroupRows;
  }
  return map;
}

template <class Type, RowRule kRows>
inline constexpr RowMap kMapOf = MapOf<Type>(kRows);

template <class Type>
constexpr std::span<const SlotUse> FillsOf() {
  if constexpr (requires { Type::kFills; }) {
    return Type::kFills;
  } else {
    return {};
  }
}

template <class Type>
constexpr std::span<const Quantity> AskedOf() {
  if constexpr (requires { Type::kAsked; }) {
    return Type::kAsked;
  } else {
    return {};
  }
}

template <class Type>
constexpr IdleInputs IdleOf() {
  if constexpr (requires(const TypeInputs<double>& in) { Type::Idle(in); }) {
    return Type::Idle;
  } else {
    return nullptr;
  }
}

// The cache of a type for one model, kept between evaluations in the context.
template <class Cache>
Cache& CacheOf(EvalContext& ctx, const Model& model) {
  std::any& cache = ctx.typeScratch.caches[model.number];
  if (!cache.has_value() || cache.type() != typeid(Cache)) cache = Cache{};
  return *std::any_cast<Cache>(&cache);
}

// The cache that all models of a type share, also in the context.
template <class Shared>
Shared& SharedOf(EvalContext& ctx) {
  std::any& shared = ctx.typeScratch.shared[typeid(Shared)];
  if (!shared.has_value()) shared = Shared{};
  return *std::any_cast<Shared>(&shared);
}

// The cached tables of a type with Prepare: one of values, and one for each pass over the directions.
template <class Type>
struct PreparedTables {
  template <class T>
  using Table = typename Type::template Table<T>;

  std::vector<double> numbers;  // from which the tables were computed
  std::vector<std::size_t> directions;
  bool valuesHold = false;
  std::size_t passesHold = 0;
  Table<double> values{};
  std::vector<Table<TypeDual>> passes{};
};

template <class Type>
concept Prepares = requires {
  typename Type::template Table<double>;
};

template <class Type>
PreparedTables<Type>& TablesOf(TypeRun& run) {
  auto& tables = CacheOf<PreparedTables<Type>>(run.context(), run.model());
  if (tables.numbers != run.scratch().raw) {
    tables.numbers = run.scratch().raw;
    tables.valuesHold = false;
    tables.passesHold = 0;
  }
  return tables;
}

template <class Type>
const typename Type::template Table<double>& ValueTable(TypeRun& run, const TypeInputs<double>& in) {
  auto& tables = TablesOf<Type>(run);
  if (!tables.valuesHold) Type::Prepare(in, tables.values);
  tables.valuesHold = true;
  return tables.values;
}

// Passes are computed in ascending order.
template <class Type>
const typename Type::template Table<TypeDual>& PassTable(TypeRun& run, const TypeInputs<TypeDual>& in,
                                                         std::size_t pass) {
  auto& tables = TablesOf<Type>(run);
  if (tables.directions != run.scratch().direction) {
    tables.directions = run.scratch().direction;
    tables.passesHold = 0;
  }
  if (tables.passes.size() <= pass) tables.passes.resize(pass + 1);
  if (tables.passesHold <= pass) Type::Prepare(in, tables.passes[pass]);
  tables.passesHold = std::max(tables.passesHold, pass + 1);
  return tables.passes[pass];
}

template <class Type, class T>
bool CallFormula(TypeRun& run, const TypeInputs<T>& in, std::size_t pass, Slots<T>& q, Complex<T>& eps) {
  bool holds = true;
  if constexpr (Prepares<Type>) {
    const auto& table = [&]() -> const auto& {
      if constexpr (std::is_same_v<T, double>) {
        return ValueTable<Type>(run, in);
      } else {
        return PassTable<Type>(run, in, pass);
      }
    }
    ();
    if constexpr (requires { Type::Response(in, table); }) {
      eps = Type::Response(in, table);
    } else if constexpr (requires { Type::Fill(in, table, q, holds); }) {
      Type::Fill(in, table, q, holds);
    } else {
      Type::Fill(in, table, q);
    }
  } else if constexpr (requires { Type::Response(in, holds); }) {
    eps = Type::Response(in, holds);
  } else if constexpr (requires { Type::Response(in); }) {
    eps = Type::Response(in);
  } else if constexpr (requires { Type::Fill(in, q, holds); }) {
    Type::Fill(in, q, holds);
  } else {
    Type::Fill(in, q);
  }
  return holds;
}

template <class Type>
inline constexpr bool kIsMaterial = !requires {
  Type::kFills;
};

template <class Type>
int AskPartners(TypeRun& run, const RowMap& map, double x, bool derivatives) {
  if constexpr (requires(const TypeInputs<double>& in) { Type::FrequencyOf(in, 0); }) {
    const TypeInputs<double> in(run.scratch(), map, x);
    for (std::size_t i = 0; i < run.InputCount(); ++i) {
      run.Ask(i, Type::FrequencyOf(in, i), derivatives);
    }
    return 0;
  } else {
    return run.AskAll(x, derivatives);
  }
}

// The slopes of the formula's results by every direction, kTypeLanes directions at a pass.
template <class Type>
void FillSlopes(TypeRun& run, const RowMap& map, double x) {
  run.CountDirections();
  for (std::size_t first = 0; first < run.Directions(); first += kTypeLanes) {
    run.MakeDuals(first);
    Slots<TypeDual> values{};
    Complex<TypeDual> eps;
    CallFormula<Type>(run, TypeInputs<TypeDual>(run.scratch(), map, x), first / kTypeLanes, values, eps);
    for (std::size_t lane = 0; lane < kTypeLanes && first + lane < run.Directions(); ++lane) {
      if constexpr (kIsMaterial<Type>) {
        run.SetEpsSlope(first + lane, {eps.re.v[lane], eps.im.v[lane]});
      } else {
        for (const SlotUse& slot : FillsOf<Type>()) {
          run.Slope(slot.quantity, first + lane) = values[slot.quantity].v[lane];
        }
      }
    }
  }
}

// The optional members of a type.
using Hooks = unsigned;
namespace hook {
inline constexpr Hooks kFrequencyOf = 1, kKeep = 2, kIdle = 4, kAdmits = 8, kPrepare = 16, kAsked = 32,
                       kSumOfPartners = 64;
}  // namespace hook

template <class Type>
constexpr Hooks HooksFound() {
  Hooks found = 0;
  const auto add = [&](Hooks hook, bool is) { found |= is ? hook : 0; };
  add(
      hook::kFrequencyOf, requires(const TypeInputs<double>& in) {
        { Type::FrequencyOf(in, 0) } -> std::same_as<double>;
      });
  add(
      hook::kKeep, requires(TypeRun & run, const TypeInputs<double>& in) { Type::Keep(run, in); });
  add(
      hook::kIdle, requires(const TypeInputs<double>& in) {
        { Type::Idle(in) } -> std::same_as<std::uint64_t>;
      });
  add(
      hook::kAdmits, requires(const TypeInputs<double>& in) {
        { Type::Admits(in) } -> std::same_as<bool>;
      });
  if constexpr (Prepares<Type>) {
    add(
        hook::kPrepare, requires(const TypeInputs<double>& in, typename Type::template Table<double>& table) {
          Type::Prepare(in, table);
        });
  }
  add(
      hook::kAsked, requires { Type::kAsked; });
  add(
      hook::kSumOfPartners, requires { Type::kSumOfPartners; });
  return found;
}

template <class Type>
constexpr Hooks HooksListed() {
  if constexpr (requires { Type::kHooks; }) {
    return Type::kHooks;
  } else {
    return 0;
  }
}

template <class Type, RowRule kRows, bool kFitted>
int EvaluateType(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  static_assert(HooksFound<Type>() == HooksListed<Type>(), "kHooks lists what the frame finds, and nothing else");
  const RowMap& map = kMapOf<Type, kRows>;
  TypeRun run(ctx, model, map, FillsOf<Type>(), AskedOf<Type>());
  if (const int status = run.ReadRows()) return status;
  const bool slopes = derivatives && kFitted;
  if constexpr (requires(const TypeInputs<double>& in) { Type::Admits(in); }) {
    if (!Type::Admits(TypeInputs<double>(run.scratch(), map, x))) return -1;
  }
  if (AskPartners<Type>(run, map, x, slopes) != 0) return -1;
  Slots<double> values{};
  Cplx eps;
  if (!CallFormula<Type>(run, TypeInputs<double>(run.scratch(), map, x), 0, values, eps)) return -1;
  if constexpr (kIsMaterial<Type>) {
    run.StoreMaterial(eps, x, slopes);
  } else {
    run.Store(values);
  }
  if constexpr (requires(const TypeInputs<double>& in) { Type::Keep(run, in); }) {
    Type::Keep(run, TypeInputs<double>(run.scratch(), map, x));
  }
  if constexpr (kFitted) {
    if (!slopes) return 0;
    FillSlopes<Type>(run, map, x);
    if constexpr (kIsMaterial<Type>) {
      run.ChainOfMaterial();
    } else {
      run.Chain();
    }
  }
  return 0;
}

template <class Type>
constexpr Parts PartsOf() {
  if constexpr (!kIsMaterial<Type>) {
    return Parts::kOwn;
  } else if constexpr (requires { Type::kSumOfPartners; }) {
    return Parts::kApart;
  } else {
    return Parts::kMixed;
  }
}

template <class Type, RowRule kRows>
int AfterType(EvalContext& ctx, const Model& model) {
  return MarkDependencies(ctx, model, kMapOf<Type, kRows>, FillsOf<Type>(), AskedOf<Type>(), PartsOf<Type>(),
                          IdleOf<Type>());
}

inline int AfterNothing(EvalContext&, const Model&) { return 0; }

// A type whose parameters, and those of its partners, can be fitted.
template <class Type, RowRule kRows>
constexpr ModelType FittedType(int code, const char* name, const TypePage& page) {
  return {code,
          name,
          EvaluateType<Type, kRows, true>,
          AfterType<Type, kRows>,
          true,
          kIsMaterial<Type>,
          kMapOf<Type, kRows>,
          FillsOf<Type>(),
          page};
}

// A type without fit parameters: it has values and no derivatives.
template <class Type, RowRule kRows>
constexpr ModelType ShownType(int code, const char* name, const TypePage& page) {
  return {code,
          name,
          EvaluateType<Type, kRows, false>,
          AfterNothing,
          false,
          kIsMaterial<Type>,
          kMapOf<Type, kRows>,
          FillsOf<Type>(),
          page};
}

}  // namespace kalvex
