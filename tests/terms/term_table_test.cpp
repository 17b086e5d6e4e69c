#include "terms/term_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "records/row_code.h"

namespace kalvex {
namespace {

// The expected content of each record: its first code, the number of codes, and its inputs as pairs of code index and
// column.
struct Row {
  int firstId;
  int nIds;
  std::string inputs;  // "01" is column 1 of the first id; "*n": the first n of the columns 1 and 2, row by row
};

const std::vector<Row>& ExpectedRows() {
  static const std::vector<Row> rows = [] {
    const std::string weightWidthCentre = "01 02 11", threeOfTwo = "01 02 12", crosswise = "01 11 02 12";
    std::vector<Row> r = {{1000, 1, "01"},
                          {1, 2, crosswise},
                          {3, 2, threeOfTwo},
                          {5, 2, threeOfTwo},
                          {11, 2, threeOfTwo},
                          {13, 2, threeOfTwo},
                          {20, 3, "*6"},
                          {7, 2, "*4"},
                          {23, 2, "*4"},
                          {9, 1, "*2"},
                          {10, 1, "*2"},
                          {15, 1, "*2"},
                          {25, 2, weightWidthCentre},
                          {29, 2, weightWidthCentre},
                          {27, 2, "*4"},
                          {31, 2, "*4"},
                          {33, 2, crosswise},
                          {35, 2, weightWidthCentre},
                          {37, 2, weightWidthCentre},
                          {39, 2, weightWidthCentre},
                          {41, 3, "*6"},
                          {44, 3, "*6"},
                          {47, 2, "*4"},
                          {49, 2, "*4"},
                          {51, 4, "*8"},
                          {55, 2, "*4"},
                          {57, 2, "*4"},
                          {59, 2, "*4"},
                          {61, 2, "*4"},
                          {63, 2, "*4"},
                          {65, 2, "*4"},
                          {67, 2, "*4"},
                          {69, 2, "*4"},
                          {71, 2, "*4"},
                          {80, 5, "*10"},
                          {90, 2, "*4"}};
    for (int i = 0; i < 20; ++i) r.push_back({100 + 2 * i, 2, "*4"});
    r.push_back({140, 3, "*5"});
    for (int i = 0; i < 6; ++i) r.push_back({200 + 2 * i, 2, "*4"});
    const std::vector<Row> last = {{220, 11, "*16"}, {240, 12, "*18"}, {260, 4, "*7"},
                                   {270, 7, "*14"},  {287, 17, "*31"}, {60, 2, "*4"},
                                   {400, 22, "*34"}, {500, 13, "*26"}, {600, 41, "*82"}};
    r.insert(r.end(), last.begin(), last.end());
    return r;
  }();
  return rows;
}

std::vector<std::pair<int, int>> Expanded(const std::string& inputs) {
  std::vector<std::pair<int, int>> pairs;
  if (inputs[0] == '*') {
    for (int i = 0; i < std::stoi(inputs.substr(1)); ++i) pairs.emplace_back(i / 2, 1 + i % 2);
    return pairs;
  }
  for (std::size_t at = 0; at < inputs.size(); at += 3) pairs.emplace_back(inputs[at] - '0', inputs[at + 1] - '0');
  return pairs;
}

TEST(TermTable, IdsAndInputsOfAll72RecordsAreAsListed) {
  ASSERT_EQ(ExpectedRows().size(), kTermRecords);
  for (std::size_t r = 0; r < kTermRecords; ++r) {
    const Row& expected = ExpectedRows()[r];
    const TermRecord& record = *TermTable[r];
    EXPECT_EQ(record.nIds, expected.nIds) << r;
    EXPECT_EQ(record.firstId, expected.firstId) << r;
    const auto inputs = Expanded(expected.inputs);
    ASSERT_EQ(record.inputs.size(), inputs.size()) << r;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
      EXPECT_EQ(record.inputs[i].idIndex, inputs[i].first) << r << ' ' << i;
      EXPECT_EQ(record.inputs[i].column, inputs[i].second) << r << ' ' << i;
    }
  }
}

TEST(TermTable, OnlyTheFactorisedRecordTakesFactorRowsAndOnlyOneReplacesTheRealPart) {
  for (const TermRecord* const record : TermTable) {
    EXPECT_EQ(record->factors.empty(), record->firstId != kBaseRow) << record->firstId;
    EXPECT_EQ(record->replacesRealPart, record->firstId == 220) << record->firstId;
  }
}

bool Overlap(const TermRecord& a, const TermRecord& b) {
  return a.firstId < b.firstId + b.nIds && b.firstId < a.firstId + a.nIds;
}

TEST(TermTable, ACodeStandsInOneRecordUnlessBothSayThatTheyShareIt) {
  for (const TermRecord* const a : TermTable) {
    const auto overlaps = std::count_if(std::begin(TermTable), std::end(TermTable),
                                        [&](const TermRecord* b) { return a != b && Overlap(*a, *b); });
    EXPECT_EQ(overlaps > 0, a->sharesCodes) << a->firstId;
    for (const FactorRow& factor : kFactorised.factors) EXPECT_FALSE(a->HasId(factor.code)) << a->firstId;
  }
}

// The file of a term's page and the command line identify a term by the first code of its record.
TEST(TermTable, NoTwoRecordsBeginWithTheSameCode) {
  std::set<int> first;
  for (const TermRecord* const record : TermTable) EXPECT_TRUE(first.insert(record->firstId).second) << record->firstId;
}

// The slots of the record with the given first code.
struct Slots : TermSlots {
  Slots() { ClearSlots(*this); }
  const auto& Of(int firstId) const {
    std::size_t r = 0;
    while (TermTable[r]->firstId != firstId) ++r;
    return row[r];
  }
  // First codes of the complete records, in the order of the table.
  std::vector<int> Complete() const {
    std::vector<int> complete;
    for (std::size_t r = 0; r < kTermRecords; ++r) {
      if (IsComplete(*this, r)) complete.push_back(TermTable[r]->firstId);
    }
    return complete;
  }
};

TEST(TermSlots, CodeNineAloneIsComplete) {
  Slots slots;
  FillSlots(slots, 9, 4);
  EXPECT_EQ(slots.Complete(), std::vector<int>{9});
  EXPECT_EQ(slots.Of(9)[0], 4);
}

TEST(TermSlots, OneOfTwoIsNotComplete) {
  Slots slots;
  FillSlots(slots, 1, 0);
  EXPECT_TRUE(slots.Complete().empty());
}

TEST(TermSlots, TheLaterRowOfACodeCounts) {
  Slots slots;
  FillSlots(slots, 9, 0);
  FillSlots(slots, 9, 7);
  EXPECT_EQ(slots.Of(9)[0], 7);
}

TEST(TermSlots, Codes60And61CompleteOnlyTheirOwnRecord) {
  Slots slots;
  FillSlots(slots, 60, 0);
  FillSlots(slots, 61, 1);
  EXPECT_EQ(slots.Complete(), std::vector<int>{60});
  EXPECT_EQ(slots.Of(59)[1], 0);
  EXPECT_EQ(slots.Of(61)[0], 1);
  FillSlots(slots, 59, 2);
  FillSlots(slots, 62, 3);
  EXPECT_EQ(slots.Complete(), (std::vector<int>{59, 61, 60}));
}

TEST(TermSlots, UnknownAndFactorCodesFillNothing) {
  Slots slots;
  for (const int code : {999, 1001, 1002, 73, 0, -5}) FillSlots(slots, code, 1);
  for (const auto& record : slots.row) {
    for (const int row : record) EXPECT_EQ(row, kNoSlot);
  }
}

}  // namespace
}  // namespace kalvex
