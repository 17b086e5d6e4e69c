// What a composite term is: the codes of its rows, the numbers that its calculator reads from them and what they mean,
// the calculator, and what a user reads of it.
#pragma once

#include <cstdint>
#include <span>

#include "numeric/complex.h"
#include "records/model.h"

namespace kalvex {

struct TermEnvironment;

// How a calculator receives one parameter. It writes a derivative only where adjustable is set.
struct TermInput {
  double value = 0;
  std::uint32_t adjustable = 0;
  double* outRe = nullptr;
  double* outIm = nullptr;
  double* outScalar = nullptr;  // filled only for the real row sum
};

struct TermCall {
  double w = 0;  // frequency, cm-1
  bool derivatives = false;
  std::span<const TermInput> inputs;
  TermEnvironment* environment = nullptr;  // never null for a composite term
};

// Writes the term's complex value and, on request, its derivatives. A negative status means that nothing was written.
using TermCalc = int (*)(const TermCall& call, Cplx& result);
// The same for the term's share of the real row sum.
using ScalarCalc = int (*)(const TermCall& call, double& result);

enum class TermUse : std::uint8_t {
  kNumber,   // can be fitted
  kSetting,  // a number that cannot
  kDataset,  // number of a loaded dataset
  kIdle,     // read, but the value does not depend on it
};

// One number that a term reads: where it stands and what it means.
struct TermCell {
  int idIndex = 0;  // the row: which of the record's codes
  int column = Wp;  // Wp or G; Wo holds the code
  const char* meaning = "";
  const char* unit = "";  // empty for a plain number
  double typical = 0;     // a sensible value: for examples, and for the tests that every term undergoes
  TermUse use = TermUse::kNumber;
  int line = 0;  // number of the line among those that are read alike, 0 where there are none
};
constexpr TermCell Number(int idIndex, int column, const char* meaning, const char* unit, double typical) {
  return {idIndex, column, meaning, unit, typical};
}

// A row that a term takes any number of, with the meaning of its columns Wp and G.
struct FactorRow {
  std::int32_t code = 0;
  TermCell cells[2];
};

// What a user reads of a term.
struct TermPage {
  const char* formula = "";  // lines of text, in the symbols of the cells
  const char* source = "";   // paper or book, or what was chosen
  const char* limits = "";   // limiting cases, and where it is not defined
  // Causal: real and imaginary part are Kramers-Kronig transforms of each other, a pole at w = 0 included.
  bool causal = true;
  const char* causality = "";  // of a causal term the condition, of another one the reason
  double from = 50, to = 500;  // a sensible range of frequencies, cm-1
};

struct TermRecord {
  const char* name = "";
  // The codes: firstId and those that follow it, nIds in all. The term takes part where each of them has its row.
  int firstId = 0;
  int nIds = 0;
  std::span<const TermCell> inputs{};  // in the order in which the calculator reads them
  TermCalc calc = nullptr;
  ScalarCalc scalarCalc = nullptr;
  // Rows that the term takes any number of. After its own inputs come the numbers of rows of each kind, then columns Wp
  // and G of all of them, kind by kind.
  std::span<const FactorRow> factors{};
  bool replacesRealPart = false;  // its real part takes the place of the whole real part of the sum so far
  bool sharesCodes = false;       // another record has one of its codes too; a row with such a code feeds both
  TermPage page{};

  constexpr bool HasId(int code) const { return code >= firstId && code < firstId + nIds; }
};

// How many codes a record can have: TermSlots keeps room for so many.
inline constexpr int kMostTermIds = 41;

}  // namespace kalvex
