// src/terms (floor 3) holds the dielectric terms that the code of a row selects.
//
//   term_record.h       TermRecord: codes, inputs, calculator and description of a term
//   formula.h           MakeTerm: a record from a formula template; how to write a term
//   lorentz.h           the plain Lorentzian of a row without a code
//   *_terms.cpp, factorised.cpp, superconductor.cpp, boson_coupling.cpp   the terms by subject
//   superconductor_integral.h, gap_table.h, boson_coupling.h              integrals and tables of some terms
//   term_environment.h, term_tables.h   input and tables that all calculators share
//   describe.h          lists and pages for users
//   units.h             conversion of units
//
// Read lorentz.h, term_record.h and formula.h first, then simple_terms.cpp. Frequencies are in cm-1.
//
// TermTable: all records. The terms are added in its order. Each record is defined in the file of its calculator.
#pragma once

#include <array>
#include <cstdint>

#include "terms/term_record.h"

namespace kalvex {

// boson_coupling.cpp
extern const TermRecord kBosonCoupling41, kBosonCoupling44;
// carrier_terms.cpp
extern const TermRecord kPowerLawDrude;
extern const TermRecord kSpreadRates;
extern const TermRecord kRateAroundTheSurface5, kRateAroundTheSurface11, kRateAroundTheSurface13;
extern const TermRecord kBackScattering;
extern const TermRecord kTwoFluids;
extern const TermRecord kDiracStep;
// coupled_terms.cpp
extern const TermRecord kImpurityAndResonance31, kImpurityAndResonance65, kImpurityAndResonance67,
    kImpurityAndResonance69, kImpurityAndResonance71;
extern const TermRecord kMixedModes;
extern const TermRecord kFanoMode55, kFanoMode57, kFanoMode59;
extern const TermRecord kInterference;
extern const TermRecord kFanoLine;
extern const TermRecord kCoupledOscillators;
extern const TermRecord kPhasedPair;
// factorised.cpp
extern const TermRecord kFactorised;
// interband_terms.cpp
extern const TermRecord kSpreadLorentzian47, kSpreadLorentzian49;
extern const std::array<TermRecord, 6> kAmorphousGaps;
extern const TermRecord kGaussiansAndEdge;
extern const TermRecord kBands240, kBands260, kBands270, kBands287, kBands400, kBands500, kBands600;
// simple_terms.cpp
extern const TermRecord kDrudeByWeight;
extern const TermRecord kConstant;
extern const TermRecord kFixedConductivity;
extern const TermRecord kLorentzianByWeight25, kLorentzianByWeight29, kLorentzianByWeight35, kLorentzianByWeight37,
    kLorentzianByWeight39;
extern const TermRecord kTransferOfWeight;
extern const std::array<TermRecord, 20> kSquaredWidthLorentzians;
// superconductor.cpp
extern const TermRecord kSuperconductorWithUnpairedShare, kSuperconductorOfTc, kSuperconductorOfGap;

inline constexpr const TermRecord* TermTable[] = {
    &kFactorised,
    &kPowerLawDrude,
    &kSpreadRates,
    &kRateAroundTheSurface5,
    &kRateAroundTheSurface11,
    &kRateAroundTheSurface13,
    &kSuperconductorWithUnpairedShare,
    &kSuperconductorOfTc,
    &kSuperconductorOfGap,
    &kDrudeByWeight,
    &kConstant,
    &kFixedConductivity,
    &kLorentzianByWeight25,
    &kLorentzianByWeight29,
    &kTransferOfWeight,
    &kImpurityAndResonance31,
    &kBackScattering,
    &kLorentzianByWeight35,
    &kLorentzianByWeight37,
    &kLorentzianByWeight39,
    &kBosonCoupling41,
    &kBosonCoupling44,
    &kSpreadLorentzian47,
    &kSpreadLorentzian49,
    &kMixedModes,
    &kFanoMode55,
    &kFanoMode57,
    &kFanoMode59,
    &kInterference,
    &kFanoLine,
    &kImpurityAndResonance65,
    &kImpurityAndResonance67,
    &kImpurityAndResonance69,
    &kImpurityAndResonance71,
    &kCoupledOscillators,
    &kPhasedPair,
    &kSquaredWidthLorentzians[0],
    &kSquaredWidthLorentzians[1],
    &kSquaredWidthLorentzians[2],
    &kSquaredWidthLorentzians[3],
    &kSquaredWidthLorentzians[4],
    &kSquaredWidthLorentzians[5],
    &kSquaredWidthLorentzians[6],
    &kSquaredWidthLorentzians[7],
    &kSquaredWidthLorentzians[8],
    &kSquaredWidthLorentzians[9],
    &kSquaredWidthLorentzians[10],
    &kSquaredWidthLorentzians[11],
    &kSquaredWidthLorentzians[12],
    &kSquaredWidthLorentzians[13],
    &kSquaredWidthLorentzians[14],
    &kSquaredWidthLorentzians[15],
    &kSquaredWidthLorentzians[16],
    &kSquaredWidthLorentzians[17],
    &kSquaredWidthLorentzians[18],
    &kSquaredWidthLorentzians[19],
    &kTwoFluids,
    &kAmorphousGaps[0],
    &kAmorphousGaps[1],
    &kAmorphousGaps[2],
    &kAmorphousGaps[3],
    &kAmorphousGaps[4],
    &kAmorphousGaps[5],
    &kGaussiansAndEdge,
    &kBands240,
    &kBands260,
    &kBands270,
    &kBands287,
    &kDiracStep,
    &kBands400,
    &kBands500,
    &kBands600,
};
inline constexpr std::size_t kTermRecords = std::size(TermTable);

// The row of each code of each record, kNoSlot if the code is absent. Part of the state of an evaluation.
inline constexpr int kNoSlot = -1;
struct TermSlots {
  std::array<std::array<std::int32_t, kMostTermIds>, kTermRecords> row;
};

void ClearSlots(TermSlots& slots);
// Stores the row for every record that has the code.
void FillSlots(TermSlots& slots, std::int32_t code, int row);
// True if every id of the record has its row.
bool IsComplete(const TermSlots& slots, std::size_t record);

}  // namespace kalvex
