// The fit window without a screen: what it shows and what its controls do. While it is closed, changes do not reach the
// fit's lists.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "fit/fit_state.h"
#include "session/session.h"
#include "windows/window_texts.h"

namespace kalvex {

struct Desk;

// The dialog "Add ChiSq term(s)": pairs of a dataset and a model, of which the user selects some.
struct CandidateLine {
  TermPair pair;
  std::string text;
  bool selected = false;
};
struct AddTermsDialog {
  bool open = false;
  std::size_t datasetChoice = 0;
  std::size_t modelChoice = 0;
  std::vector<CandidateLine> lines;  // the last candidate first
};

// The fields of the dialog "Fitting options" as texts and ticks.
struct FitOptionsForm {
  bool stopOnIterations = false, stopOnTime = false, stopOnReduction = false, stopOnOutOfRange = false,
       stopOnLambda = false, calcConfidence = false, logFit = false;
  std::string maxIterations, maxSeconds, reductionIterations, reductionAmount, maxLambda, deltaChiSq, singularDet,
      screenUpdateEvery, initialLambda;
};

struct FitWindow {
  bool open = false;
  int x = 100;
  int y = 160;
  int height = 282;
  bool wantsFront = false;  // a screen brings the window to the front, and clears this
  std::string foldButton = texts::kFoldAtStart;
  std::string weightText;          // the field for the weight of the selected terms
  std::vector<std::string> lines;  // one for each term
  std::set<int> selected;          // ids of the terms whose lines are selected
  int topLine = 0;                 // first line shown
  AddTermsDialog addTerms;
  bool optionsOpen = false;
  FitOptionsForm options;  // of the dialog, while it is open
};

// Opens the fit too. Changes elsewhere reach its lists from then on, until the window is closed.
void OpenFitWindow(Desk& desk);
// A run that is in progress is asked to stop.
void CloseFitWindow(Desk& desk);
// The window and its dialogs are no longer shown.
void HideFitWindow(FitWindow& window);

// Texts of the six value labels; the last three are empty unless a run is in progress.
struct FitLabels {
  std::string points, params, chiSq, change, iteration, seconds;
};
FitLabels FitLabelsOf(const FitState& fit);

// What the controls of the dialog "Fit" allow. During a run only the start button answers, and it stops the run.
struct FitControls {
  const char* startButton;
  bool undo, options, add, remove, weight;
  bool busyCursor;
};
FitControls FitControlsOf(const FitState& fit);

// [Quantity] "dataset" - "model", tab, weight, tab, ChiSq.
std::string TermLine(const Desk& desk, const ChiSqTerm& term);

// The lines of the list anew, as after each iteration of a run; the selection and the first line shown stay.
void RefreshTermLines(Desk& desk);
// A list that has become another one is filled from its first line, with nothing selected.
void FillTermLines(Desk& desk);

// The common weight of the selected terms with six digits; empty if they differ or none is selected.
void SelectionChanged(Desk& desk);
// A line of the list is selected or no longer; several can be at a time.
void SelectTermLine(Desk& desk, std::size_t line, bool selected);
void ScrollTermLines(FitWindow& window, int topLine);
// An edit of the weight field: a number, for every selected term. An empty text changes no term, nor does what the
// field shows already, since filling it is no edit.
void WeightEdited(Desk& desk, std::string_view text);
void RemoveSelectedTerms(Desk& desk);
// Grows a folded window, folds a grown one. The height tells which it is, whoever has set it.
void ToggleFold(FitWindow& window);
bool IsFolded(const FitWindow& window);

// The entries of the two drop-down lists: "All", then the names.
std::vector<std::string> DatasetChoices(const Desk& desk);
std::vector<std::string> ModelChoices(const Desk& desk);
// Offers all pairs that agree with the choices, which count those entries from 0.
void OfferCandidates(Desk& desk, std::size_t datasetChoice, std::size_t modelChoice);

// The dialog over the fit window: "Add " opens it with "All" against "All". "OK", or a double click in the list, puts
// the selected pairs at the end of the fit's list, but for those that it has already.
void OpenAddTerms(Desk& desk);
void AcceptAddTerms(Desk& desk);
void CancelAddTerms(Desk& desk);

// The "START" button: a run that Undo can take back; during a run it asks that run to stop.
void PressFitStart(Desk& desk);
// The "Undo" button: the values before the run, in all windows; a second press brings back those after it.
void PressFitUndo(Desk& desk);

FitOptionsForm FormOf(const FitOptions& options);
// Which fields can be edited: those whose check box is ticked. That of the rule for parameters out of range never can.
struct FitOptionsEnabled {
  bool maxIterations, maxSeconds, reductionIterations, reductionAmount, maxLambda, deltaChiSq, stopOnOutOfRange;
};
FitOptionsEnabled EnabledFieldsOf(const FitOptionsForm& form);
// Reads all fields, without a check of range; unreadable text reads as 0. StopOnOutOfRange stays.
void ReadForm(const FitOptionsForm& form, FitOptions& options);
// "Options" fills the form from the options, "OK" reads it back.
void OpenFitOptions(Desk& desk);
void AcceptFitOptions(Desk& desk);
void CancelFitOptions(Desk& desk);

}  // namespace kalvex
