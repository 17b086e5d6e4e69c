#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "fit/param_places.h"
#include "fit/sample_fit.h"
#include "records/param_value.h"

namespace kalvex {
namespace {

TEST(FitParams, AreListedByKindAndPlaceAndOnlyIfTheyMatter) {
  SampleFit s;
  s.AddModel(3, 100, 200, 10);
  Model& b = s.AddModel(3, 100, 200, 10);
  Cell(b, 0, Wp).adjustable = 0;
  s.tables.params.ExpParams[kScalingFactorOfR].adjustable = 1;
  s.tables.params.ExpParams[kSampleThickness].adjustable = 1;  // R does not depend on it
  s.Measure(1, b, kRefl);
  s.Term(1, 2);
  EXPECT_EQ(Places(s.fit()), (Texts{"EIN 100000", "LOR 100000", "LOR 102000", "EXP 000400"}));
  EXPECT_EQ(s.fit().NumFitParams, 4);
  EXPECT_EQ(s.fit().NumFreeParams, 4);
  s.Measure(2, s.model(1), kE2);
  s.Term(2, 1);
  // E2 does not depend on Einf of model 1. Each term depends on its own parameters.
  EXPECT_EQ(Places(s.fit()),
            (Texts{"EIN 100000", "LOR 000000", "LOR 001000", "LOR 002000", "LOR 100000", "LOR 102000", "EXP 000400"}));
  EXPECT_EQ(s.fit().list.terms[0].params.Get(), (std::vector<int>{0, 4, 5, 6}));
  EXPECT_EQ(s.fit().list.terms[1].params.Get(), (std::vector<int>{1, 2, 3}));
}

TEST(FitParams, OfAMeshTheImaginaryPartsComeFirstAndTheRealOnesOnlyIfFree) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  FixAll(a, true);
  a.vdf.On = 1;
  a.vdf.mesh.resize(3);
  for (std::size_t i = 0; i < 3; ++i) {
    a.vdf.mesh[i].x = 50 + 50.0 * static_cast<double>(i);
    a.vdf.mesh[i].e1.adjustable = a.vdf.mesh[i].e2.adjustable = 1;
  }
  s.Measure(1, a, kRefl);
  s.Term(1, 1);
  EXPECT_EQ(Places(s.fit()),
            (Texts{"ESH 000000", "ESH 000001", "ESH 000010", "ESH 000011", "ESH 000020", "ESH 000021"}));
  a.vdf.KK = 1;
  s.Rebuild();
  EXPECT_EQ(Places(s.fit()), (Texts{"ESH 000011"}));  // the ends have no triangle
}

TEST(FitParams, ACoupledPairIsOneUnknown) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  InsertRow(a, 1);
  SetCoupling(s.tables.params, Cell(a, 0, G), 1);
  SetCoupling(s.tables.params, Cell(a, 1, G), 1);
  s.Measure(1, a, kRefl);
  s.Term(1, 1);
  EXPECT_EQ(s.fit().NumFitParams, 7);
  EXPECT_EQ(s.fit().NumFreeParams, 6);
  EXPECT_EQ(Places(s.fit()).back(), "LOR 012000");
  EXPECT_EQ(Places(s.fit())[static_cast<std::size_t>(s.fit().params.back().master)], "LOR 002000");
}

TEST(FitParams, TheFirstUsedMemberOfAGroupIsItsMaster) {
  SampleFit s;
  Model& idle = s.AddModel(3, 100, 200, 10);
  Model& busy = s.AddModel(3, 100, 200, 10);
  SetCoupling(s.tables.params, Cell(idle, 0, G), 1);
  SetCoupling(s.tables.params, Cell(busy, 0, G), 1);
  s.Measure(1, busy, kRefl);
  s.Term(1, 2);
  EXPECT_EQ(s.fit().NumFitParams, 4);
  EXPECT_EQ(s.fit().NumFreeParams, 4);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(s.fit().params[static_cast<std::size_t>(i)].master, i);
}

TEST(FitParams, ARebuildEndsUndo) {
  SampleFit s;
  s.fit().UndoAvailable = s.fit().startValuesStored = true;
  s.Rebuild();
  EXPECT_FALSE(s.fit().UndoAvailable);
  EXPECT_FALSE(s.fit().startValuesStored);
}

