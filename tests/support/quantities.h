// Quantities in tests: as text, and the next one in the order of their numbers.
#pragma once

#include <ostream>

#include "datasets/quantity.h"

namespace kalvex {

inline std::ostream& operator<<(std::ostream& out, Quantity quantity) { return out << NamesOf(quantity).shortName; }

// Pairs of results stand in neighbouring Quantities.
inline Quantity NextAfter(Quantity quantity) { return QuantityOfNumber(NumberOf(quantity) + 1).value(); }

}  // namespace kalvex
