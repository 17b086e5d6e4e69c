#include "terms/term_table.h"

#include <algorithm>

#include "records/row_code.h"
#include "terms/boson_coupling.h"
#include "terms/carrier_terms.h"
#include "terms/coupled_terms.h"
#include "terms/factorised.h"
#include "terms/interband_terms.h"
#include "terms/simple_terms.h"
#include "terms/superconductor.h"

namespace kalvex {
namespace {

// Columns 1 and 2 of every row of the record, in the order of the ids.
constexpr int kAllColumns = -1;

constexpr TermRecord Record(int firstId, int nIds, std::span<const InputPair> inputs, TermCalc calc = nullptr,
                            ScalarCalc scalarCalc = nullptr) {
  TermRecord record;
  record.nIds = nIds;
  for (int i = 0; i < nIds; ++i) record.ids[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(firstId + i);
  record.nInputs = static_cast<int>(inputs.size());
  std::copy(inputs.begin(), inputs.end(), record.inputs.begin());
  record.calc = calc;
  record.scalarCalc = scalarCalc;
  return record;
}

// A record that reads its columns 1 and 2 row by row, the first nInputs of them.
constexpr TermRecord InOrder(int firstId, int nIds, int nInputs = kAllColumns, TermCalc calc = nullptr,
                             ScalarCalc scalarCalc = nullptr) {
  std::array<InputPair, kMaxTermInputs> inputs{};
  const int count = nInputs == kAllColumns ? 2 * nIds : nInputs;
  for (int i = 0; i < count; ++i) {
    inputs[static_cast<std::size_t>(i)] = {static_cast<std::int8_t>(i / 2), static_cast<std::int8_t>(1 + i % 2)};
  }
  return Record(firstId, nIds, std::span(inputs.data(), static_cast<std::size_t>(count)), calc, scalarCalc);
}

constexpr InputPair kBase[] = {{0, 1}};
constexpr InputPair kCrosswise[] = {{0, 1}, {1, 1}, {0, 2}, {1, 2}};
constexpr InputPair kThreeOfTwo[] = {{0, 1}, {0, 2}, {1, 2}};
constexpr InputPair kWeightWidthCentre[] = {{0, 1}, {0, 2}, {1, 1}};

constexpr std::int32_t kFactorCodes[] = {kNumeratorRow, kDenominatorRow};

constexpr std::array<TermRecord, kTermRecords> MakeTable() {
  std::array<TermRecord, kTermRecords> table{};
  table[0] = Record(1000, 1, kBase, CalcFactorised);
  table[0].factorCodes = kFactorCodes;
  table[1] = Record(1, 2, kCrosswise, CalcPair1);
  table[2] = Record(3, 2, kThreeOfTwo, CalcPair3);
  table[3] = Record(5, 2, kThreeOfTwo, CalcFamily5);
  table[4] = Record(11, 2, kThreeOfTwo, CalcFamily5);
  table[5] = Record(13, 2, kThreeOfTwo, CalcFamily5);
  table[6] = InOrder(20, 3, kAllColumns, CalcTwoFluidSuperconductor);
  table[7] = InOrder(7, 2, kAllColumns, CalcSuperconductorOfTc);
  table[8] = InOrder(23, 2, kAllColumns, CalcSuperconductorOfGap);
  table[9] = InOrder(9, 1, kAllColumns, CalcSingle9, ScalarSingle9);
  table[10] = InOrder(10, 1, kAllColumns, CalcSingle10);
  table[11] = InOrder(15, 1, kAllColumns, CalcSingle15);
  table[12] = Record(25, 2, kWeightWidthCentre, CalcFamily25, ScalarFamily25);
  table[13] = Record(29, 2, kWeightWidthCentre, CalcFamily25, ScalarFamily25);
  table[14] = InOrder(27, 2, kAllColumns, CalcPair27, ScalarPair27);
  table[15] = InOrder(31, 2, kAllColumns, CalcFamily31);
  table[16] = Record(33, 2, kCrosswise, CalcPair33);
  table[17] = Record(35, 2, kWeightWidthCentre, CalcFamily25, ScalarFamily25);
  table[18] = Record(37, 2, kWeightWidthCentre, CalcFamily25, ScalarFamily25);
  table[19] = Record(39, 2, kWeightWidthCentre, CalcFamily25, ScalarFamily25);
  table[20] = InOrder(41, 3, kAllColumns, CalcBosonCoupling);
  table[21] = InOrder(44, 3, kAllColumns, CalcBosonCoupling);
  table[22] = InOrder(47, 2, kAllColumns, CalcFamily47, ScalarFamily47);
  table[23] = InOrder(49, 2, kAllColumns, CalcFamily47, ScalarFamily47);
  table[24] = InOrder(51, 4, kAllColumns, CalcQuad51);
  table[25] = InOrder(55, 2, kAllColumns, CalcFamily55);
  table[26] = InOrder(57, 2, kAllColumns, CalcFamily55);
  table[27] = InOrder(59, 2, kAllColumns, CalcFamily55);
  table[28] = InOrder(61, 2, kAllColumns, CalcPair61);
  table[29] = InOrder(63, 2, kAllColumns, CalcPair63);
  table[30] = InOrder(65, 2, kAllColumns, CalcFamily31);
  table[31] = InOrder(67, 2, kAllColumns, CalcFamily31);
  table[32] = InOrder(69, 2, kAllColumns, CalcFamily31);
  table[33] = InOrder(71, 2, kAllColumns, CalcFamily31);
  table[34] = InOrder(80, 5, kAllColumns, CalcPenta80);
  table[35] = InOrder(90, 2, kAllColumns, CalcPair90);
  for (int i = 0; i < 20; ++i)
    table[static_cast<std::size_t>(36 + i)] = InOrder(100 + 2 * i, 2, kAllColumns, CalcFamily100, ScalarFamily100);
  table[56] = InOrder(140, 3, 5, CalcTriple140);
  for (int i = 0; i < 6; ++i)
    table[static_cast<std::size_t>(57 + i)] = InOrder(200 + 2 * i, 2, kAllColumns, CalcFamily200);
  table[63] = InOrder(220, 11, 16, CalcGauss220);
  table[63].replacesRealPart = true;
  table[64] = InOrder(240, 12, 18, CalcBands);
  table[65] = InOrder(260, 4, 7, CalcBands);
  table[66] = InOrder(270, 7, kAllColumns, CalcBands);
  table[67] = InOrder(287, 17, 31, CalcBands);
  table[68] = InOrder(60, 2, kAllColumns, CalcPair60);
  table[69] = InOrder(400, 22, 34, CalcBands);
  table[70] = InOrder(500, 13, kAllColumns, CalcBands);
  table[71] = InOrder(600, 41, kAllColumns, CalcBands);
  return table;
}

}  // namespace

constinit const std::array<TermRecord, kTermRecords> TermTable = MakeTable();

void ClearSlots(TermSlots& slots) {
  for (auto& record : slots.row) record.fill(kNoSlot);
}

void FillSlots(TermSlots& slots, std::int32_t code, int row) {
  for (std::size_t r = 0; r < TermTable.size(); ++r) {
    const auto ids = TermTable[r].Ids();
    for (std::size_t i = 0; i < ids.size(); ++i) {
      if (ids[i] == code) slots.row[r][i] = row;
    }
  }
}

bool IsComplete(const TermSlots& slots, int record) {
  const auto r = static_cast<std::size_t>(record);
  const auto first = slots.row[r].begin();
  return std::find(first, first + TermTable[r].nIds, kNoSlot) == first + TermTable[r].nIds;
}

}  // namespace kalvex
