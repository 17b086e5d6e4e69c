#include "windows/fit_window.h"

#include <gtest/gtest.h>

#include <optional>

#include "windows/fit_windows.h"

namespace kalvex {
namespace {

TEST_F(FitWindows, LinesNameQuantityDatasetModelWeightAndSum) {
  Term(1, 2, 0.5);
  datasets.slots[0].points[0].y += 0.02;  // two sigma
  Rebuild();
  EXPECT_EQ(desk.fitWindow.lines, Texts{"[R] \"R.dat\" - \"M2\"\t0.5\t4"});
}

TEST_F(FitWindows, LabelsCountPointsAndParametersAndFillTheRestOnlyDuringARun) {
  Term(1, 1);
  FitLabels labels = FitLabelsOf(fit);
  EXPECT_EQ(labels.points, "60");
  EXPECT_EQ(labels.params, "4");
  EXPECT_EQ(labels.iteration + labels.change + labels.seconds, "");
  fit.FitRunning = true;
  fit.IterationCount = 5;
  fit.ElapsedSeconds = 3;
  fit.ChiSqChange = 0.25;
  fit.TotalChiSq = 1234567;
  labels = FitLabelsOf(fit);
  EXPECT_EQ(labels.iteration, "5");
  EXPECT_EQ(labels.seconds, "3");
  EXPECT_EQ(labels.change, "0.25");
  EXPECT_EQ(labels.chiSq, "1.23457e+06");
}

TEST_F(FitWindows, TheWeightFieldShowsTheCommonWeight) {
  Term(1, 1, 1);
  Term(1, 2, 2);
  Term(2, 2, 1);
  Select({});
  EXPECT_EQ(desk.fitWindow.weightText, "");
  Select({0, 2});
  EXPECT_EQ(desk.fitWindow.weightText, "1");
  Select({0, 1});
  EXPECT_EQ(desk.fitWindow.weightText, "");
  WeightEdited(desk, "3");
  EXPECT_EQ(terms()[0].weight, 3);
  EXPECT_EQ(terms()[1].weight, 3);
  EXPECT_EQ(terms()[2].weight, 1);
  WeightEdited(desk, "");
  EXPECT_EQ(terms()[0].weight, 3);
  WeightEdited(desk, "0");
  EXPECT_EQ(FitLabelsOf(fit).points, "60");
  Select({});
  WeightEdited(desk, "7");
  EXPECT_EQ(terms()[2].weight, 1);
}

TEST_F(FitWindows, TheFoldButtonHasItsTwoHeights) {
  FitWindow& window = desk.fitWindow;
  EXPECT_EQ(window.foldButton, "<< ChiSq details");
  ToggleFold(window);
  EXPECT_EQ(window.height, 139);
  EXPECT_EQ(window.foldButton, "ChiSq details >>");
  ToggleFold(window);
  EXPECT_EQ(window.height, 282);
  EXPECT_EQ(window.foldButton, "<< ChiSw details");
}

TEST_F(FitWindows, SelectedTermsAreRemoved) {
  Term(1, 1);
  Term(1, 2);
  Term(2, 2);
  Select({0, 2});
  RemoveSelectedTerms(desk);
  ASSERT_EQ(terms().size(), 1u);
  EXPECT_EQ(terms()[0].modelId, 2u);
  EXPECT_EQ(desk.fitWindow.lines.size(), 1u);
}

using Pairs = std::vector<std::pair<std::uint32_t, std::uint32_t>>;
Pairs PairsOf(const ChiSqTermList& list) {
  Pairs pairs;
  for (const ChiSqTerm& term : list.terms) pairs.emplace_back(term.datasetId, term.modelId);
  return pairs;
}

// The dialog "Add ChiSq term(s)" over the fit window.
class AddingTerms : public FitWindows {
 protected:
  AddingTerms() { OpenAddTerms(desk); }
  void Offer(std::size_t dataset, std::size_t ofModel) { OfferCandidates(desk, dataset, ofModel); }
  // The offered pairs, from the last line to the first: the order in which they are added.
  Pairs Offered() {
    Pairs pairs;
    std::transform(dialog.lines.rbegin(), dialog.lines.rend(), std::back_inserter(pairs),
                   [](const auto& line) { return std::pair(line.pair.datasetId, line.pair.model); });
    return pairs;
  }
  Texts Lines() {
    Texts texts;
    for (const CandidateLine& line : dialog.lines) texts.push_back(line.text);
    return texts;
  }
  void SelectAll() {
    for (CandidateLine& line : dialog.lines) line.selected = true;
  }
  Pairs Terms() { return PairsOf(fit.list); }

