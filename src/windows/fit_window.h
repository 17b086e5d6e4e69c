// The fit window without a screen: its contents and the actions of its controls. While it is closed, the fit's lists do
// not follow changes.
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

// The dialog "Add ChiSq term(s)": pairs of a dataset and a model. The user selects some of them.
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

// The fields of the dialog "Fitting options" as texts and check boxes.
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
  bool wantsFront = false;  // the screen brings the window to the front and clears this
  std::string foldButton = texts::kFoldAtStart;
  std::string weightText;          // the field for the weight of the selected terms
  std::vector<std::string> lines;  // one for each term
  std::set<int> selected;          // ids of the terms whose lines are selected
  int topLine = 0;                 // first line shown
  AddTermsDialog addTerms;
  bool optionsOpen = false;
  FitOptionsForm options;  // of the dialog, while it is open
};

// Opens the fit too. Its lists follow changes until the window is closed.
void OpenFitWindow(Desk& desk);
// Stops a run that is in progress.
void CloseFitWindow(Desk& desk);
// Hides the window and its dialogs.
void HideFitWindow(FitWindow& window);

// Texts of the six value labels; the last three are empty unless a run is in progress.
struct FitLabels {
  std::string points, params, chiSq, change, iteration, seconds;
};
FitLabels FitLabelsOf(const FitState& fit);

// Which controls of the dialog "Fit" are enabled. During a run only the start button is, and it stops the run.
struct FitControls {
  const char* startButton;
  bool undo, options, add, remove, weight;
  bool busyCursor;
};
FitControls FitControlsOf(const FitState& fit);

// [Quantity] "dataset" - "model", tab, weight, tab, ChiSq.
std::string TermLine(const Desk& desk, const ChiSqTerm& term);

// Rebuilds the lines of the list, for example after each iteration of a run. The selection and the first line shown
// stay.
void RefreshTermLines(Desk& desk);
// Fills the list after a change of the terms: from its first line, without a selection.
void FillTermLines(Desk& desk);

// The common weight of the selected terms with six digits; empty if they differ or none is selected.
void SelectionChanged(Desk& desk);
// Selects or deselects a line. Several lines can be selected.
void SelectTermLine(Desk& desk, std::size_t line, bool selected);
void ScrollTermLines(FitWindow& window, int topLine);
// An edit of the weight field: sets the weight of every selected term. An empty text changes nothing, and a text that
// the field already shows is not an edit.
void WeightEdited(Desk& desk, std::string_view text);
void RemoveSelectedTerms(Desk& desk);
// Collapses an expanded window, expands a collapsed one. The height of the window decides which it is.
void ToggleFold(FitWindow& window);
bool IsFolded(const FitWindow& window);

// The entries of the two drop-down lists: "All", then the names.
std::vector<std::string> DatasetChoices(const Desk& desk);
std::vector<std::string> ModelChoices(const Desk& desk);
// Offers all pairs that match the choices. The choices count the entries from 0.
void OfferCandidates(Desk& desk, std::size_t datasetChoice, std::size_t modelChoice);

// The dialog over the fit window: "Add " opens it with "All" and "All". "OK", or a double click in the list, appends
// the selected pairs to the fit's list, except those that it already has.
void OpenAddTerms(Desk& desk);
void AcceptAddTerms(Desk& desk);
void CancelAddTerms(Desk& desk);

// The "START" button: begins a run that "Undo" can undo. During a run it stops that run.
void PressFitStart(Desk& desk);
// The "Undo" button: restores the values before the run. A second press restores those after the run.
void PressFitUndo(Desk& desk);

FitOptionsForm FormOf(const FitOptions& options);
// Which fields are enabled: those whose check box is ticked. The field of the rule for parameters out of range is
// always disabled.
struct FitOptionsEnabled {
  bool maxIterations, maxSeconds, reductionIterations, reductionAmount, maxLambda, deltaChiSq, stopOnOutOfRange;
};
FitOptionsEnabled EnabledFieldsOf(const FitOptionsForm& form);
// Reads all fields without a check of their range. Unreadable text reads as 0. StopOnOutOfRange stays.
void ReadForm(const FitOptionsForm& form, FitOptions& options);
// "Options" fills the form from the options; "OK" reads it.
void OpenFitOptions(Desk& desk);
void AcceptFitOptions(Desk& desk);
void CancelFitOptions(Desk& desk);

}  // namespace kalvex
