#include "windows/fit_window.h"

#include <algorithm>

#include "core/text.h"
#include "fit/fit_lists.h"
#include "records/model_table.h"
#include "windows/desk.h"

namespace kalvex {
namespace {

constexpr int kUnfoldedHeight = 282, kFoldedHeight = 139, kFoldThreshold = 201;

std::string PairText(const Session& session, std::uint32_t datasetId, std::uint32_t modelNumber) {
  const Dataset* const dataset = GetDatasetById(session.Datasets(), datasetId);
  const Model* const model = session.FindModel(modelNumber);
  std::string text = "[";
  text += NamesOf(dataset ? dataset->Quantity : kRefl).shortName;
  text += "] \"" + (dataset ? dataset->name : "") + "\" - \"" + (model ? model->name : "") + "\"";
  return text;
}

std::vector<std::uint32_t> Chosen(const std::vector<std::uint32_t>& ids, std::size_t choice) {
  if (choice == 0) return ids;
  return choice <= ids.size() ? std::vector{ids[choice - 1]} : std::vector<std::uint32_t>{};
}

std::vector<int> SelectedIds(const Desk& desk) {
  return {desk.fitWindow.selected.begin(), desk.fitWindow.selected.end()};
}

}  // namespace

void OpenFitWindow(Desk& desk) {
  desk.fitWindow.wantsFront = true;
  if (desk.fitWindow.open) return;
  desk.fitWindow.open = true;
  desk.session.OpenFit().Ignore();
  RefreshTermLines(desk);
}

void CloseFitWindow(Desk& desk) {
  desk.session.CloseFit().Ignore();
  HideFitWindow(desk.fitWindow);
}

void HideFitWindow(FitWindow& window) {
  window.open = window.optionsOpen = false;
  window.addTerms = {};
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

std::string TermLine(const Desk& desk, const ChiSqTerm& term) {
  return PairText(desk.session, term.datasetId, term.modelId) + '\t' + TextG(term.weight) + '\t' +
         TextG(term.termChiSq);
}

void RefreshTermLines(Desk& desk) {
  FitWindow& window = desk.fitWindow;
  window.lines.clear();
  for (const ChiSqTerm& term : desk.session.Fit().list.terms) window.lines.push_back(TermLine(desk, term));
  ScrollTermLines(window, window.topLine);
}

void FillTermLines(Desk& desk) {
  desk.fitWindow.selected.clear();
  desk.fitWindow.topLine = 0;
  RefreshTermLines(desk);
  SelectionChanged(desk);
}

void SelectionChanged(Desk& desk) {
  FitWindow& window = desk.fitWindow;
  const ChiSqTerm* first = nullptr;
  window.weightText.clear();
  for (const ChiSqTerm& term : desk.session.Fit().list.terms) {
    if (!window.selected.contains(term.id)) continue;
    if (first && first->weight != term.weight) return;
    first = &term;
  }
  if (first) window.weightText = TextG(first->weight);
}

void SelectTermLine(Desk& desk, std::size_t line, bool selected) {
  const auto& terms = desk.session.Fit().list.terms;
  if (line >= terms.size()) return;
  if (selected) {
    desk.fitWindow.selected.insert(terms[line].id);
  } else {
    desk.fitWindow.selected.erase(terms[line].id);
  }
  SelectionChanged(desk);
}

void ScrollTermLines(FitWindow& window, int topLine) {
  window.topLine = std::clamp(topLine, 0, static_cast<int>(window.lines.size()));
}

void WeightEdited(Desk& desk, std::string_view text) {
  std::string& shown = desk.fitWindow.weightText;
  if (text == shown || desk.session.Fit().FitRunning) return;
  shown = text;
  if (!text.empty()) desk.session.WeighTerms(SelectedIds(desk), RealOf(text)).Ignore();
}

void RemoveSelectedTerms(Desk& desk) { desk.session.RemoveTerms(SelectedIds(desk)).Ignore(); }

void ToggleFold(FitWindow& window) {
  const bool grow = IsFolded(window);
  window.height = grow ? kUnfoldedHeight : kFoldedHeight;
  window.foldButton = grow ? texts::kFoldGrown : texts::kFoldFolded;
}

bool IsFolded(const FitWindow& window) { return window.height < kFoldThreshold; }

std::vector<std::string> DatasetChoices(const Desk& desk) {
  const DatasetTable& datasets = desk.session.Datasets();
  std::vector<std::string> choices{texts::kAddTermsAll};
  for (const std::uint32_t id : ListDatasetIds(datasets)) choices.push_back(GetDatasetById(datasets, id)->name);
  return choices;
}

std::vector<std::string> ModelChoices(const Desk& desk) {
  std::vector<std::string> choices{texts::kAddTermsAll};
  for (const std::uint32_t number : ListModelNumbers(desk.session.Params())) {
    choices.push_back(desk.session.FindModel(number)->name);
  }
  return choices;
}

void OfferCandidates(Desk& desk, std::size_t datasetChoice, std::size_t modelChoice) {
  AddTermsDialog& dialog = desk.fitWindow.addTerms;
  dialog.lines.clear();
  dialog.datasetChoice = datasetChoice;
  dialog.modelChoice = modelChoice;
  for (const std::uint32_t dataset : Chosen(ListDatasetIds(desk.session.Datasets()), datasetChoice)) {
    for (const std::uint32_t model : Chosen(ListModelNumbers(desk.session.Params()), modelChoice)) {
      dialog.lines.push_back({{dataset, model}, PairText(desk.session, dataset, model)});
    }
  }
  std::reverse(dialog.lines.begin(), dialog.lines.end());
}

void OpenAddTerms(Desk& desk) {
  if (desk.session.Fit().FitRunning) return;
  desk.fitWindow.addTerms.open = true;
  OfferCandidates(desk, 0, 0);
}

void AcceptAddTerms(Desk& desk) {
  const AddTermsDialog& dialog = desk.fitWindow.addTerms;
  if (!dialog.open) return;
  std::vector<TermPair> pairs;
  for (const auto& line : dialog.lines) {
    if (line.selected) pairs.push_back(line.pair);
  }
  std::reverse(pairs.begin(), pairs.end());
  if (desk.session.AddTerms(pairs).Ok()) CancelAddTerms(desk);
}

void CancelAddTerms(Desk& desk) { desk.fitWindow.addTerms = {}; }

void PressFitStart(Desk& desk) { desk.session.RunFit({.byHand = true}).Ignore(); }

void PressFitUndo(Desk& desk) {
  if (desk.session.Fit().UndoAvailable && desk.session.UndoFit().Ok()) SettleSlider(desk);
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

void OpenFitOptions(Desk& desk) {
  if (desk.session.Fit().FitRunning) return;
  desk.fitWindow.optionsOpen = true;
  desk.fitWindow.options = FormOf(desk.session.Fit().options);
}

void AcceptFitOptions(Desk& desk) {
  if (!desk.fitWindow.optionsOpen) return;
  FitOptions options = desk.session.Fit().options;
  ReadForm(desk.fitWindow.options, options);
  if (desk.session.SetFitOptions(options).Ok()) CancelFitOptions(desk);
}

void CancelFitOptions(Desk& desk) { desk.fitWindow.optionsOpen = false; }

}  // namespace kalvex
