#include "windows/fit_window.h"

#include <algorithm>

#include "core/text.h"
#include "fit/fit_lists.h"
#include "records/model_table.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kUnfoldedHeight = 282, kFoldedHeight = 139, kFoldThreshold = 201;

void AfterDatasetChange(FitDesk desk) {
  RebuildFitParams(desk.fit, desk.params, desk.eval);
  RebuildFitPoints(desk.fit, *desk.eval.datasets);
  ComputeChiSq(desk.fit, desk.eval);
  RefreshTermLines(desk);
}

void AfterParamChange(FitDesk desk, bool compute) {
  RebuildFitParams(desk.fit, desk.params, desk.eval);
  if (compute) ComputeChiSq(desk.fit, desk.eval);
  RefreshTermLines(desk);
}

std::string PairText(const FitDesk& desk, const ChiSqTerm& term) {
  const Dataset* const dataset = GetDatasetById(*desk.eval.datasets, term.datasetId);
  const Model* const model = GetModelByNumber(desk.params, term.modelId);
  std::string text = "[";
  text += kQuantityNames[static_cast<std::size_t>(dataset ? dataset->Quantity : 0)].shortName;
  text += "] \"" + (dataset ? dataset->name : "") + "\" - \"" + (model ? model->name : "") + "\"";
  return text;
}

// A list of terms that has become another one is filled from its first line, with nothing selected.
void FillTermLines(FitDesk desk) {
  desk.window.selected.clear();
  desk.window.topLine = 0;
  RebuildAfterTermChange(desk);
  SelectionChanged(desk);
}

std::vector<std::uint32_t> Chosen(const std::vector<std::uint32_t>& ids, std::size_t choice) {
  if (choice == 0) return ids;
  return choice <= ids.size() ? std::vector{ids[choice - 1]} : std::vector<std::uint32_t>{};
}

template <class Matches>
void RemoveTermsIf(FitDesk desk, Matches matches) {
  std::erase_if(desk.fit.list.terms, matches);
  FillTermLines(desk);
}

int RunAndRefresh(FitDesk desk, Platform& platform, FitObserver& observer) {
  desk.fit.StopRequested = false;
  const int status = RunFit(desk.fit, desk.params, desk.eval, platform, observer);
  RefreshTermLines(desk);
  return status;
}

}  // namespace

void OpenFitWindow(FitDesk desk) {
  desk.window.wantsFront = true;
  if (desk.window.open) return;
  desk.window.open = true;
  // The lists of a run are its own until it ends.
  desk.fit.FitRunning ? RefreshTermLines(desk) : RebuildAfterTermChange(desk);
}

void CloseFitWindow(FitDesk desk) {
  if (desk.fit.FitRunning) desk.fit.StopRequested = true;
  desk.window.open = false;
  desk.window.optionsOpen = false;
  desk.window.addTerms = {};
}

void AnswerFitNotice(FitDesk desk, FitNotice notice, std::uint32_t id) {
  if (!desk.window.open) return;
  switch (notice) {
    case FitNotice::kDatasetGone:
      return RemoveTermsIf(desk, [&](const ChiSqTerm& term) { return term.datasetId == id; });
    case FitNotice::kModelGone:
      return RemoveTermsIf(desk, [&](const ChiSqTerm& term) { return term.modelId == id; });
    case FitNotice::kDatasetChanged:
      return AfterDatasetChange(desk);
    case FitNotice::kModelParamsChanged:
    case FitNotice::kExpParamsChanged:
      return AfterParamChange(desk, desk.autoScreenUpdate);
    case FitNotice::kRecompute:
      return AfterParamChange(desk, true);
  }
}

FitLabels FitLabelsOf(const FitState& fit) {
  FitLabels labels;
  labels.points = std::to_string(CountFitPoints(fit));
  labels.params = std::to_string(fit.NumFreeParams);
  labels.chiSq = TextG(fit.TotalChiSq);
  if (fit.FitRunning) {
    labels.change = TextG(fit.ChiSqChange);
    labels.iteration = std::to_string(fit.IterationCount);
    labels.seconds = std::to_string(fit.ElapsedSeconds);
  }
  return labels;
}

FitControls FitControlsOf(const FitState& fit) {
  const bool idle = !fit.FitRunning;
  return {idle ? texts::kFitStart : texts::kFitStop, idle && fit.UndoAvailable, idle, idle, idle, idle, !idle};
}

std::string TermLine(const FitDesk& desk, const ChiSqTerm& term) {
  return PairText(desk, term) + '\t' + TextG(term.weight) + '\t' + TextG(term.termChiSq);
}

void RefreshTermLines(FitDesk desk) {
  desk.window.lines.clear();
  for (const ChiSqTerm& term : desk.fit.list.terms) desk.window.lines.push_back(TermLine(desk, term));
  desk.window.topLine = std::clamp(desk.window.topLine, 0, static_cast<int>(desk.window.lines.size()));
}

void RebuildAfterTermChange(FitDesk desk) {
  RebuildFitLists(desk.fit, desk.params, desk.eval);
  RefreshTermLines(desk);
}

