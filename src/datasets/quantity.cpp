#include "datasets/quantity.h"

#include "core/text.h"

namespace kalvex {

std::optional<int> QuantityOfShortName(std::string_view shortName) {
  for (int q = 0; q < kQuantityCount; ++q) {
    if (EqualsIgnoringCase(kQuantityNames[static_cast<std::size_t>(q)].shortName, shortName)) return q;
  }
  return std::nullopt;
}

int QuantityOfFileName(std::string_view fileName) {
  for (int q = 0; q < kQuantityCount; ++q) {
    if (StartsWithIgnoringCase(fileName, kQuantityNames[static_cast<std::size_t>(q)].shortName)) return q;
  }
  return 0;
}

}  // namespace kalvex
