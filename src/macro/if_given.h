// Taking over a parameter of a statement, if it is given.
#pragma once

#include <optional>

namespace kalvex {

template <class T>
void SetIfGiven(T& field, std::optional<T> value) {
  if (value) field = *value;
}

inline void SetFlagIfGiven(bool& flag, std::optional<int> value) {
  if (value) flag = *value != 0;
}

}  // namespace kalvex