bool AddTerm(FitDesk desk, int datasetSlot, std::uint32_t modelNumber, std::optional<double> weight) {
  const Dataset* const dataset = DatasetInSlot(*desk.eval.datasets, datasetSlot);
  if (!dataset || !GetModelByNumber(desk.params, modelNumber)) return false;
  ChiSqTerm& term = InsertChiSqTerm(desk.fit, desk.fit.list, static_cast<int>(desk.fit.list.terms.size()));
  term.datasetId = dataset->id;
  term.modelId = modelNumber;
  term.weight = weight.value_or(1.0);
  FillTermLines(desk);
  return true;
}

bool DeleteTerm(FitDesk desk, int datasetSlot, int modelSlot) {
  const Dataset* const dataset = DatasetInSlot(*desk.eval.datasets, datasetSlot);
  bool found = false;
  if (dataset && modelSlot >= 1 && modelSlot <= kMaxModels) {
    const std::uint32_t number = desk.params.models[static_cast<std::size_t>(modelSlot - 1)].number;
    auto& terms = desk.fit.list.terms;
    const auto match = std::find_if(terms.begin(), terms.end(), [&](const ChiSqTerm& term) {
      return term.datasetId == dataset->id && term.modelId == number;
    });
    found = match != terms.end();
    if (found) RemoveChiSqTerm(desk.fit.list, static_cast<int>(match - terms.begin()));
  }
  FillTermLines(desk);
  return found;
}

void SelectionChanged(FitDesk desk) {
  const ChiSqTerm* first = nullptr;
  desk.window.weightText.clear();
  for (const ChiSqTerm& term : desk.fit.list.terms) {
    if (!desk.window.selected.contains(term.id)) continue;
    if (first && first->weight != term.weight) return;
    first = &term;
  }
  if (first) desk.window.weightText = TextG(first->weight);
}

void SelectTermLine(FitDesk desk, std::size_t line, bool selected) {
  if (line >= desk.fit.list.terms.size()) return;
  const int id = desk.fit.list.terms[line].id;
  selected ? static_cast<void>(desk.window.selected.insert(id)) : static_cast<void>(desk.window.selected.erase(id));
  SelectionChanged(desk);
}

void ScrollTermLines(FitWindow& window, int topLine) {
  window.topLine = std::clamp(topLine, 0, static_cast<int>(window.lines.size()));
}

void WeightEdited(FitDesk desk, std::string_view text) {
  if (text == desk.window.weightText || desk.fit.FitRunning) return;
  desk.window.weightText = text;
  if (text.empty()) return;
  for (ChiSqTerm& term : desk.fit.list.terms) {
    if (desk.window.selected.contains(term.id)) term.weight = RealOf(text);
  }
  RebuildAfterTermChange(desk);
}

void RemoveSelectedTerms(FitDesk desk) {
  if (desk.fit.FitRunning) return;
  RemoveTermsIf(desk, [selected = desk.window.selected](const ChiSqTerm& term) { return selected.contains(term.id); });
}

void ToggleFold(FitWindow& window) {
  const bool grow = IsFolded(window);
  window.height = grow ? kUnfoldedHeight : kFoldedHeight;
  window.foldButton = grow ? texts::kFoldGrown : texts::kFoldFolded;
}

bool IsFolded(const FitWindow& window) { return window.height < kFoldThreshold; }

std::vector<std::string> DatasetChoices(const FitDesk& desk) {
  std::vector<std::string> choices{texts::kAddTermsAll};
  for (const std::uint32_t id : ListDatasetIds(*desk.eval.datasets)) {
    choices.push_back(GetDatasetById(*desk.eval.datasets, id)->name);
  }
  return choices;
}

std::vector<std::string> ModelChoices(const FitDesk& desk) {
  std::vector<std::string> choices{texts::kAddTermsAll};
  for (const std::uint32_t number : ListModelNumbers(desk.params)) {
    choices.push_back(GetModelByNumber(desk.params, number)->name);
  }
  return choices;
}

void OfferCandidates(FitDesk desk, AddTermsDialog& dialog, std::size_t datasetChoice, std::size_t modelChoice) {
  const auto datasets = Chosen(ListDatasetIds(*desk.eval.datasets), datasetChoice);
  const auto models = Chosen(ListModelNumbers(desk.params), modelChoice);
  dialog.candidates.terms.clear();
  dialog.lines.clear();
  dialog.datasetChoice = datasetChoice;
  dialog.modelChoice = modelChoice;
  for (const std::uint32_t dataset : datasets) {
    for (const std::uint32_t model : models) {
      auto& terms = dialog.candidates.terms;
      ChiSqTerm& term = InsertChiSqTerm(desk.fit, dialog.candidates, static_cast<int>(terms.size()));
      term.datasetId = dataset;
      term.modelId = model;
      dialog.lines.insert(dialog.lines.begin(), {term.id, PairText(desk, term)});
    }
  }
}

