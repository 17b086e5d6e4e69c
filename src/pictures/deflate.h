// Compression for picture files.
#pragma once

#include <string>
#include <string_view>

namespace kalvex {

// The bytes as a zlib stream (RFC 1950, 1951). Repetitions within 32 kB are replaced by references; the code is the
// fixed one.
std::string ZlibOf(std::string_view bytes);

}  // namespace kalvex
