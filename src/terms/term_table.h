// TermTable: what the row codes mean. A composite term is a set of codes that must be present together, the list of
// parameters that its calculator reads, and the calculator. Row order is the order of addition.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "numeric/complex.h"

namespace kalvex {

struct TermEnvironment;

inline constexpr int kTermRecords = 72;
inline constexpr int kMaxTermIds = 41;
inline constexpr int kMaxTermInputs = 82;
inline constexpr int kNoSlot = -1;

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

struct InputPair {
  std::int8_t idIndex = 0;  // which of the record's ids
  std::int8_t column = 0;   // 1 or 2; column 0 holds the code
};

struct TermRecord {
  int nIds = 0;
  std::array<std::int16_t, kMaxTermIds> ids{};
  TermCalc calc = nullptr;
  ScalarCalc scalarCalc = nullptr;
  int nInputs = 0;
  std::array<InputPair, kMaxTermInputs> inputs{};
  // Codes of rows that the term takes any number of. Behind its own inputs come the numbers of rows with each of these
  // codes, then columns 1 and 2 of all of them, code by code.
  std::span<const std::int32_t> factorCodes{};
  bool replacesRealPart = false;  // its real part takes the place of the whole real part of the sum so far

  std::span<const std::int16_t> Ids() const { return {ids.data(), static_cast<std::size_t>(nIds)}; }
  std::span<const InputPair> Inputs() const { return {inputs.data(), static_cast<std::size_t>(nInputs)}; }
};

extern const std::array<TermRecord, kTermRecords> TermTable;

// Row number found for each id of each record, kNoSlot where the code is absent: part of an evaluation's state.
struct TermSlots {
  std::array<std::array<std::int32_t, kMaxTermIds>, kTermRecords> row;
};

void ClearSlots(TermSlots& slots);
// Notes the row under every id that equals the code.
void FillSlots(TermSlots& slots, std::int32_t code, int row);
// True if every id of the record has its row.
bool IsComplete(const TermSlots& slots, int record);

}  // namespace kalvex
