// The bytes of a number as stored in memory. The tests run on little-endian machines only.
#pragma once

#include <cstring>
#include <string>

namespace kalvex {

template <class T>
std::string Bytes(T value) {
  std::string bytes(sizeof(value), '\0');
  std::memcpy(bytes.data(), &value, sizeof(value));
  return bytes;
}

}  // namespace kalvex
