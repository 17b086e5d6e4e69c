// TermTable: what the row codes mean. Its order is the order of addition. Each record is defined beside its calculator.
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

// Row number found for each id of each record, kNoSlot where the code is absent: part of an evaluation's state.
inline constexpr int kNoSlot = -1;
struct TermSlots {
  std::array<std::array<std::int32_t, kMostTermIds>, kTermRecords> row;
};

void ClearSlots(TermSlots& slots);
// Notes the row under every id that equals the code.
void FillSlots(TermSlots& slots, std::int32_t code, int row);
// True if every id of the record has its row.
bool IsComplete(const TermSlots& slots, std::size_t record);

}  // namespace kalvex