void AddSelectedCandidates(FitDesk desk, AddTermsDialog& dialog) {
  std::erase_if(dialog.candidates.terms, [&](const ChiSqTerm& candidate) {
    return std::none_of(dialog.lines.begin(), dialog.lines.end(),
                        [&](const CandidateLine& line) { return line.selected && line.id == candidate.id; });
  });
  auto& terms = desk.fit.list.terms;
  for (const ChiSqTerm& candidate : dialog.candidates.terms) {
    const bool present = std::any_of(terms.begin(), terms.end(), [&](const ChiSqTerm& term) {
      return term.datasetId == candidate.datasetId && term.modelId == candidate.modelId;
    });
    if (!present) terms.push_back(candidate);
  }
  FillTermLines(desk);
}

void OpenAddTerms(FitDesk desk) {
  if (desk.fit.FitRunning) return;
  desk.window.addTerms.open = true;
  OfferCandidates(desk, desk.window.addTerms, 0, 0);
}

void AcceptAddTerms(FitDesk desk) {
  if (!desk.window.addTerms.open || desk.fit.FitRunning) return;
  AddSelectedCandidates(desk, desk.window.addTerms);
  desk.window.addTerms = {};
}

void CancelAddTerms(FitDesk desk) { desk.window.addTerms = {}; }

int StartFit(FitDesk desk, Platform& platform, FitObserver& observer) {
  if (desk.fit.FitRunning) {
    desk.fit.StopRequested = true;
    return 0;
  }
  StoreStartValues(desk.fit, desk.params, desk.eval);
  const int status = RunAndRefresh(desk, platform, observer);
  desk.fit.UndoAvailable = true;
  return status;
}

int RunMacroFit(FitDesk desk, Platform& platform, FitObserver& observer, std::optional<int> iterations) {
  FitOptions& options = desk.fit.options;
  const FitOptions before = options;
  if (iterations) {
    options.MaxIterations = *iterations;
    options.StopOnIterations = true;
  }
  if (desk.fit.FitRunning) {
    desk.fit.StopRequested = true;
    return 0;
  }
  StoreStartValues(desk.fit, desk.params, desk.eval);
  const int status = RunAndRefresh(desk, platform, observer);
  options.MaxIterations = before.MaxIterations;
  options.StopOnIterations = before.StopOnIterations;
  return status;
}

void PressUndo(FitDesk desk) {
  if (desk.fit.UndoAvailable && !desk.fit.FitRunning) TakeBackLastRun(desk);
}

void TakeBackLastRun(FitDesk desk) {
  UndoFit(desk.fit, desk.params, desk.eval);
  RefreshTermLines(desk);
}

FitOptionsForm FormOf(const FitOptions& options) {
  return {options.StopOnIterations,
          options.StopOnTime,
          options.StopOnReduction,
          options.StopOnOutOfRange,
          options.StopOnLambda,
          options.CalcConfidence,
          options.LogFit,
          std::to_string(options.MaxIterations),
          std::to_string(options.MaxSeconds),
          std::to_string(options.ReductionIterations),
          TextG(options.ReductionAmount),
          TextG(options.MaxLambda),
          TextG(options.DeltaChiSq),
          TextG(options.SingularDet),
          std::to_string(options.ScreenUpdateEvery),
          TextG(options.InitialLambda)};
}

FitOptionsEnabled EnabledFieldsOf(const FitOptionsForm& form) {
  return {form.stopOnIterations,
          form.stopOnTime,
          form.stopOnReduction,
          form.stopOnReduction,
          form.stopOnLambda,
          form.calcConfidence,
          false};
}

void ReadForm(const FitOptionsForm& form, FitOptions& options) {
  options.StopOnIterations = form.stopOnIterations;
  options.StopOnTime = form.stopOnTime;
  options.StopOnReduction = form.stopOnReduction;
  options.StopOnLambda = form.stopOnLambda;
  options.CalcConfidence = form.calcConfidence;
  options.LogFit = form.logFit;
  options.MaxIterations = IntegerOf(form.maxIterations);
  options.MaxSeconds = IntegerOf(form.maxSeconds);
  options.ReductionIterations = IntegerOf(form.reductionIterations);
  options.ReductionAmount = RealOf(form.reductionAmount);
  options.MaxLambda = RealOf(form.maxLambda);
  options.DeltaChiSq = RealOf(form.deltaChiSq);
  options.SingularDet = RealOf(form.singularDet);
  options.ScreenUpdateEvery = IntegerOf(form.screenUpdateEvery);
  options.InitialLambda = RealOf(form.initialLambda);
}

void OpenFitOptions(FitDesk desk) {
  if (desk.fit.FitRunning) return;
  desk.window.optionsOpen = true;
  desk.window.options = FormOf(desk.fit.options);
}

void AcceptFitOptions(FitDesk desk) {
  if (desk.window.optionsOpen) ReadForm(desk.window.options, desk.fit.options);
  desk.window.optionsOpen = false;
}

void CancelFitOptions(FitDesk desk) { desk.window.optionsOpen = false; }

}  // namespace kalvex
