#include "fit/fit_lists.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "datasets/dataset.h"
#include "models/eval_model.h"
#include "models/eval_spectrum.h"
#include "models/model_table.h"

namespace kalvex {
namespace {

constexpr double kSameX = 1e-10;  // cm-1

void AddPointsOf(FitState& fit, const DatasetTable& datasets, int termIndex) {
  const ChiSqTerm& term = fit.list.terms[static_cast<std::size_t>(termIndex)];
  const Dataset* const dataset = GetDatasetById(datasets, term.datasetId);
  if (term.weight == 0 || !dataset) return;
  const ActiveRows active = ActiveRowsOf(*dataset);
  for (int i = active.from; i < active.to; ++i) {
    const DataRow& row = dataset->points[static_cast<std::size_t>(i)];
    fit.points.push_back({row.x, row.y, row.sigma, dataset->Quantity, term.modelId, termIndex});
  }
}

void CutIntoGroups(FitState& fit) {
  fit.groups.clear();
  fit.groupX.clear();
  fit.groupWanted.clear();
  for (int i = 0; i < static_cast<int>(fit.points.size()); ++i) {
    const FitPoint& point = fit.points[static_cast<std::size_t>(i)];
    const bool joins = !fit.groups.empty() && fit.groups.back().modelId == point.modelId &&
                       std::abs(point.x - fit.groups.back().x) <= kSameX;
    if (!joins) {
      fit.groups.push_back({point.x, point.modelId, i, i});
      fit.groupX.push_back(point.x);
      fit.groupWanted.push_back(0);
    }
    fit.groups.back().end = i + 1;
    fit.groupWanted.back() |= SetOf(point.quantity);
  }
}

void AddIfAdjustable(std::vector<FitParam>& params, ModelParam& cell, const ParamPlace& place) {
  if (!cell.adjustable) return;
  FitParam& param = params.emplace_back();
  param.place = place;
  param.cell = &cell;
}

void AddParamsOf(std::vector<FitParam>& params, Model& model, int slot) {
  AddIfAdjustable(params, model.epsInf, {ParamKind::kEpsInf, slot, 0, 0, 0, 0, 0});
  for (int row = 0; row < RowCount(model); ++row) {
    for (int column = 0; column < kColumns; ++column) {
      AddIfAdjustable(params, Cell(model, row, column), {ParamKind::kRow, slot, row, column, 0, 0, 0});
    }
  }
  if (!model.vdf.On) return;
  for (int i = 0; i < static_cast<int>(model.vdf.mesh.size()); ++i) {
    VdfMeshPoint& point = model.vdf.mesh[static_cast<std::size_t>(i)];
    AddIfAdjustable(params, point.e2, {ParamKind::kMesh, slot, 0, 0, 0, i, 1});
    // Under the Kramers-Kronig constraint the real part is computed and no unknown.
    if (!model.vdf.KK) AddIfAdjustable(params, point.e1, {ParamKind::kMesh, slot, 0, 0, 0, i, 0});
  }
}

std::vector<FitParam> AdjustableParams(ParamTables& tables) {
  std::vector<FitParam> params;
  for (Model& model : tables.models) {
    if (model.number != 0) AddParamsOf(params, model, SlotOf(tables, model));
  }
  for (int k = 0; k < kExpParamCount; ++k) {
    AddIfAdjustable(params, tables.ExpParams[static_cast<std::size_t>(k)], {ParamKind::kExp, 0, 0, 0, k, 0, 0});
  }
  return params;
}

// Asks the dependency pass which parameters the term's Quantity depends on.
void FindDependencies(FitState& fit, EvalContext& eval, std::size_t t) {
  const ChiSqTerm& term = fit.list.terms[t];
  Model* const model = GetModelByNumber(*eval.params, term.modelId);
  const Dataset* const dataset = GetDatasetById(*eval.datasets, term.datasetId);
  if (term.weight == 0 || !model || !dataset) return;
  const auto q = static_cast<std::size_t>(dataset->Quantity);
  WantOnly(eval.quantities, SetOf(dataset->Quantity));
  for (FitParam& param : fit.params) param.cell->dQuantity[q] = 0;
  EvalModelAfter(eval, *model);
  for (FitParam& param : fit.params) {
    if (param.cell->dQuantity[q] == 0) continue;
    param.termUse[t] = 1;
    param.used = true;
  }
}

// The first used member of a group is its master, so that the group keeps its unknown whatever else belongs to it.
void DecideMasters(std::vector<FitParam>& params) {
  for (std::size_t i = 0; i < params.size(); ++i) {
    const std::uint32_t group = params[i].cell->coupling;
    params[i].isMaster = group == 0 || std::none_of(params.begin(), params.begin() + static_cast<std::ptrdiff_t>(i),
                                                    [&](const FitParam& earlier) {
                                                      return earlier.used && earlier.cell->coupling == group;
                                                    });
  }
}

bool ComesBefore(const FitParam& a, const FitParam& b) {
  const auto key = [](const FitParam& p) {
    const ParamPlace& at = p.place;
    const bool mesh = at.Where == ParamKind::kMesh;
    return std::tuple(!p.used, !p.isMaster, at.Where, mesh ? at.nen : at.nm, mesh ? at.nm : at.nl, at.nc, at.isIm,
                      at.nep);
  };
  return key(a) < key(b);
}

void NumberMasters(FitState& fit) {
  fit.NumFitParams = fit.NumFreeParams = 0;
  for (std::size_t i = 0; i < fit.params.size() && fit.params[i].used; ++i) {
    FitParam& param = fit.params[i];
    ++fit.NumFitParams;
    param.master = static_cast<int>(i);
    if (param.isMaster) {
      ++fit.NumFreeParams;
      continue;
    }
    const auto master = std::find_if(fit.params.begin(), fit.params.end(), [&](const FitParam& earlier) {
      return earlier.cell->coupling == param.cell->coupling;
    });
    param.master = static_cast<int>(master - fit.params.begin());
  }
  fit.params.resize(static_cast<std::size_t>(fit.NumFitParams));
}

// firstGroup: that of the block's spectrum.
void AddChiSq(FitState& fit, std::size_t firstGroup, const SpectrumBlock& block) {
  double total = fit.TotalChiSq;
  for (std::size_t i = 0; i < block.count; ++i) {
    const FitGroup& group = fit.groups[firstGroup + block.first + i];
    for (int p = group.first; p < group.end; ++p) {
      const FitPoint& point = fit.points[static_cast<std::size_t>(p)];
      ChiSqTerm& term = fit.list.terms[static_cast<std::size_t>(point.term)];
      const double d = (point.y - block.Value(point.quantity, i)) / point.sigma;
      term.termChiSq += d * d;
      total += term.weight * d * d;
    }
  }
  fit.TotalChiSq = total;
}

int HeldInside(int position, const ChiSqTermList& list) {
  return std::clamp(position, 0, static_cast<int>(list.terms.size()));
}

}  // namespace

ChiSqTerm& InsertChiSqTerm(FitState& fit, ChiSqTermList& list, int position) {
  ChiSqTerm term;
  term.id = fit.nextTermId++;
  return *list.terms.insert(list.terms.begin() + HeldInside(position, list), term);
}

void RemoveChiSqTerm(ChiSqTermList& list, int position) {
  if (list.terms.empty()) return;
  const int last = static_cast<int>(list.terms.size()) - 1;
  list.terms.erase(list.terms.begin() + std::min(HeldInside(position, list), last));
}

void ClearChiSqTerms(ChiSqTermList& list) { list.terms.clear(); }

void RebuildFitPoints(FitState& fit, const EvalContext& eval) {
  fit.points.clear();
  for (int t = 0; t < static_cast<int>(fit.list.terms.size()); ++t) AddPointsOf(fit, *eval.datasets, t);
  const auto order = [](const FitPoint& a, const FitPoint& b) {
    return std::tie(a.modelId, a.x) < std::tie(b.modelId, b.x);
  };
  if (!std::is_sorted(fit.points.begin(), fit.points.end(), order)) {
    std::stable_sort(fit.points.begin(), fit.points.end(), order);
  }
  CutIntoGroups(fit);
}

void RebuildFitParams(FitState& fit, EvalContext& eval) {
  const std::size_t termCount = fit.list.terms.size();
  fit.params = AdjustableParams(*eval.params);
  for (FitParam& param : fit.params) param.termUse.assign(termCount, 0);
  for (std::size_t t = 0; t < termCount; ++t) FindDependencies(fit, eval, t);
  DecideMasters(fit.params);
  std::stable_sort(fit.params.begin(), fit.params.end(), ComesBefore);
  NumberMasters(fit);
  for (std::size_t t = 0; t < termCount; ++t) {
    ChiSqTerm& term = fit.list.terms[t];
    term.params.clear();
    if (term.weight == 0) continue;
    for (std::size_t j = 0; j < fit.params.size(); ++j) {
      if (fit.params[j].termUse[t]) term.params.push_back(static_cast<int>(j));
    }
  }
  fit.UndoAvailable = fit.startValuesStored = false;
}

SpectrumRequest RequestOf(const FitState& fit, std::size_t first, std::size_t end) {
  SpectrumRequest request;
  request.x = std::span(fit.groupX).subspan(first, end - first);
  request.wanted = std::span(fit.groupWanted).subspan(first, end - first);
  return request;
}

void ComputeChiSq(FitState& fit, EvalContext& eval) {
  fit.TotalChiSq = 0;
  for (ChiSqTerm& term : fit.list.terms) term.termChiSq = 0;
  ForEachModelRun(fit, [&](std::size_t first, std::size_t end) {
    Model* const model = GetModelByNumber(*eval.params, fit.groups[first].modelId);
    if (!model) return;
    EvalSpectrum(eval, *model, RequestOf(fit, first, end),
                 [&](const SpectrumBlock& block) { AddChiSq(fit, first, block); });
  });
}

}  // namespace kalvex
