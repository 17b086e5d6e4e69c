// Sizes of the program's fixed tables and the marker values that stand for a missing or failed number.
#pragma once

namespace kalvex {

inline constexpr int kMaxDatasets = 100;
inline constexpr int kMaxModels = 100;
inline constexpr int kMaxGraphs = 100;
inline constexpr int kExpParamCount = 6;
inline constexpr int kMaxCouplingGroup = 24;

// A value that does not exist: the accessors give the negative one for an invalid model or index, the computed columns
// the positive one where the resonance frequency is exactly 0.
inline constexpr double kMissing = -7.77777e77;
inline constexpr double kUndefined = 7.77777e77;

// What an evaluation gives where there is no finite value, and below which norm a denominator counts as zero.
inline constexpr double kNoValue = 1e30;
inline constexpr double kTinyNorm = 1e-30;

// No parameter ever leaves [-kValueClamp, kValueClamp].
inline constexpr double kValueClamp = 1e70;

}  // namespace kalvex
