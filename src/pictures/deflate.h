// Compression for picture files.
#pragma once

#include <string>
#include <string_view>

namespace kalvex {

// The bytes as a zlib stream (RFC 1950, 1951): repetitions within 32 kB are told as such, in the fixed code.
std::string ZlibOf(std::string_view bytes);

}  // namespace kalvex
