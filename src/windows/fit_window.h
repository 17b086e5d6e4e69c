// The fit window without a screen: what it shows, what its controls do, and how it answers a change elsewhere. While it
// is closed, changes do not reach the fit's lists.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/notices.h"
#include "core/platform.h"
#include "datasets/dataset.h"
#include "evaluation/eval_context.h"
#include "fit/fit_state.h"
#include "fit/run_fit.h"
#include "windows/window_texts.h"

namespace kalvex {

// The dialog "Add ChiSq term(s)": pairs of a dataset and a model, of which the user selects some.
struct CandidateLine {
  int id = 0;  // of the candidate
  std::string text;
  bool selected = false;
};
struct AddTermsDialog {
  bool open = false;
  std::size_t datasetChoice = 0;
  std::size_t modelChoice = 0;
  ChiSqTermList candidates;
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

// Everything that the window works on.
struct FitDesk {
  FitWindow& window;
  FitState& fit;
  ParamTables& params;
  EvalContext& eval;
  const bool& autoScreenUpdate;
};

void OpenFitWindow(FitDesk desk);
// Changes elsewhere no longer reach the fit's lists. A run that is in progress is asked to stop.
void CloseFitWindow(FitDesk desk);
// Does nothing while the window is closed.
void AnswerFitNotice(FitDesk desk, FitNotice notice, std::uint32_t id);

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
std::string TermLine(const FitDesk& desk, const ChiSqTerm& term);

// The lines of the list, as they are after each iteration of a run too; the selection and the first line shown stay.
void RefreshTermLines(FitDesk desk);
// After terms were added, removed or weighted anew: the lists, ChiSq and the lines.
void RebuildAfterTermChange(FitDesk desk);

// AddChiSqTerm of the macro language: a term at the end of the list, for a dataset slot and a model number. False, with
// nothing done, if the slot or the model does not exist.
bool AddTerm(FitDesk desk, int datasetSlot, std::uint32_t modelNumber, std::optional<double> weight);
// DeleteChiSqTerm: the first term of the dataset in one slot and the model in the other, both from 1. False if no term
// matches; the lists are rebuilt all the same.
bool DeleteTerm(FitDesk desk, int datasetSlot, int modelSlot);

// The common weight of the selected terms with six digits; empty if they differ or none is selected.
void SelectionChanged(FitDesk desk);
// A line of the list is selected or no longer; several can be at a time.
void SelectTermLine(FitDesk desk, std::size_t line, bool selected);
void ScrollTermLines(FitWindow& window, int topLine);
// An edit of the weight field: a number, for every selected term. An empty text changes no term, nor does what the
// field shows already, since filling it is no edit.
void WeightEdited(FitDesk desk, std::string_view text);
void RemoveSelectedTerms(FitDesk desk);
// Grows a folded window, folds a grown one. The height tells which it is, whoever has set it.
void ToggleFold(FitWindow& window);
bool IsFolded(const FitWindow& window);

// The entries of the two drop-down lists: "All", then the names.
std::vector<std::string> DatasetChoices(const FitDesk& desk);
std::vector<std::string> ModelChoices(const FitDesk& desk);
// Offers all pairs that agree with the choices, which count those entries from 0.
void OfferCandidates(FitDesk desk, AddTermsDialog& dialog, std::size_t datasetChoice, std::size_t modelChoice);
// "OK", or a double click: the selected candidates go to the end of the fit's list, but for pairs that it has already.
void AddSelectedCandidates(FitDesk desk, AddTermsDialog& dialog);

// The dialog over the fit window: "Add " opens it with "All" against "All"; "OK" or a double click in the list adds.
void OpenAddTerms(FitDesk desk);
void AcceptAddTerms(FitDesk desk);
void CancelAddTerms(FitDesk desk);

// The "START" button: a run that Undo can take back; during a run it asks the run to stop.
int StartFit(FitDesk desk, Platform& platform, FitObserver& observer);
// Fit of the macro language: no Undo for all parameters, and with a number of iterations that one limit holds for this
// run.
int RunMacroFit(FitDesk desk, Platform& platform, FitObserver& observer, std::optional<int> iterations);
// The "Undo" button. The caller refreshes the model windows.
void PressUndo(FitDesk desk);
// Undo of the macro language: the last run, whoever started it.
void TakeBackLastRun(FitDesk desk);

FitOptionsForm FormOf(const FitOptions& options);
// Which fields can be edited: those whose check box is ticked. That of the rule for parameters out of range never can.
struct FitOptionsEnabled {
  bool maxIterations, maxSeconds, reductionIterations, reductionAmount, maxLambda, deltaChiSq, stopOnOutOfRange;
};
FitOptionsEnabled EnabledFieldsOf(const FitOptionsForm& form);
// Reads all fields, without a check of range; unreadable text reads as 0. StopOnOutOfRange stays.
void ReadForm(const FitOptionsForm& form, FitOptions& options);
// "Options" fills the form from the options, "OK" reads it back.
void OpenFitOptions(FitDesk desk);
void AcceptFitOptions(FitDesk desk);
void CancelFitOptions(FitDesk desk);

}  // namespace kalvex