  AddTermsDialog& dialog = desk.fitWindow.addTerms;
};

TEST_F(AddingTerms, TheChoicesAreAllAndTheNames) {
  EXPECT_EQ(DatasetChoices(desk), (Texts{"All", "R.dat", "E1.dat"}));
  EXPECT_EQ(ModelChoices(desk), (Texts{"All", "M1", "M2", "M3"}));
}

TEST_F(AddingTerms, AllAgainstAllGoesByDatasetAndThenByModel) {
  EXPECT_EQ(Offered(), (Pairs{{1, 1}, {1, 2}, {1, 3}, {2, 1}, {2, 2}, {2, 3}}));
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
  for (std::size_t line = 0; line < 3; ++line) {
    EXPECT_EQ(dialog.lines[line].pair.datasetId, 1u);
    EXPECT_EQ(dialog.lines[line].pair.model, 3 - line);
  }
}

TEST_F(AddingTerms, ClosedModelsAndUnloadedDatasetsAreNoCandidates) {
  session.CloseModel(2).Ignore();
  session.UnloadDataset(1).Ignore();
  Offer(0, 0);
  EXPECT_EQ(Offered(), (Pairs{{2, 1}, {2, 3}}));
  session.UnloadDataset(2).Ignore();
  Offer(0, 0);
  EXPECT_EQ(Offered(), Pairs{});
  EXPECT_EQ(DatasetChoices(desk), Texts{"All"});
}

TEST_F(AddingTerms, OfferingCandidatesLeavesTheFitAlone) {
  Term(1, 1);
  fit.UndoAvailable = true;
  const int nextId = fit.nextTermId;
  Offer(0, 0);
  EXPECT_EQ(terms().size(), 1u);
  EXPECT_EQ(fit.nextTermId, nextId);
  EXPECT_TRUE(fit.UndoAvailable);
}

TEST_F(AddingTerms, OnlyTheSelectedOnesAreAddedBehindTheOthersInTheirOwnOrder) {
  Term(2, 3, 0.5);
  dialog.lines[1].selected = dialog.lines[4].selected = true;
  AcceptAddTerms(desk);
  EXPECT_EQ(Terms(), (Pairs{{2, 3}, {1, 2}, {2, 2}}));
  EXPECT_EQ(terms()[0].weight, 0.5);
  EXPECT_EQ(desk.fitWindow.lines.size(), 3u);
  EXPECT_EQ(FitLabelsOf(fit).points, "180");  // the lists belong to the new terms
}

TEST_F(AddingTerms, PairsThatAreThereAreSkipped) {
  Term(1, 2, 0.5);
  Term(2, 1, 0.25);
  SelectAll();
  AcceptAddTerms(desk);
  EXPECT_EQ(Terms(), (Pairs{{1, 2}, {2, 1}, {1, 1}, {1, 3}, {2, 2}, {2, 3}}));
  EXPECT_EQ(terms()[0].weight, 0.5);
  OpenAddTerms(desk);
  SelectAll();
  AcceptAddTerms(desk);
  EXPECT_EQ(terms().size(), 6u);
}

TEST_F(AddingTerms, WithNothingSelectedNothingIsAdded) {
  AcceptAddTerms(desk);
  EXPECT_TRUE(terms().empty());
  EXPECT_FALSE(dialog.open);
}

TEST_F(AddingTerms, AFreshListHasNoSelectionAndAnEmptyWeight) {
  Term(1, 1, 2);
  Select({0});
  desk.fitWindow.topLine = 1;
  SelectAll();
  AcceptAddTerms(desk);
  EXPECT_FALSE(IsSelected(0));
  EXPECT_EQ(desk.fitWindow.weightText, "");
  EXPECT_EQ(desk.fitWindow.topLine, 0);
}

TEST_F(FitWindows, LinesHaveSixDigitsAndFollowTheSum) {
  Term(2, 3, 1.0 / 3);
  for (DataRow& row : datasets.slots[1].points) row.y += 1234.5 * row.sigma;
  Rebuild();
  const double sum = 60 * 1234.5 * 1234.5;
  char expected[100];
  std::snprintf(expected, sizeof(expected), "[E1] \"E1.dat\" - \"M3\"\t0.333333\t%.6g", sum);
  EXPECT_EQ(desk.fitWindow.lines, Texts{expected});
}

TEST_F(FitWindows, ALineFollowsTheDatasetsQuantity) {
  Term(1, 1);
  datasets.slots[0].Quantity = kDefringed;
  RefreshTermLines(desk);
  EXPECT_TRUE(desk.fitWindow.lines[0].starts_with("[TT] \"R.dat\" - \"M1\"\t1\t"));
}

TEST_F(FitWindows, TheFirstLineShownAndTheSelectionStayThroughARefresh) {
  for (const std::uint32_t model : {1u, 2u, 3u}) Term(1, model);
  Select({1, 2});
  desk.fitWindow.topLine = 2;
  session.Recompute().Ignore();
  EXPECT_EQ(desk.fitWindow.topLine, 2);
  EXPECT_TRUE(!IsSelected(0) && IsSelected(1) && IsSelected(2));
  EXPECT_EQ(desk.fitWindow.weightText, "1");
  RemoveSelectedTerms(desk);
  EXPECT_EQ(desk.fitWindow.topLine, 0);
}

TEST_F(FitWindows, WithoutASelectionTheWeightFieldIsEmptyAndTypingChangesNothing) {
  Term(1, 1, 2);
  Select({});
  EXPECT_EQ(desk.fitWindow.weightText, "");
  WeightEdited(desk, "7");
  EXPECT_EQ(terms()[0].weight, 2);
}

TEST_F(FitWindows, AWeightIsReadAsFarAsItIsANumber) {
  Term(1, 1, 2);
  Select({0});
  EXPECT_EQ(desk.fitWindow.weightText, "2");
  WeightEdited(desk, "2.5e-1x");
  EXPECT_EQ(terms()[0].weight, 0.25);
  WeightEdited(desk, "-4");
  EXPECT_EQ(terms()[0].weight, -4);
  WeightEdited(desk, "words");
  EXPECT_EQ(terms()[0].weight, 0);
  EXPECT_EQ(FitLabelsOf(fit).points, "0");
  EXPECT_EQ(FitLabelsOf(fit).params, "0");
}

TEST_F(FitWindows, AWeightChangesChiSqAndEndsUndo) {
  Term(1, 1);
  model(1).epsInf.value = 5;
  Rebuild();
  const double before = fit.TotalChiSq;
  Select({0});
  fit.UndoAvailable = true;
  WeightEdited(desk, "3");
  EXPECT_DOUBLE_EQ(fit.TotalChiSq, 3 * before);
  EXPECT_FALSE(fit.UndoAvailable);
  EXPECT_TRUE(desk.fitWindow.lines[0].starts_with("[R] \"R.dat\" - \"M1\"\t3\t"));
}

TEST_F(FitWindows, AnEmptiedWeightStaysEmptyAndTheSameWeightCanBeTypedAgain) {
  Term(1, 1);
  Select({0});
  EXPECT_EQ(desk.fitWindow.weightText, "1");
  WeightEdited(desk, "");
  EXPECT_EQ(desk.fitWindow.weightText, "");
  EXPECT_EQ(terms()[0].weight, 1);
  terms()[0].weight = 5;
  WeightEdited(desk, "1");
  EXPECT_EQ(terms()[0].weight, 1);
}

TEST_F(FitWindows, AreFoldedByTheirHeight) {
  desk.fitWindow.height = 200;
  EXPECT_TRUE(IsFolded(desk.fitWindow));
  desk.fitWindow.height = 201;
  EXPECT_FALSE(IsFolded(desk.fitWindow));
}

TEST_F(FitWindows, TermsOfferedBeforeARunAreNotAddedDuringIt) {
  OpenAddTerms(desk);
  desk.fitWindow.addTerms.lines[0].selected = true;
  fit.FitRunning = true;
  AcceptAddTerms(desk);
  EXPECT_TRUE(terms().empty());
  fit.FitRunning = false;
  AcceptAddTerms(desk);
  EXPECT_EQ(terms().size(), 1u);
}

TEST_F(FitWindows, AnEmptyWeightIsNoEdit) {
  Term(1, 1, 2);
  Select({0});
  fit.UndoAvailable = true;
  WeightEdited(desk, "");
  EXPECT_EQ(terms()[0].weight, 2);
  EXPECT_TRUE(fit.UndoAvailable);
}

TEST_F(FitWindows, WithNothingSelectedNothingIsRemoved) {
  Term(1, 1);
  Term(1, 2);
  Select({});
  RemoveSelectedTerms(desk);
  EXPECT_EQ(terms().size(), 2u);
}

TEST_F(FitWindows, RemovingTermsRebuildsTheListsAndEmptiesTheWeightField) {
  Term(1, 1);
  Term(2, 2);
  Select({0});
  EXPECT_EQ(desk.fitWindow.weightText, "1");
  RemoveSelectedTerms(desk);
  EXPECT_EQ(FitLabelsOf(fit).points, "60");
  EXPECT_EQ(desk.fitWindow.lines, Texts{"[E1] \"E1.dat\" - \"M2\"\t1\t0"});
  EXPECT_EQ(desk.fitWindow.weightText, "");
}

TEST_F(FitWindows, TheFoldButtonGoesByTheHeight) {
  FitWindow& window = desk.fitWindow;
  window.height = 201;
  ToggleFold(window);
  EXPECT_EQ(window.height, 139);
  window.height = 200;
  ToggleFold(window);
  EXPECT_EQ(window.height, 282);
}

TEST_F(FitWindows, ATermIsAddedAtTheEndByTheModelsNumberAndDeletedByItsPlace) {
  session.CloseModel(1).Ignore();  // model 2 is still in place 2; place 1 is free
  ASSERT_EQ(*session.NewModel(), 4u);
  EXPECT_TRUE(session.AddTerm(1, 2, {}).Ok());
  EXPECT_TRUE(session.AddTerm(1, 4, 0.5).Ok());
  EXPECT_TRUE(session.AddTerm(1, 4, 0.25).Ok());  // a second time
  EXPECT_FALSE(session.AddTerm(1, 1, {}).Ok());
  EXPECT_FALSE(session.AddTerm(0, 2, {}).Ok());
  EXPECT_FALSE(session.AddTerm(101, 2, {}).Ok());
  EXPECT_EQ(PairsOf(fit.list), (Pairs{{1, 2}, {1, 4}, {1, 4}}));
  EXPECT_EQ(terms()[0].weight, 1);
  EXPECT_EQ(terms()[1].weight, 0.5);
  EXPECT_FALSE(session.DeleteTerm(1, 4).Ok());  // place 4 is free
  EXPECT_TRUE(session.DeleteTerm(1, 1).Ok());   // model 4 is in place 1; its first term is removed
  ASSERT_EQ(PairsOf(fit.list), (Pairs{{1, 2}, {1, 4}}));
  EXPECT_EQ(terms()[1].weight, 0.25);
}

TEST_F(FitWindows, DeletingATermThatIsNotThereRebuildsTheLists) {
  Term(1, 1);
  datasets.slots[0].lastActive = 9;
  fit.UndoAvailable = true;
  EXPECT_FALSE(session.DeleteTerm(2, 1).Ok());
  EXPECT_FALSE(session.DeleteTerm(1, 0).Ok());
  EXPECT_FALSE(session.DeleteTerm(1, 101).Ok());
  EXPECT_EQ(CountFitPoints(fit), 10u);
  EXPECT_FALSE(fit.UndoAvailable);
}

}  // namespace
}  // namespace kalvex
