#include "windows/fit_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "windows/fit_windows.h"

namespace kalvex {
namespace {

TEST_F(FitWindows, LinesNameQuantityDatasetModelWeightAndSum) {
  s.Term(1, 2, 0.5);
  s.program.datasets.slots[0].points[0].y += 0.02;  // two sigma
  s.Rebuild();
  EXPECT_EQ(s.program.fitWindow.lines, Texts{"[R] \"R.dat\" - \"M2\"\t0.5\t4"});
}

TEST_F(FitWindows, LabelsCountPointsAndParametersAndFillTheRestOnlyDuringARun) {
  s.Term(1, 1);
  FitLabels labels = FitLabelsOf(s.fit());
  EXPECT_EQ(labels.points, "60");
  EXPECT_EQ(labels.params, "4");
  EXPECT_EQ(labels.iteration + labels.change + labels.seconds, "");
  s.fit().FitRunning = true;
  s.fit().IterationCount = 5;
  s.fit().ElapsedSeconds = 3;
  s.fit().ChiSqChange = 0.25;
  s.fit().TotalChiSq = 1234567;
  labels = FitLabelsOf(s.fit());
  EXPECT_EQ(labels.iteration, "5");
  EXPECT_EQ(labels.seconds, "3");
  EXPECT_EQ(labels.change, "0.25");
  EXPECT_EQ(labels.chiSq, "1.23457e+06");
}

TEST_F(FitWindows, TheWeightFieldShowsTheCommonWeight) {
  s.Term(1, 1, 1);
  s.Term(1, 2, 2);
  s.Term(2, 2, 1);
  Select({});
  EXPECT_EQ(s.program.fitWindow.weightText, "");
  Select({0, 2});
  EXPECT_EQ(s.program.fitWindow.weightText, "1");
  Select({0, 1});
  EXPECT_EQ(s.program.fitWindow.weightText, "");
  WeightEdited(desk(), "3");
  EXPECT_EQ(terms()[0].weight, 3);
  EXPECT_EQ(terms()[1].weight, 3);
  EXPECT_EQ(terms()[2].weight, 1);
  WeightEdited(desk(), "");
  EXPECT_EQ(terms()[0].weight, 3);
  WeightEdited(desk(), "0");
  EXPECT_EQ(FitLabelsOf(s.fit()).points, "60");
  Select({});
  WeightEdited(desk(), "7");
  EXPECT_EQ(terms()[2].weight, 1);
}

TEST_F(FitWindows, TheFoldButtonHasItsTwoHeights) {
  FitWindow& window = s.program.fitWindow;
  EXPECT_EQ(window.foldButton, "<< ChiSq details");
  ToggleFold(window);
  EXPECT_EQ(window.height, 139);
  EXPECT_EQ(window.foldButton, "ChiSq details >>");
  ToggleFold(window);
  EXPECT_EQ(window.height, 282);
  EXPECT_EQ(window.foldButton, "<< ChiSw details");
}

TEST_F(FitWindows, SelectedTermsAreRemoved) {
  s.Term(1, 1);
  s.Term(1, 2);
  s.Term(2, 2);
  Select({0, 2});
  RemoveSelectedTerms(desk());
  ASSERT_EQ(terms().size(), 1u);
  EXPECT_EQ(terms()[0].modelId, 2u);
  EXPECT_EQ(s.program.fitWindow.lines.size(), 1u);
}

using Pairs = std::vector<std::pair<std::uint32_t, std::uint32_t>>;
Pairs PairsOf(const ChiSqTermList& list) {
  Pairs pairs;
  for (const ChiSqTerm& term : list.terms) pairs.push_back({term.datasetId, term.modelId});
  return pairs;
}

// The dialog "Add ChiSq term(s)" over the fit window.
class AddingTerms : public FitWindows {
 protected:
  AddingTerms() { Offer(0, 0); }
  void Offer(std::size_t dataset, std::size_t model) { OfferCandidates(desk(), dialog, dataset, model); }
  Pairs Offered() { return PairsOf(dialog.candidates); }
  Texts Lines() {
    Texts texts;
    for (const CandidateLine& line : dialog.lines) texts.push_back(line.text);
    return texts;
  }
  void SelectAll() {
    for (CandidateLine& line : dialog.lines) line.selected = true;
  }
  Pairs Terms() { return PairsOf(s.fit().list); }

