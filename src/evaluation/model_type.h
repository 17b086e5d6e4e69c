// ModelType: a kind of sample. What the rows of its models mean, which Quantities it fills, and how it is computed.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>

#include "datasets/quantity.h"
#include "records/model.h"

namespace kalvex {

struct EvalContext;
struct SpectrumRequest;
class SpectrumBlock;

// Fills one block of a spectrum with the results of EvalModel, without writing to the context. False if the block must
// be filled one frequency at a time.
using FillBlock = std::function<bool(SpectrumBlock& block)>;

// The number of rows that a type accepts. Another number gives the status -1, or `failure` if there are too few.
struct RowRule {
  int least = 0;
  int most = 0;
  int step = 1;      // the rows above `least` come in groups of this size
  int failure = -1;  // status with fewer than `least`
  constexpr bool Admits(int rows) const { return rows >= least && rows <= most && (rows - least) % step == 0; }
  constexpr int FailureOf(int rows) const { return rows < least ? failure : -1; }
};
inline constexpr int kAnyNumber = 2147483647;
constexpr RowRule Exactly(int rows, int failure = -1) { return {rows, rows, 1, failure}; }
constexpr RowRule AtLeast(int rows, int failure = -1) { return {rows, kAnyNumber, 1, failure}; }
constexpr RowRule Between(int least, int most, int failure = -1) { return {least, most, 1, failure}; }
constexpr RowRule InGroups(int least, int step) { return {least, kAnyNumber, step, -1}; }

enum class CellUse : std::uint8_t {
  kPartner,       // number of the model whose dielectric function is read
  kReference,     // the same, but fixed: the fit does not vary its parameters through this type
  kOptional,      // as kPartner; 0 means vacuum
  kEvaluated,     // number of the model whose Quantities are read
  kEvaluatedIf,   // the same; 0 means none
  kMeshPartner,   // number of the model whose variational dielectric function the type reads itself
  kDataset,       // slot of a dataset, read at the frequency; an empty slot gives 0
  kOwnMesh,       // a switch: if not 0, the model's own variational dielectric function is read
  kOwn,           // a number that the fit can vary
  kSetting,       // a number that the fit cannot vary: a switch, a count, an end of a range
  kExperimental,  // not in the rows: an experimental parameter, with its index in the place of the row
};

// An element of the rows that a type reads.
struct RowCell {
  int row = 0;
  int column = 0;
  CellUse use = CellUse::kOwn;
  const char* meaning = "";  // with its unit
  double typical = 0;        // a sensible value, for examples and for the tests of every type
  double absent = 0;         // the value if the model has too few rows
  int demanded = 0;          // of a partner: the type code that it must have
};
constexpr RowCell Partner(int row, int column, const char* meaning) {
  return {row, column, CellUse::kPartner, meaning};
}
constexpr RowCell OptionalPartner(int row, int column, const char* meaning) {
  return {row, column, CellUse::kOptional, meaning};
}
constexpr RowCell Evaluated(int row, int column, const char* meaning) {
  return {row, column, CellUse::kEvaluated, meaning};
}
constexpr RowCell MeshPartner(int row, int column, const char* meaning) {
  return {row, column, CellUse::kMeshPartner, meaning};
}
// A partner that must be of one type.
constexpr RowCell EvaluatedType(int row, int column, const char* meaning, int code) {
  return {row, column, CellUse::kEvaluated, meaning, static_cast<double>(code), 0, code};
}
// A partner that is usually of the given type. EvaluatedIf: the same, but it may be missing.
constexpr RowCell EvaluatedLike(int row, int column, const char* meaning, int code) {
  return {row, column, CellUse::kEvaluated, meaning, static_cast<double>(code)};
}
constexpr RowCell EvaluatedIf(int row, int column, const char* meaning, int code) {
  return {row, column, CellUse::kEvaluatedIf, meaning, static_cast<double>(code)};
}
constexpr RowCell DatasetSlot(int row, int column, const char* meaning) {
  return {row, column, CellUse::kDataset, meaning};
}
constexpr RowCell OwnMesh(int row, int column, const char* meaning) {
  return {row, column, CellUse::kOwnMesh, meaning};
}
constexpr RowCell Own(int row, int column, const char* meaning, double typical, double absent = 0) {
  return {row, column, CellUse::kOwn, meaning, typical, absent};
}
constexpr RowCell Setting(int row, int column, const char* meaning, double typical, double absent = 0) {
  return {row, column, CellUse::kSetting, meaning, typical, absent};
}
constexpr RowCell Experimental(ExpParam index, const char* meaning) {
  return {static_cast<int>(index), 0, CellUse::kExperimental, meaning};
}

// A Quantity that a type fills, and the inputs on which it can depend: bit i for cell number i. The cells of the groups
// come after those of the head.
inline constexpr std::uint64_t kAllInputs = ~std::uint64_t{0};
constexpr std::uint64_t InputBits(std::initializer_list<std::size_t> cells) {
  std::uint64_t bits = 0;
  for (const std::size_t cell : cells) bits |= std::uint64_t{1} << cell;
  return bits;
}
struct SlotUse {
  Quantity quantity = kRefl;
  const char* meaning = "";  // with its unit
  std::uint64_t inputs = kAllInputs;
  std::uint64_t lastIdle = 0;        // cells of a group that have no influence in the last group: bit j for cell j
  std::uint64_t asked = kAllInputs;  // bit s: it depends on Quantity number s of the evaluated partners
  double period = 0;                 // of an angle: values that differ by it are the same. 0: no period
};
// An angle in degrees.
constexpr SlotUse Angle(double period, SlotUse use) {
  use.period = period;
  return use;
}

// The rows of a type: a head, followed by any number of groups of rows with the same meaning.
struct RowMap {
  RowRule rows{};
  std::span<const RowCell> head{};
  std::span<const RowCell> group{};  // rows are relative to the first row of the group
  int groupStart = 0;                // first row of the first group
  int groupRows = 1;
};

// The description of a type for users.
struct TypePage {
  const char* sample = "";     // the sample or measurement
  const char* formula = "";    // lines of text
  const char* source = "";     // paper or book, or the assumption made
  double from = 50, to = 500;  // a sensible range of the x axis
  const char* axis = "frequency, cm-1";
};

struct ModelType {
  int code = 0;
  const char* name = "";
  // As StdEvalBulk and StdEvalAfter. With the status -1 the Quantities keep their values.
  int (*evaluate)(EvalContext& ctx, const Model& model, double x, bool derivatives) = nullptr;
  int (*after)(EvalContext& ctx, const Model& model) = nullptr;
  bool fitted = false;    // it has an after-step: the fit can vary its parameters and those of its partners
  bool material = false;  // it computes a dielectric function, and all Quantities follow from it
  RowMap map{};
  std::span<const SlotUse> fills{};
  TypePage page{};
  // It computes a whole spectrum at once, or writes files: threads must not share its frequencies.
  bool whole = false;
  // Returns the function that fills blocks of a spectrum of the model; empty if this model does not allow it. Null if
  // the type never does. While the function is in use, the request and all values must stay unchanged.
  FillBlock (*fillerOf)(EvalContext& ctx, const Model& model, const SpectrumRequest& request) = nullptr;
};

// The type of a model; null for a plain model. A type code is truncated: -2.7 is type 2. A row's code is not.
const ModelType* TypeOf(const EvalContext& ctx, const Model& model);
// The name of the type; "Diel. function" for a plain model.
const char* TypeNameOf(const EvalContext& ctx, const Model& model);

}  // namespace kalvex
