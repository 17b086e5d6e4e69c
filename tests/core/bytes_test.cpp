// Packed little-endian records, compared with the bytes in the file.
#include "core/bytes.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace kalvex {
namespace {

std::string Hex(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += {kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return text;
}

template <class Value>
std::string HexOf(void (ByteWriter::*write)(Value), Value value) {
  ByteWriter out;
  (out.*write)(value);
  return Hex(out.Content());
}

TEST(Bytes, IntegersStandWithTheLowestByteFirst) {
  EXPECT_EQ(HexOf(&ByteWriter::U32, 0x01020304u), "04030201");
  EXPECT_EQ(HexOf(&ByteWriter::U32, 0xfffffffeu), "feffffff");
  EXPECT_EQ(HexOf(&ByteWriter::I32, 7), "07000000");
  EXPECT_EQ(HexOf(&ByteWriter::I32, -2), "feffffff");
  EXPECT_EQ(HexOf(&ByteWriter::I32, std::numeric_limits<int>::min()), "00000080");
}

TEST(Bytes, RealsStandInTheirBinary64FormLowestByteFirst) {
  // sign, 11 bits of exponent from 1023, 52 bits of fraction
  EXPECT_EQ(HexOf(&ByteWriter::F64, 0.0), "0000000000000000");
  EXPECT_EQ(HexOf(&ByteWriter::F64, -0.0), "0000000000000080");
  EXPECT_EQ(HexOf(&ByteWriter::F64, 1.0), "000000000000f03f");
  EXPECT_EQ(HexOf(&ByteWriter::F64, -2.0), "00000000000000c0");
  EXPECT_EQ(HexOf(&ByteWriter::F64, 0.1), "9a9999999999b93f");
  EXPECT_EQ(HexOf(&ByteWriter::F64, std::numeric_limits<double>::infinity()), "000000000000f07f");
  EXPECT_EQ(HexOf(&ByteWriter::F64, std::numeric_limits<double>::denorm_min()), "0100000000000000");
}

TEST(Bytes, FieldsFollowEachOtherWithoutGaps) {
  ByteWriter out;
  EXPECT_EQ(out.Content(), "");
  out.I32(7);
  out.F64(1.0);
  out.Bytes(std::string_view("a\0b", 3));
  out.U32(0xfffffffeu);
  EXPECT_EQ(Hex(out.Content()),
            "07000000"
            "000000000000f03f"
            "610062"
            "feffffff");
}

TEST(Bytes, WhatIsWrittenIsRead) {
  const double values[] = {0.0, -0.0, 1e-310, -7.77777e77, std::numeric_limits<double>::max(), std::nan("")};
  ByteWriter out;
  for (const double value : values) out.F64(value);
  out.I32(-123456789);
  out.U32(0x80000000u);
  ByteReader in(out.Content());
  EXPECT_EQ(in.Left(), 6 * 8 + 2 * 4u);
  for (const double value : values) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(in.F64()), std::bit_cast<std::uint64_t>(value));
  }
  EXPECT_EQ(in.I32(), -123456789);
  EXPECT_EQ(in.U32(), 0x80000000u);
  EXPECT_EQ(in.Left(), 0u);
}

TEST(Bytes, AFieldThatTheBlockIsTooShortForReadsAsZeroAndEndsIt) {
  ByteReader three("\x01\x02\x03");
  EXPECT_EQ(three.U32(), 0u);
  EXPECT_EQ(three.Left(), 0u);
  EXPECT_EQ(three.I32(), 0);
  ByteReader seven("\x01\x02\x03\x04\x05\x06\x07");
  EXPECT_EQ(seven.F64(), 0.0);
  EXPECT_EQ(seven.Left(), 0u);
  EXPECT_EQ(ByteReader("").F64(), 0.0);
}

TEST(Bytes, ABlockThatEndsEarlyFillsOnlyTheBeginning) {
  ByteReader in("abcde");
  std::array<char, 3> first{};
  EXPECT_EQ(in.Bytes(first), 3u);
  EXPECT_EQ(first, (std::array{'a', 'b', 'c'}));
  std::array<char, 3> second{'x', 'y', 'z'};
  EXPECT_EQ(in.Bytes(second), 2u);
  EXPECT_EQ(second, (std::array{'d', 'e', 'z'}));
  EXPECT_EQ(in.Bytes(second), 0u);
  EXPECT_EQ(second, (std::array{'d', 'e', 'z'}));
}

}  // namespace
}  // namespace kalvex
