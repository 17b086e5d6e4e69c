// The descriptions of terms for users: they are complete, and elements of the rows have their meaning.
#include "terms/describe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "records/model_rows.h"
#include "terms/every_record.h"

namespace kalvex {
namespace {

class Description : public EveryRecord {};

INSTANTIATE_TEST_SUITE_P(Table, Description, testing::ValuesIn(TermTable), NameOfCase);

bool IsAUnit(const std::string& unit) {
  static const std::set<std::string> units = {"",     "K",    "angstrom",   "cm-1",       "cm-1/2",
                                              "cm-2", "cm-3", "ohm-1 cm-1", "ohm-1 cm-2", "rad"};
  return units.contains(unit);
}

TEST_P(Description, TellsAllThatAUserReads) {
  const TermPage& page = record().page;
  EXPECT_STRNE(record().name, "");
  EXPECT_NE(record().calc, nullptr);
  for (const std::string text : {page.formula, page.source, page.limits}) EXPECT_FALSE(text.empty());
  EXPECT_NE(std::string(page.source).back(), '.');  // the page appends one
  EXPECT_EQ(std::string(page.limits).back(), '.');
  EXPECT_TRUE(page.causal || *page.causality) << "why not";
  EXPECT_LT(page.from, page.to);
  std::vector<TermCell> cells(record().inputs.begin(), record().inputs.end());
  for (const FactorRow& factor : record().factors) cells.insert(cells.end(), factor.cells, factor.cells + 2);
  EXPECT_FALSE(cells.empty());
  for (const TermCell& cell : cells) {
    EXPECT_STRNE(cell.meaning, "");
    EXPECT_TRUE(IsAUnit(cell.unit)) << cell.unit;
    EXPECT_TRUE(cell.use != TermUse::kNumber || cell.typical != 0) << cell.meaning;
  }
}

TEST_P(Description, GivesEachMeaningAndEachPlaceToOneInput) {
  std::set<std::string> meanings;
  std::set<std::pair<int, int>> places;
  for (const TermCell& cell : record().inputs) {
    EXPECT_TRUE(meanings.insert(MeaningOf(cell)).second) << MeaningOf(cell);
    EXPECT_TRUE(places.insert({cell.idIndex, cell.column}).second) << MeaningOf(cell);
  }
}

TEST_P(Description, IsFoundUnderEachOfItsCodes) {
  for (int code = record().firstId; code < record().firstId + record().nIds; ++code) {
    const TermRecord* const found = TermOfCode(code);
    ASSERT_NE(found, nullptr) << code;
    EXPECT_TRUE(found == &record() || (record().sharesCodes && found->HasId(code))) << code;
  }
}

TEST(TermOfCode, KnowsFactorRowsAndPrefersTheRecordThatBeginsWithTheCode) {
  EXPECT_EQ(TermOfCode(1001), &kFactorised);
  EXPECT_EQ(TermOfCode(1002), &kFactorised);
  EXPECT_EQ(TermOfCode(60), &kDiracStep);
  EXPECT_EQ(TermOfCode(61), &kInterference);
  for (const int code : {-1, 0, 16, 73, 999, 1003}) EXPECT_EQ(TermOfCode(code), nullptr) << code;
}

class Meanings : public testing::Test {
 protected:
  // A model with one row of that code, fixed or not.
  std::string At(double code, int column, bool held = true) {
    Model model;
    model.number = 1;
    InsertRow(model, 0);
    Cell(model, 0, Wo).value = -code;
    Cell(model, 0, Wo).adjustable = held ? 0 : 1;
    return TermMeaningAt(model, 0, column);
  }
};

TEST_F(Meanings, AreThoseOfTheRecord) {
  EXPECT_EQ(At(33, Wo), "Drude term with back-scattering");
  EXPECT_EQ(At(33, Wp), "plasma frequency Wp, cm-1");
  EXPECT_EQ(At(34, Wp), "share c of the velocity that a collision keeps");
  EXPECT_EQ(At(34, G), "rate G2 of the back-scattering, cm-1");
  EXPECT_EQ(At(604, G), "width G of line 3, cm-1");
}

TEST_F(Meanings, TellWhatIsNotUsedAndWhatNoTermHas) {
  EXPECT_EQ(At(26, G), "not used");
  EXPECT_EQ(At(999, Wp), "no term has the code 999");
}

TEST_F(Meanings, OfFactorRowsAndOfSharedCodes) {
  EXPECT_EQ(At(1001, G), "its width G', cm-1");
  EXPECT_EQ(At(60, Wp), "resonance W, cm-1; broadening B, cm-1");
  EXPECT_EQ(At(61, Wo), "interference of a resonance with a phase; interband step of a layer of Dirac electrons");
}

TEST_F(Meanings, OfAPlainRowAndOutsideTheRowsAreEmpty) {
  EXPECT_EQ(At(33, Wp, false), "");
  EXPECT_EQ(At(-100, Wp), "");
  EXPECT_EQ(At(33, 3), "");
  EXPECT_EQ(At(33, -1), "");
  EXPECT_EQ(TermMeaningAt(Model{}, 0, Wp), "");
}

}  // namespace
}  // namespace kalvex