// A model with only a free mesh of three points at 50, 100 and 150 cm-1.
Model& AddMeshModel(SampleFit& s) {
  Model& made = s.AddModel(3, 100, 200, 10);
  FixAll(made, true);
  made.vdf.On = 1;
  made.vdf.mesh.resize(3);
  for (std::size_t i = 0; i < 3; ++i) {
    made.vdf.mesh[i].x = 50 + 50.0 * static_cast<double>(i);
    made.vdf.mesh[i].e1.adjustable = made.vdf.mesh[i].e2.adjustable = 1;
  }
  return made;
}

TEST(FitParams, OfTwoMeshesStandPointByPoint) {
  SampleFit s;
  Model& a = AddMeshModel(s);
  Model& b = AddMeshModel(s);
  b.vdf.KK = 1;
  s.Measure(1, a, kRefl);
  s.Term(1, 2);
  s.Term(1, 1);
  EXPECT_EQ(Places(s.fit()),
            (Texts{"ESH 000000", "ESH 000001", "ESH 000010", "ESH 000011", "ESH 100011", "ESH 000020", "ESH 000021"}));
}

TEST(FitParams, OfAMeshThatIsOffAreNone) {
  SampleFit s;
  Model& a = AddMeshModel(s);
  a.vdf.On = 0;
  s.Measure(1, a, kRefl);
  s.Term(1, 1);
  EXPECT_EQ(s.fit().NumFitParams, 0);
}

TEST(FitParams, OfAllKindsFollowEachOther) {
  SampleFit s;
  Model& a = AddMeshModel(s);
  a.epsInf.adjustable = Cell(a, 0, G).adjustable = 1;
  a.vdf.mesh[0].e1.adjustable = a.vdf.mesh[2].e2.adjustable = 0;
  s.tables.params.ExpParams[kAngleOfIncidence].adjustable = 1;
  s.tables.params.ExpParams[kScalingFactorOfR].adjustable = 1;
  s.Measure(1, a, kRp);
  s.Term(1, 1);
  EXPECT_EQ(Places(s.fit()), (Texts{"EIN 000000", "LOR 002000", "ESH 000001", "ESH 000010", "ESH 000011", "ESH 000020",
                                    "EXP 000200", "EXP 000400"}));
}

TEST(FitParams, LeadToTheParametersThemselves) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.tables.params.ExpParams[kScalingFactorOfR].adjustable = 1;
  s.Measure(1, a, kRefl);
  s.Term(1, 1);
  ASSERT_EQ(s.fit().params.size(), 5u);
  const FitCells cells = s.Cells();
  EXPECT_EQ(cells[0], &a.epsInf);
  EXPECT_EQ(cells[2], &Cell(a, 0, Wp));
  EXPECT_EQ(cells[4], &s.tables.params.ExpParams[kScalingFactorOfR]);
  EXPECT_EQ(s.fit().params[2].modelNumber, a.number);
  EXPECT_EQ(s.fit().params[4].modelNumber, 0u);
  for (const FitParam& param : s.fit().params) EXPECT_TRUE(param.used && param.isMaster);
}

TEST(FitParams, KnowTheTermsThatTheyInfluence) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  Model& b = s.AddModel(3, 100, 200, 10);
  for (Model* const model : {&a, &b}) {
    FixAll(*model, true);
    model->epsInf.adjustable = Cell(*model, 0, Wp).adjustable = 1;
  }
  s.Measure(1, a, kE1);
  s.Measure(2, a, kE2);  // independent of the constant
  s.Term(1, 1);
  s.Term(2, 1);
  s.Term(1, 2, 0);
  s.Term(2, 2);
  const FitState& fit = s.fit();
  ASSERT_EQ(Places(fit), (Texts{"EIN 000000", "LOR 001000", "LOR 101000"}));
  EXPECT_EQ(fit.list.terms[0].params.Get(), (std::vector<int>{0, 1}));
  EXPECT_EQ(fit.list.terms[1].params.Get(), std::vector<int>{1});
  EXPECT_EQ(fit.list.terms[2].params.Get(), std::vector<int>{});
  EXPECT_EQ(fit.list.terms[3].params.Get(), std::vector<int>{2});
}

