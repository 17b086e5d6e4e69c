// Packed little-endian records. They are written and read byte by byte: a file is the same on every machine.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace kalvex {

class ByteWriter {
 public:
  void U32(std::uint32_t value) { Little<4>(value); }
  void I32(std::int32_t value) { U32(static_cast<std::uint32_t>(value)); }
  void F64(double value) { Little<8>(std::bit_cast<std::uint64_t>(value)); }
  void Bytes(std::span<const char> bytes) { bytes_.append(bytes.data(), bytes.size()); }
  std::string_view Content() const { return bytes_; }

 private:
  template <std::size_t kCount>
  void Little(std::uint64_t value) {
    std::array<char, kCount> bytes;
    for (std::size_t i = 0; i < kCount; ++i) bytes[i] = static_cast<char>(value >> (8 * i));
    Bytes(bytes);
  }
  std::string bytes_;
};

// Reads fields from the front of a block of bytes. A field reads as 0 if the block is too short for it.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) : rest_(bytes) {}

  std::uint32_t U32() { return static_cast<std::uint32_t>(Little(4)); }
  std::int32_t I32() { return static_cast<std::int32_t>(U32()); }
  double F64() { return std::bit_cast<double>(Little(8)); }
  // Copies up to out.size() bytes and returns how many there were. The rest of out stays as it is.
  std::size_t Bytes(std::span<char> out) {
    const std::size_t count = std::min(out.size(), rest_.size());
    std::memcpy(out.data(), rest_.data(), count);
    rest_.remove_prefix(count);
    return count;
  }
  std::size_t Left() const { return rest_.size(); }

 private:
  std::uint64_t Little(std::size_t count) {
    std::uint64_t value = 0;
    if (rest_.size() < count) {
      rest_ = {};
      return 0;
    }
    for (std::size_t i = 0; i < count; ++i) value |= std::uint64_t{static_cast<unsigned char>(rest_[i])} << (8 * i);
    rest_.remove_prefix(count);
    return value;
  }
  std::string_view rest_;
};

}  // namespace kalvex
