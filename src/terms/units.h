// Units of the terms' inputs.
#pragma once

namespace kalvex {

inline constexpr double kKelvin = 0.6950788589157977;  // cm-1 of 1 K

}  // namespace kalvex