  AddTermsDialog dialog;
};

TEST_F(AddingTerms, TheChoicesAreAllAndTheNames) {
  EXPECT_EQ(DatasetChoices(desk()), (Texts{"All", "R.dat", "E1.dat"}));
  EXPECT_EQ(ModelChoices(desk()), (Texts{"All", "M1", "M2", "M3"}));
}

TEST_F(AddingTerms, AllAgainstAllGoesByDatasetAndThenByModel) {
  EXPECT_EQ(Offered(), (Pairs{{1, 1}, {1, 2}, {1, 3}, {2, 1}, {2, 2}, {2, 3}}));
  for (const ChiSqTerm& term : dialog.candidates.terms) EXPECT_EQ(term.weight, 1);
}

TEST_F(AddingTerms, AChoiceLeavesItsPairs) {
  Offer(2, 0);
  EXPECT_EQ(Offered(), (Pairs{{2, 1}, {2, 2}, {2, 3}}));
  Offer(0, 3);
  EXPECT_EQ(Offered(), (Pairs{{1, 3}, {2, 3}}));
  Offer(2, 3);
  EXPECT_EQ(Offered(), (Pairs{{2, 3}}));
  Offer(3, 0);
  EXPECT_EQ(Offered(), Pairs{});
}

TEST_F(AddingTerms, TheLastCandidateIsListedFirstAndEachLineKnowsItsOwn) {
  Offer(1, 0);
  EXPECT_EQ(Lines(), (Texts{"[R] \"R.dat\" - \"M3\"", "[R] \"R.dat\" - \"M2\"", "[R] \"R.dat\" - \"M1\""}));
  EXPECT_EQ(dialog.lines[0].id, dialog.candidates.terms[2].id);
  EXPECT_EQ(dialog.lines[2].id, dialog.candidates.terms[0].id);
}

TEST_F(AddingTerms, ClosedModelsAndUnloadedDatasetsAreNoCandidates) {
  CloseModel(s.program, 2);
  UnloadDataset(s.program.datasets.slots[0]);
  Offer(0, 0);
  EXPECT_EQ(Offered(), (Pairs{{2, 1}, {2, 3}}));
  UnloadDataset(s.program.datasets.slots[1]);
  Offer(0, 0);
  EXPECT_EQ(Offered(), Pairs{});
  EXPECT_EQ(DatasetChoices(desk()), Texts{"All"});
}

TEST_F(AddingTerms, EachCandidateHasANumberOfItsOwn) {
  s.Term(1, 1);
  std::vector<int> ids{terms()[0].id};
  for (int time = 0; time < 2; ++time) {
    for (const ChiSqTerm& term : dialog.candidates.terms) ids.push_back(term.id);
    Offer(0, 0);
  }
  std::sort(ids.begin(), ids.end());
  EXPECT_EQ(std::adjacent_find(ids.begin(), ids.end()), ids.end());
}

TEST_F(AddingTerms, OfferingCandidatesLeavesTheFitAlone) {
  s.Term(1, 1);
  s.fit().UndoAvailable = true;
  Offer(0, 0);
  EXPECT_EQ(terms().size(), 1u);
  EXPECT_TRUE(s.fit().UndoAvailable);
}

TEST_F(AddingTerms, OnlyTheSelectedOnesAreAddedBehindTheOthersInTheirOwnOrder) {
  s.Term(2, 3, 0.5);
  dialog.lines[1].selected = dialog.lines[4].selected = true;
  AddSelectedCandidates(desk(), dialog);
  EXPECT_EQ(Offered(), (Pairs{{1, 2}, {2, 2}}));  // the others have left the list of candidates
  EXPECT_EQ(Terms(), (Pairs{{2, 3}, {1, 2}, {2, 2}}));
  EXPECT_EQ(terms()[0].weight, 0.5);
  EXPECT_EQ(s.program.fitWindow.lines.size(), 3u);
  EXPECT_EQ(FitLabelsOf(s.fit()).points, "180");  // the lists are those of the new terms
}

TEST_F(AddingTerms, PairsThatAreThereAreSkipped) {
  s.Term(1, 2, 0.5);
  s.Term(2, 1, 0.25);
  SelectAll();
  AddSelectedCandidates(desk(), dialog);
  EXPECT_EQ(Terms(), (Pairs{{1, 2}, {2, 1}, {1, 1}, {1, 3}, {2, 2}, {2, 3}}));
  EXPECT_EQ(terms()[0].weight, 0.5);
  AddSelectedCandidates(desk(), dialog);
  EXPECT_EQ(terms().size(), 6u);
}

TEST_F(AddingTerms, WithNothingSelectedNothingIsAdded) {
  AddSelectedCandidates(desk(), dialog);
  EXPECT_TRUE(terms().empty());
  EXPECT_TRUE(dialog.candidates.terms.empty());
}

TEST_F(AddingTerms, AFreshListHasNoSelectionAndAnEmptyWeight) {
  s.Term(1, 1, 2);
  Select({0});
  s.program.fitWindow.topLine = 1;
  SelectAll();
  AddSelectedCandidates(desk(), dialog);
  EXPECT_FALSE(terms()[0].selected);
  EXPECT_EQ(s.program.fitWindow.weightText, "");
  EXPECT_EQ(s.program.fitWindow.topLine, 0);
}

TEST_F(FitWindows, LinesHaveSixDigitsAndFollowTheSum) {
  s.Term(2, 3, 1.0 / 3);
  for (DataRow& row : s.program.datasets.slots[1].points) row.y += 1234.5 * row.sigma;
  s.Rebuild();
  const double sum = 60 * 1234.5 * 1234.5;
  char expected[100];
  std::snprintf(expected, sizeof(expected), "[E1] \"E1.dat\" - \"M3\"\t0.333333\t%.6g", sum);
  EXPECT_EQ(s.program.fitWindow.lines, Texts{expected});
}

TEST_F(FitWindows, ALineFollowsTheDatasetsQuantity) {
  s.Term(1, 1);
  s.program.datasets.slots[0].Quantity = kDefringed;
  RefreshTermLines(desk());
  EXPECT_TRUE(s.program.fitWindow.lines[0].starts_with("[TT] \"R.dat\" - \"M1\"\t1\t"));
}

TEST_F(FitWindows, TheFirstLineShownAndTheSelectionStayThroughARefresh) {
  for (const std::uint32_t model : {1u, 2u, 3u}) s.Term(1, model);
  Select({1, 2});
  s.program.fitWindow.topLine = 2;
  NotifyFit(s.program.notices, FitNotice::kRecompute);
  EXPECT_EQ(s.program.fitWindow.topLine, 2);
  EXPECT_TRUE(!terms()[0].selected && terms()[1].selected && terms()[2].selected);
  EXPECT_EQ(s.program.fitWindow.weightText, "1");
  RemoveSelectedTerms(desk());
  EXPECT_EQ(s.program.fitWindow.topLine, 0);
}

TEST_F(FitWindows, WithoutASelectionTheWeightFieldIsEmptyAndTypingChangesNothing) {
  s.Term(1, 1, 2);
  Select({});
  EXPECT_EQ(s.program.fitWindow.weightText, "");
  WeightEdited(desk(), "7");
  EXPECT_EQ(terms()[0].weight, 2);
}

TEST_F(FitWindows, AWeightIsReadAsFarAsItIsANumber) {
  s.Term(1, 1, 2);
  Select({0});
  EXPECT_EQ(s.program.fitWindow.weightText, "2");
  WeightEdited(desk(), "2.5e-1x");
  EXPECT_EQ(terms()[0].weight, 0.25);
  WeightEdited(desk(), "-4");
  EXPECT_EQ(terms()[0].weight, -4);
  WeightEdited(desk(), "words");
  EXPECT_EQ(terms()[0].weight, 0);
  EXPECT_EQ(FitLabelsOf(s.fit()).points, "0");
  EXPECT_EQ(FitLabelsOf(s.fit()).params, "0");
}

TEST_F(FitWindows, AWeightChangesChiSqAndEndsUndo) {
  s.Term(1, 1);
  s.model(1).epsInf.value = 5;
  s.Rebuild();
  const double before = s.fit().TotalChiSq;
  Select({0});
  s.fit().UndoAvailable = true;
  WeightEdited(desk(), "3");
  EXPECT_DOUBLE_EQ(s.fit().TotalChiSq, 3 * before);
  EXPECT_FALSE(s.fit().UndoAvailable);
  EXPECT_TRUE(s.program.fitWindow.lines[0].starts_with("[R] \"R.dat\" - \"M1\"\t3\t"));
}

TEST_F(FitWindows, AnEmptiedWeightStaysEmptyAndTheSameWeightCanBeTypedAgain) {
  s.Term(1, 1);
  Select({0});
  EXPECT_EQ(desk().window.weightText, "1");
  WeightEdited(desk(), "");
  EXPECT_EQ(desk().window.weightText, "");
  EXPECT_EQ(terms()[0].weight, 1);
  terms()[0].weight = 5;
  WeightEdited(desk(), "1");
  EXPECT_EQ(terms()[0].weight, 1);
}

TEST_F(FitWindows, AreFoldedByTheirHeight) {
  desk().window.height = 200;
  EXPECT_TRUE(IsFolded(desk().window));
  desk().window.height = 201;
  EXPECT_FALSE(IsFolded(desk().window));
}

TEST_F(FitWindows, TermsOfferedBeforeARunAreNotAddedDuringIt) {
  OpenAddTerms(desk());
  desk().window.addTerms.lines[0].selected = true;
  s.fit().FitRunning = true;
  AcceptAddTerms(desk());
  EXPECT_TRUE(terms().empty());
  s.fit().FitRunning = false;
  AcceptAddTerms(desk());
  EXPECT_EQ(terms().size(), 1u);
}

TEST_F(FitWindows, AnEmptyWeightIsNoEdit) {
  s.Term(1, 1, 2);
  Select({0});
  s.fit().UndoAvailable = true;
  WeightEdited(desk(), "");
  EXPECT_EQ(terms()[0].weight, 2);
  EXPECT_TRUE(s.fit().UndoAvailable);
}

TEST_F(FitWindows, WithNothingSelectedNothingIsRemoved) {
  s.Term(1, 1);
  s.Term(1, 2);
  Select({});
  RemoveSelectedTerms(desk());
  EXPECT_EQ(terms().size(), 2u);
}

TEST_F(FitWindows, RemovingTermsRebuildsTheListsAndEmptiesTheWeightField) {
  s.Term(1, 1);
  s.Term(2, 2);
  Select({0});
  EXPECT_EQ(s.program.fitWindow.weightText, "1");
  RemoveSelectedTerms(desk());
  EXPECT_EQ(FitLabelsOf(s.fit()).points, "60");
  EXPECT_EQ(s.program.fitWindow.lines, Texts{"[E1] \"E1.dat\" - \"M2\"\t1\t0"});
  EXPECT_EQ(s.program.fitWindow.weightText, "");
}

TEST_F(FitWindows, TheFoldButtonGoesByTheHeight) {
  FitWindow& window = s.program.fitWindow;
  window.height = 201;
  ToggleFold(window);
  EXPECT_EQ(window.height, 139);
  window.height = 200;
  ToggleFold(window);
  EXPECT_EQ(window.height, 282);
}

TEST_F(FitWindows, ATermIsAddedAtTheEndByTheModelsNumberAndDeletedByItsPlace) {
  CloseModel(s.program, 1);  // model 2 stands in place 2 still, place 1 is free
  Model& fresh = *CreateModel(s.program.params);
  ASSERT_EQ(fresh.number, 4u);
  EXPECT_TRUE(AddTerm(desk(), 1, 2, {}));
  EXPECT_TRUE(AddTerm(desk(), 1, 4, 0.5));
  EXPECT_TRUE(AddTerm(desk(), 1, 4, 0.25));  // a second time
  EXPECT_FALSE(AddTerm(desk(), 1, 1, {}));
  EXPECT_FALSE(AddTerm(desk(), 0, 2, {}));
  EXPECT_FALSE(AddTerm(desk(), 101, 2, {}));
  EXPECT_EQ(PairsOf(s.fit().list), (Pairs{{1, 2}, {1, 4}, {1, 4}}));
  EXPECT_EQ(terms()[0].weight, 1);
  EXPECT_EQ(terms()[1].weight, 0.5);
  EXPECT_FALSE(DeleteTerm(desk(), 1, 4));  // place 4 is free
  EXPECT_TRUE(DeleteTerm(desk(), 1, 1));   // model 4 stands in place 1; its first term goes
  ASSERT_EQ(PairsOf(s.fit().list), (Pairs{{1, 2}, {1, 4}}));
  EXPECT_EQ(terms()[1].weight, 0.25);
}

TEST_F(FitWindows, DeletingATermThatIsNotThereRebuildsTheLists) {
  s.Term(1, 1);
  s.program.datasets.slots[0].lastActive = 9;
  s.fit().UndoAvailable = true;
  EXPECT_FALSE(DeleteTerm(desk(), 2, 1));
  EXPECT_FALSE(DeleteTerm(desk(), 1, 0));
  EXPECT_FALSE(DeleteTerm(desk(), 1, 101));
  EXPECT_EQ(CountFitPoints(s.fit()), 10u);
  EXPECT_FALSE(s.fit().UndoAvailable);
}

}  // namespace
}  // namespace kalvex
