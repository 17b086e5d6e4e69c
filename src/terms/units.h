// Units of the terms' inputs.
#pragma once

namespace kalvex {

inline constexpr double kWavenumberPerKelvin = 0.6950788589157977;  // k_B/(h c), cm-1 of 1 K

}  // namespace kalvex
