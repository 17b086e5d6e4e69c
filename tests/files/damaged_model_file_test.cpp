#include <gtest/gtest.h>

#include <bit>
#include <chrono>
#include <cstring>
#include <vector>

#include "files/model_files.h"

namespace kalvex {
namespace {

TEST_F(ModelFiles, ACutFileRepeatsItsLastRecordOrIsRefusedWithoutAHead) {
  InsertRow(model, 1);
  Cell(model, 1, Wo).value = 555;
  Save("a.kvm");
  const std::string whole = folder.Read("a.kvm");
  for (std::size_t size = 0; size < whole.size(); size += 3) {
    folder.Write("cut.kvm", whole.substr(0, size));
    Model& other = *CreateModel(tables.params);
    const StatusCode expected = size < 222 ? StatusCode::kBadFormat : StatusCode::kOk;
    EXPECT_EQ(LoadModel(other, folder.Path("cut.kvm")).Code(), expected) << size;
    EXPECT_EQ(RowCount(other), size < 222 ? 1 : 2) << size;
    CloseModelRecord(other);
  }
  folder.Write("cut.kvm", whole.substr(0, 222 + 4 * 218));  // ends after the first element of the second row
  ASSERT_TRUE(LoadModel(model, folder.Path("cut.kvm")).Ok());
  EXPECT_EQ(Cell(model, 1, Wo).value, 555);
  EXPECT_EQ(Cell(model, 1, G).value, 555);
}

TEST_F(ModelFiles, HostileCountsEndSoon) {
  Save("a.kvm");
  std::string bytes = folder.Read("a.kvm");
  for (const std::int32_t count : {-1, -2147483647, 0, 5000, 2147483647}) {
    bytes.replace(218, 4, Bytes(count));
    folder.Write("b.kvm", bytes);
    ASSERT_TRUE(LoadModel(model, folder.Path("b.kvm")).Ok());
    EXPECT_EQ(RowCount(model), count == 5000 ? 5000 : count > 0 ? 2 : 0) << count;
  }
}

// The values that a truncated file gives: each read fills a buffer as far as the bytes reach, and the rest of the
// buffer keeps its previous content.
std::vector<double> ValuesOfACutFile(const std::string& bytes, int rows) {
  std::string buffer = bytes.substr(0, 218);
  std::vector<double> values;
  for (int i = 0; i < 3 * rows; ++i) {
    const std::size_t at = 222 + 218 * static_cast<std::size_t>(i);
    if (at < bytes.size()) {
      const std::string part = bytes.substr(at, 218);
      buffer.replace(0, part.size(), part);
    }
    double value = 0;
    std::memcpy(&value, buffer.data(), sizeof(value));
    values.push_back(value);
  }
  return values;
}

TEST_F(ModelFiles, CutAnywhereTheRestIsWhatTheBufferLastHeld) {
  InsertRow(model, 1);
  InsertRow(model, 2);
  double value = 1.7e-3;
  for (ModelParam& param : model.rows) {
    param.value = value *= -3.1;
    param.useMin = 1;
    param.useMax = 1;
    param.coupling = 9;
  }
  Save("a.kvm");
  const std::string whole = folder.Read("a.kvm");
  const std::size_t rowsEnd = 222 + 654 * 3;
  Model& other = *CreateModel(tables.params);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    ClearRows(other);
    InsertRow(other, 0);
    Cell(other, 0, Wo).value = 4711;
    folder.Write("cut.kvm", whole.substr(0, size));
    const StatusCode status = LoadModel(other, folder.Path("cut.kvm")).Code();
    if (size < 222) {  // not even a count: the load fails and changes nothing
      EXPECT_EQ(status, StatusCode::kBadFormat) << size;
      ASSERT_EQ(RowCount(other), 1) << size;
      EXPECT_EQ(Cell(other, 0, Wo).value, 4711) << size;
      continue;
    }
    EXPECT_EQ(status, StatusCode::kOk) << size;
    ASSERT_EQ(RowCount(other), 3) << size;
    const std::vector<double> expected = ValuesOfACutFile(whole.substr(0, size), 3);
    for (std::size_t i = 0; i < 9; ++i) {
      const ModelParam& param = other.rows[i];
      EXPECT_EQ(std::bit_cast<std::uint64_t>(param.value), std::bit_cast<std::uint64_t>(expected[i]))
          << size << ' ' << i;
      const bool hasLimits = size >= rowsEnd + 4 + 12 * (i + 1);
      EXPECT_EQ(param.useMin + param.useMax + param.coupling, hasLimits ? 11u : 0u) << size << ' ' << i;
    }
  }
}

TEST_F(ModelFiles, HostileCountsNeitherHangNorFillTheMemory) {
  Save("a.kvm");
  std::string bytes = folder.Read("a.kvm");
  const auto start = std::chrono::steady_clock::now();
  for (const std::uint32_t count : {0x80000000u, 0xFFFFFFFFu, 0x7FFFFFFFu, 0x40000000u, 100000u, 0x01000000u}) {
    bytes.replace(218, 4, Bytes(count));
    folder.Write("b.kvm", bytes);
    EXPECT_TRUE(LoadModel(model, folder.Path("b.kvm")).Ok());
    EXPECT_LE(model.rows.capacity(), 30000u) << count;
    EXPECT_EQ(model.epsInf.value, 3);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(ModelFiles, ANegativeCountMakesNoRows) {
  folder.Write("a.kvm", Record(2, 0, 0, 0, 1, "") + Bytes(-5) + Bytes(1));
  ASSERT_TRUE(LoadModel(model, folder.Path("a.kvm")).Ok());
  EXPECT_EQ(RowCount(model), 0);
  EXPECT_EQ(model.epsInf.value, 2);
}

TEST_F(ModelFiles, BytesBehindTheEndAreNotRead) {
  Save("a.kvm");
  folder.Write("b.kvm", folder.Read("a.kvm") + std::string(1000, 'x'));
  Model& other = *CreateModel(tables.params);
  ASSERT_TRUE(LoadModel(other, folder.Path("b.kvm")).Ok());
  EXPECT_EQ(RowCount(other), 1);
  EXPECT_EQ(Cell(other, 0, G).coupling, 0u);
}

}  // namespace
}  // namespace kalvex
