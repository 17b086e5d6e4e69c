// Sizes of the program's fixed tables and the marker values that stand for a missing or failed number.
#pragma once

namespace kalvex {

inline constexpr int kMaxDatasets = 100;
inline constexpr int kMaxModels = 100;
inline constexpr int kMaxGraphs = 100;
inline constexpr int kMaxCouplingGroup = 24;

// A value that does not exist. The accessors return the negative one for an invalid model or index. The computed
// columns return the positive one where the resonance frequency is exactly 0.
inline constexpr double kMissing = -7.77777e77;
inline constexpr double kUndefined = 7.77777e77;
// The error of a parameter that the data do not determine, that stands on a limit, or that has no influence.
inline constexpr double kNotDetermined = kMissing;

// The result of an evaluation that has no finite value. A denominator whose norm is below kTinyNorm counts as zero.
inline constexpr double kNoValue = 1e30;
inline constexpr double kTinyNorm = 1e-30;

// Every parameter stays within [-kValueClamp, kValueClamp].
inline constexpr double kValueClamp = 1e70;

}  // namespace kalvex
