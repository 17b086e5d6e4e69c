// One kind of sample: what the rows of its models mean, which Quantities it fills, and how it is computed.
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

// Fills one block of a spectrum at once, with what EvalModel would give, but without leaving anything in the context;
// false where it has to be filled one by one.
using FillBlock = std::function<bool(SpectrumBlock& block)>;

// How many rows a type takes, and the status that another number gives: -1, or of its own with too few.
struct RowRule {
  int least = 0;
  int most = 0;
  int step = 1;      // the rows above the least come in groups of so many
  int failure = -1;  // with fewer
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
  kReference,     // the same, held fixed: nothing of it is fitted through this type
  kOptional,      // as kPartner; 0 stands for vacuum
  kEvaluated,     // number of the model whose Quantities are read
  kEvaluatedIf,   // the same; 0 for none
  kMeshPartner,   // number of the model whose variational dielectric function the type reads itself
  kDataset,       // slot of a dataset that is read at the frequency; an empty one reads as 0
  kOwnMesh,       // a switch: other than 0, the model's own variational dielectric function is read
  kOwn,           // a number that can be fitted
  kSetting,       // a number that cannot: a switch, a count, an end of a range
  kExperimental,  // not an element of the rows: an experimental parameter, whose index stands for the row
};

// One element of the rows that a type reads.
struct RowCell {
  int row = 0;
  int column = 0;
  CellUse use = CellUse::kOwn;
  const char* meaning = "";  // with its unit
  double typical = 0;        // a sensible value: for examples, and for the tests that every type undergoes
  double absent = 0;         // what counts where the model has too few rows for it
  int demanded = 0;          // of a partner: the code that its leading value must name
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
// A partner that the type is made for, and one of these that may be missing.
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
  return {index, 0, CellUse::kExperimental, meaning};
}

// A Quantity that a type fills, and on which of its inputs it can depend: bit i for cell number i, those of the groups
// behind those of the head.
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
  std::uint64_t lastIdle = 0;        // cells of a group that do not count in the last one: bit j for cell j
  std::uint64_t asked = kAllInputs;  // bit s: on Quantity number s of those that evaluated partners are asked for
};

// The rows of a type: a head, and behind it any number of groups of rows that are read alike.
struct RowMap {
  RowRule rows{};
  std::span<const RowCell> head{};
  std::span<const RowCell> group{};  // rows counted from the first row of the group
  int groupStart = 0;                // the row with which the first group starts
  int groupRows = 1;
};

// What a user reads of a type.
struct TypePage {
  const char* sample = "";     // for what sample or measurement it is
  const char* formula = "";    // lines of text
  const char* source = "";     // paper or book, or what was chosen
  double from = 50, to = 500;  // a sensible range of the x axis, whose meaning is:
  const char* axis = "frequency, cm-1";
};

struct ModelType {
  int code = 0;
  const char* name = "";
  // As StdEvalBulk and StdEvalAfter: -1 leaves the Quantities as they stand.
  int (*evaluate)(EvalContext& ctx, const Model& model, double x, bool derivatives) = nullptr;
  int (*after)(EvalContext& ctx, const Model& model) = nullptr;
  bool fitted = false;    // it has an after-step: its parameters, and those of its partners, can be fitted
  bool material = false;  // all 15 Quantities, those of the dielectric function that it computes
  RowMap map{};
  std::span<const SlotUse> fills{};
  TypePage page{};
  // It makes a whole spectrum at once, or writes files: its frequencies are not to be shared between threads.
  bool whole = false;
  // How blocks of a spectrum of the model are filled at once, an empty function where they cannot; null where they
  // never can. While the function lives, neither the request nor any value may change.
  FillBlock (*fillerOf)(EvalContext& ctx, const Model& model, const SpectrumRequest& request) = nullptr;
};

// The type of a model, null for a plain one. Unlike a row's code, a type code is only truncated: -2.7 is type 2.
const ModelType* TypeOf(const EvalContext& ctx, const Model& model);
// The name of the type, "Diel. function" for a plain model.
const char* TypeNameOf(const EvalContext& ctx, const Model& model);

}  // namespace kalvex
