// The functions that a formula template calls, for double. Dual numbers and packs have functions of the same names.
// Conditions choose a value; packs do so lane by lane.
#pragma once

#include <cmath>

namespace kalvex {

// sqrt(|x|): rounding may give an argument a little below 0.
inline double Sqrt(double x) { return std::sqrt(std::fabs(x)); }
inline double Exp(double x) { return std::exp(x); }
inline double Expm1(double x) { return std::expm1(x); }
inline double Log(double x) { return std::log(x); }
inline double Sin(double x) { return std::sin(x); }
inline double Cos(double x) { return std::cos(x); }
inline double Tanh(double x) { return std::tanh(x); }
inline double Atan(double x) { return std::atan(x); }

inline double Fabs(double x) { return std::fabs(x); }
inline double Hypot(double x, double y) { return std::hypot(x, y); }
inline double Select(bool condition, double yes, double no) { return condition ? yes : no; }

// In how many lanes a condition holds; a double is one lane.
enum class Lanes { kNone, kAll, kSome };
inline Lanes LanesOf(bool condition) { return condition ? Lanes::kAll : Lanes::kNone; }

}  // namespace kalvex
