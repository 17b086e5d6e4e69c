// TermRecord: a composite term. The codes of its rows, the numbers that its calculator reads from them and their
// meaning, the calculator, and the description for users.
#pragma once

#include <cstdint>
#include <span>

#include "numeric/complex.h"
#include "records/model.h"

namespace kalvex {

struct TermEnvironment;

// A parameter as a calculator receives it. The calculator writes a derivative only if adjustable is set.
struct TermInput {
  double value = 0;
  std::uint32_t adjustable = 0;
  double* outRe = nullptr;
  double* outIm = nullptr;
  double* outScalar = nullptr;  // set only for the real row sum
};

struct TermCall {
  double w = 0;  // frequency, cm-1
  bool derivatives = false;
  std::span<const TermInput> inputs;
  TermEnvironment* environment = nullptr;  // never null for a composite term
};

// Computes the term's complex value and, on request, its derivatives. A negative status means that nothing was written.
using TermCalc = int (*)(const TermCall& call, Cplx& result);
// The same for the term's contribution to the real row sum.
using ScalarCalc = int (*)(const TermCall& call, double& result);

enum class TermUse : std::uint8_t {
  kNumber,   // the fit can vary it
  kSetting,  // a number that the fit cannot vary
  kDataset,  // number of a loaded dataset
  kIdle,     // read, but the value does not depend on it
};

// A number that a term reads: its place and its meaning.
struct TermCell {
  int idIndex = 0;  // the row, as an index into the record's codes
  int column = Wp;  // Wp or G; Wo holds the code
  const char* meaning = "";
  const char* unit = "";  // empty for a plain number
  double typical = 0;     // a sensible value, for examples and for the tests of every term
  TermUse use = TermUse::kNumber;
  int line = 0;  // number of the line among lines of the same meaning, 0 without such lines
};
constexpr TermCell Number(int idIndex, int column, const char* meaning, const char* unit, double typical) {
  return {idIndex, column, meaning, unit, typical};
}

// A row of which a term can have any number, with the meaning of its columns Wp and G.
struct FactorRow {
  std::int32_t code = 0;
  TermCell cells[2];
};

// The description of a term for users.
struct TermPage {
  const char* formula = "";  // lines of text, in the symbols of the cells
  const char* source = "";   // paper or book, or the assumption made
  const char* limits = "";   // limiting cases, and results where it is not defined
  // Causal: real and imaginary part are Kramers-Kronig transforms of each other, including a pole at w = 0.
  bool causal = true;
  const char* causality = "";  // for a causal term the condition, otherwise the reason why it is not
  double from = 50, to = 500;  // a sensible range of frequencies, cm-1
};

struct TermRecord {
  const char* name = "";
  // The nIds codes from firstId on. The term contributes if each of them has a row.
  int firstId = 0;
  int nIds = 0;
  std::span<const TermCell> inputs{};  // in the order in which the calculator reads them
  TermCalc calc = nullptr;
  ScalarCalc scalarCalc = nullptr;
  // Rows of which the term can have any number. The inputs of the calculator are then its own inputs, the number of
  // rows of each kind, and columns Wp and G of these rows, kind by kind.
  std::span<const FactorRow> factors{};
  bool replacesRealPart = false;  // its real part replaces the real part of the sum so far
  bool sharesCodes = false;       // another record has one of its codes; a row with this code belongs to both
  TermPage page{};

  constexpr bool HasId(int code) const { return code >= firstId && code < firstId + nIds; }
};

// The largest number of codes of a record; the size of the arrays in TermSlots.
inline constexpr int kMostTermIds = 41;

}  // namespace kalvex
