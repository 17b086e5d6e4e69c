#include "datasets/quantity.h"

#include "core/text.h"

namespace kalvex {

std::optional<Quantity> QuantityOfShortName(std::string_view shortName) {
  for (const Quantity quantity : kEveryQuantity) {
    if (EqualsIgnoringCase(NamesOf(quantity).shortName, shortName)) return quantity;
  }
  return std::nullopt;
}

Quantity QuantityOfFileName(std::string_view fileName) {
  for (const Quantity quantity : kEveryQuantity) {
    if (StartsWithIgnoringCase(fileName, NamesOf(quantity).shortName)) return quantity;
  }
  return kRefl;
}

}  // namespace kalvex