TEST(FitParams, ThatOnlyATermOfWeightZeroKnowsAreDropped) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kE1);
  s.Measure(2, a, kE2);
  s.Term(1, 1, 0);
  s.Term(2, 1);
  EXPECT_EQ(Places(s.fit()), (Texts{"LOR 000000", "LOR 001000", "LOR 002000"}));
}

TEST(FitParams, WithNothingAdjustableAreNone) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl);
  s.Term(1, 1);
  FixAll(a, true);
  s.Rebuild();
  EXPECT_EQ(s.fit().NumFitParams + s.fit().NumFreeParams, 0);
  EXPECT_TRUE(s.fit().params.empty());
}

// Puts the parameters into one group, all of them adjustable.
void Couple(SampleFit& s, std::initializer_list<ModelParam*> members, int group) {
  for (ModelParam* const member : members) {
    member->adjustable = 1;
    SetCoupling(s.tables.params, *member, group);
  }
}

TEST(Coupling, TheMasterIsTheFirstInTheOrderOfTheTableAndNotOfTheList) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  Model& b = s.AddModel(3, 100, 200, 10);
  FixAll(a, true);
  FixAll(b, true);
  Couple(s, {&Cell(a, 0, G), &b.epsInf, &s.tables.params.ExpParams[kScalingFactorOfR]}, 3);
  Cell(b, 0, Wp).adjustable = 1;
  s.Measure(1, a, kRefl);
  s.Term(1, 1);
  s.Term(1, 2);
  // The row of model 1 comes before epsInf of model 2, though that kind is listed first.
  EXPECT_EQ(Places(s.fit()), (Texts{"LOR 002000", "LOR 101000", "EIN 100000", "EXP 000400"}));
  EXPECT_EQ(s.fit().NumFitParams, 4);
  EXPECT_EQ(s.fit().NumFreeParams, 2);
  EXPECT_EQ(s.fit().params[2].master, 0);
  EXPECT_EQ(s.fit().params[3].master, 0);
}

TEST(Coupling, APairCountsAsOneFreeParameter) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  InsertRow(a, 1);
  FixAll(a, true);
  Couple(s, {&Cell(a, 0, G), &Cell(a, 1, G)}, 1);
  s.Measure(1, a, kRefl);
  s.Term(1, 1);
  EXPECT_EQ(s.fit().NumFitParams, 2);
  EXPECT_EQ(s.fit().NumFreeParams, 1);
}

TEST(Coupling, AfterAnUnusedFirstMemberTheNextUsedOneLeadsTheOthers) {
  SampleFit s;
  Model& idle = s.AddModel(3, 100, 200, 10);
  Model& busy = s.AddModel(3, 100, 200, 10);
  InsertRow(busy, 1);
  FixAll(idle, true);
  FixAll(busy, true);
  Couple(s, {&Cell(idle, 0, G), &Cell(busy, 0, G), &Cell(busy, 1, G)}, 24);
  Cell(busy, 1, Wo).adjustable = 1;
  s.Measure(1, busy, kRefl);
  s.Term(1, 2);
  EXPECT_EQ(Places(s.fit()), (Texts{"LOR 102000", "LOR 110000", "LOR 112000"}));
  EXPECT_EQ(s.fit().NumFreeParams, 2);
  EXPECT_EQ(s.fit().params[2].master, 0);
  EXPECT_FALSE(s.fit().params[2].isMaster);
}

TEST(Coupling, TwoGroupsHaveTheirOwnMasters) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  InsertRow(a, 1);
  FixAll(a, true);
  Couple(s, {&Cell(a, 0, Wp), &Cell(a, 1, Wp)}, 2);
  Couple(s, {&Cell(a, 0, G), &Cell(a, 1, G)}, 1);
  s.Measure(1, a, kRefl);
  s.Term(1, 1);
  ASSERT_EQ(Places(s.fit()), (Texts{"LOR 001000", "LOR 002000", "LOR 011000", "LOR 012000"}));
  EXPECT_EQ(s.fit().params[2].master, 0);
  EXPECT_EQ(s.fit().params[3].master, 1);
}

}  // namespace
}  // namespace kalvex
