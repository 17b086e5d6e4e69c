#include "fit/fit_lists.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <iterator>
#include <set>
#include <span>
#include <tuple>
#include <utility>

#include "datasets/dataset.h"
#include "evaluation/eval_model.h"
#include "evaluation/eval_spectrum.h"
#include "evaluation/model_type.h"
#include "evaluation/spectrum_kernels.h"
#include "records/model_table.h"

namespace kalvex {
namespace {

constexpr double kSameX = 1e-10;  // cm-1
static_assert(kSpectrumBlock <= 256, "a place in a block is kept in a byte");

using RowSpan = std::span<const DataRow>;

RowSpan ActiveRowsIn(const Dataset& dataset) {
  const ActiveRows active = ActiveRowsOf(dataset);
  return RowSpan(dataset.points)
      .subspan(static_cast<std::size_t>(active.from), static_cast<std::size_t>(active.to - active.from));
}

bool IsValid(const DataRow& row) {
  return std::isfinite(row.x) && std::isfinite(row.y) && std::isfinite(row.sigma) && row.sigma > 0;
}

// The term whose next row has the lowest frequency; the number of terms if no rows are left.
std::size_t LowestOf(std::span<const RowSpan> left) {
  std::size_t lowest = left.size();
  for (std::size_t t = 0; t < left.size(); ++t) {
    if (left[t].empty()) continue;
    if (lowest == left.size() || left[t].front().x < left[lowest].front().x) lowest = t;
  }
  return lowest;
}

void TakeRow(RowSpan& left, std::size_t at, TermPoints& points) {
  points.y.push_back(left.front().y);
  points.sigma.push_back(left.front().sigma);
  points.at.push_back(static_cast<std::uint8_t>(at));
  left = left.subspan(1);
}

void BeginBlock(FitSpectrum& spectrum) {
  for (TermPoints& points : spectrum.terms) points.firstOfBlock.push_back(points.y.size());
}

// Merges the rows of all terms by frequency. The rows of each term have ascending x.
void MergeRows(FitSpectrum& spectrum, std::span<RowSpan> left) {
  for (std::size_t lowest = LowestOf(left); lowest < left.size(); lowest = LowestOf(left)) {
    const double x = left[lowest].front().x;
    const std::size_t at = spectrum.x.size() % kSpectrumBlock;
    if (at == 0) BeginBlock(spectrum);
    QuantitySet wanted;
    for (std::size_t t = 0; t < left.size(); ++t) {
      TermPoints& points = spectrum.terms[t];
      const std::size_t before = points.y.size();
      if (t == lowest) TakeRow(left[t], at, points);  // for any x, NaN included: the loop ends
      while (!left[t].empty() && std::abs(left[t].front().x - x) <= kSameX) TakeRow(left[t], at, points);
      const std::size_t taken = points.y.size() - before;
      if (taken > 0) wanted |= QuantitySet{points.quantity};
      if (taken > 1) points.oneEach = false;
    }
    spectrum.x.push_back(x);
    spectrum.wanted.push_back(wanted);
  }
  BeginBlock(spectrum);
}

TermPoints RoomFor(int term, Quantity quantity, std::size_t count) {
  TermPoints points;
  points.term = term;
  points.quantity = quantity;
  points.y.reserve(count);
  points.sigma.reserve(count);
  points.at.reserve(count);
  return points;
}

// The period of a Quantity of the model, if it is an angle.
double PeriodOf(const EvalContext& eval, std::uint32_t modelId, Quantity quantity) {
  const Model* const model = GetModelByNumber(*eval.params, modelId);
  const ModelType* const type = model ? TypeOf(eval, *model) : nullptr;
  if (!type) return 0;
  const auto use = std::find_if(type->fills.begin(), type->fills.end(),
                                [&](const SlotUse& slot) { return slot.quantity == quantity; });
  return use == type->fills.end() ? 0 : use->period;
}

FitSpectrum SpectrumOf(FitState& fit, const EvalContext& eval, std::uint32_t modelId) {
  FitSpectrum spectrum;
  spectrum.modelId = modelId;
  std::vector<RowSpan> rows;
  std::deque<std::vector<DataRow>> validRows;
  std::size_t most = 0;
  for (std::size_t t = 0; t < fit.list.terms.size(); ++t) {
    const ChiSqTerm& term = fit.list.terms[t];
    const Dataset* const dataset = GetDatasetById(*eval.datasets, term.datasetId);
    if (term.modelId != modelId || term.weight == 0 || !dataset) continue;
    rows.push_back(ActiveRowsIn(*dataset));
    if (fit.options.SkipInvalid && !std::all_of(rows.back().begin(), rows.back().end(), IsValid)) {
      auto& valid = validRows.emplace_back();
      std::copy_if(rows.back().begin(), rows.back().end(), std::back_inserter(valid), IsValid);
      fit.skippedPoints += rows.back().size() - valid.size();
      rows.back() = valid;
    }
    most = std::max(most, rows.back().size());
    spectrum.terms.push_back(RoomFor(static_cast<int>(t), dataset->Quantity, rows.back().size()));
    if (fit.options.WrapAngles) spectrum.terms.back().period = PeriodOf(eval, modelId, dataset->Quantity);
  }
  spectrum.x.reserve(most);
  spectrum.wanted.reserve(most);
  MergeRows(spectrum, rows);
  return spectrum;
}

// The list of parameters under construction, with the record of each.
struct ParamsInMaking {
  std::vector<FitParam> params;
  FitCells cells;

  void AddIfAdjustable(ModelParam& cell, const ParamPlace& place, std::uint32_t modelNumber) {
    if (!cell.adjustable) return;
    FitParam& param = params.emplace_back();
    param.place = place;
    param.modelNumber = modelNumber;
    cells.push_back(&cell);
  }

  void AddParamsOf(Model& model, int slot) {
    AddIfAdjustable(model.epsInf, {ParamKind::kEpsInf, slot, 0, 0, 0, 0, 0}, model.number);
    for (int row = 0; row < RowCount(model); ++row) {
      for (int column = 0; column < kColumns; ++column) {
        AddIfAdjustable(Cell(model, row, column), {ParamKind::kRow, slot, row, column, 0, 0, 0}, model.number);
      }
    }
    if (!model.vdf.On) return;
    for (int i = 0; i < static_cast<int>(model.vdf.mesh.size()); ++i) {
      VdfMeshPoint& point = model.vdf.mesh[static_cast<std::size_t>(i)];
      AddIfAdjustable(point.e2, {ParamKind::kMesh, slot, 0, 0, 0, i, 1}, model.number);
      // Under the Kramers-Kronig constraint the real part is computed from the imaginary part.
      if (!model.vdf.KK) AddIfAdjustable(point.e1, {ParamKind::kMesh, slot, 0, 0, 0, i, 0}, model.number);
    }
  }
};

ParamsInMaking AdjustableParams(ParamTables& tables) {
  ParamsInMaking made;
  for (Model& model : tables.models) {
    if (model.number != 0) made.AddParamsOf(model, SlotOf(tables, model));
  }
  for (int k = 0; k < kExpParamCount; ++k) {
    made.AddIfAdjustable(tables.ExpParams[static_cast<std::size_t>(k)], {ParamKind::kExp, 0, 0, 0, k, 0, 0}, 0);
  }
  return made;
}

// Finds with the dependency pass the parameters on which the term's Quantity depends, and marks them as used.
std::vector<int> FindDependencies(const ChiSqTerm& term, ParamTables& tables, EvalContext& eval, ParamsInMaking& made) {
  std::vector<int> found;
  const Model* const model = GetModelByNumber(tables, term.modelId);
  const Dataset* const dataset = GetDatasetById(*eval.datasets, term.datasetId);
  if (term.weight == 0 || !model || !dataset) return found;
  const Quantity q = dataset->Quantity;
  WantOnly(eval.quantities, QuantitySet{dataset->Quantity});
  EvalModelAfter(eval, *model);
  for (std::size_t i = 0; i < made.params.size(); ++i) {
    if (SlopesAt(eval.slopes, made.params[i].place).dQuantity[q] == 0) continue;
    found.push_back(static_cast<int>(i));
    made.params[i].used = true;
  }
  TakeOverSlopes(tables, eval.slopes);
  return found;
}

// The first used member of a coupling group is its master. A group with a used member therefore always has an unknown
// in the fit.
void DecideMasters(ParamsInMaking& made) {
  for (std::size_t i = 0; i < made.params.size(); ++i) {
    const std::uint32_t group = made.cells[i]->coupling;
    bool anyBefore = false;
    for (std::size_t k = 0; k < i && group != 0; ++k) {
      anyBefore = anyBefore || (made.params[k].used && made.cells[k]->coupling == group);
    }
    made.params[i].isMaster = !anyBefore;
  }
}

bool ComesBefore(const FitParam& a, const FitParam& b) {
  const auto key = [](const FitParam& p) {
    const ParamPlace& at = p.place;
    const bool mesh = at.Where == ParamKind::kMesh;
    return std::tuple(!p.isMaster, at.Where, mesh ? at.nen : at.nm, mesh ? at.nm : at.nl, at.nc, at.isIm, at.nep);
  };
  return key(a) < key(b);
}

// Sorts the parameters into the order of the fit and drops those without influence. Returns the new place of each
// parameter.
std::vector<int> SortParams(ParamsInMaking& made) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < made.params.size(); ++i) {
    if (made.params[i].used) order.push_back(i);
  }
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return ComesBefore(made.params[a], made.params[b]); });
  ParamsInMaking sorted;
  std::vector<int> placeOf(made.params.size());
  for (const std::size_t i : order) {
    placeOf[i] = static_cast<int>(sorted.params.size());
    sorted.params.push_back(made.params[i]);
    sorted.cells.push_back(made.cells[i]);
  }
  made = std::move(sorted);
  return placeOf;
}

void NumberMasters(FitState& fit, ParamsInMaking& made) {
  fit.NumFitParams = static_cast<int>(made.params.size());
  fit.NumFreeParams = 0;
  for (std::size_t i = 0; i < made.params.size(); ++i) {
    FitParam& param = made.params[i];
    param.master = static_cast<int>(i);
    if (param.isMaster) {
      ++fit.NumFreeParams;
      continue;
    }
    const auto isOfGroup = [&](const ModelParam* other) { return other->coupling == made.cells[i]->coupling; };
    const auto master = std::find_if(made.cells.begin(), made.cells.end(), isOfGroup);
    param.master = static_cast<int>(master - made.cells.begin());
  }
}

void AddToTerms(FitState& fit, const FitSpectrum& spectrum, std::span<const double> sums) {
  for (std::size_t t = 0; t < sums.size(); ++t) {
    ChiSqTerm& term = fit.list.terms[static_cast<std::size_t>(spectrum.terms[t].term)];
    term.termChiSq += sums[t];
    fit.TotalChiSq += term.weight * sums[t];
  }
}

void AddChiSq(FitState& fit, EvalContext& eval, const Model& model, const FitSpectrum& spectrum) {
  const std::size_t terms = spectrum.terms.size();
  const SpectrumRequest request = RequestOf(spectrum);
  std::vector<double> sums(MostPortionsOfBatch(eval) * terms);
  BatchSink sink;
  sink.blocksOfPortion = BlocksOfPortion(eval, model, request);
  sink.work = [&](const SpectrumBlock& block, std::size_t place) {
    for (std::size_t t = 0; t < terms; ++t) {
      double& sum = sums[place * terms + t];
      sum = (sink.BeginsPortion(block) ? 0 : sum) + ChiSqInBlock(spectrum.terms[t], block);
    }
  };
  sink.take = [&](std::size_t portions) {
    for (std::size_t p = 0; p < portions; ++p) AddToTerms(fit, spectrum, std::span(sums).subspan(p * terms, terms));
  };
  EvalSpectrumInBatches(eval, model, request, sink);
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
  fit.skippedPoints = 0;
  std::set<std::uint32_t> models;
  for (const ChiSqTerm& term : fit.list.terms) models.insert(term.modelId);
  std::vector<FitSpectrum> spectra;
  for (const std::uint32_t modelId : models) {
    FitSpectrum spectrum = SpectrumOf(fit, eval, modelId);
    if (!spectrum.x.empty()) spectra.push_back(std::move(spectrum));
  }
  fit.spectra = std::move(spectra);
}

std::size_t CountFitPoints(const FitState& fit) {
  std::size_t count = 0;
  for (const FitSpectrum& spectrum : fit.spectra) {
    for (const TermPoints& points : spectrum.terms) count += points.y.size();
  }
  return count;
}

void RebuildFitParams(FitState& fit, ParamTables& params, EvalContext& eval) {
  ParamsInMaking made = AdjustableParams(params);
  std::vector<std::vector<int>> ofTerms;
  for (const ChiSqTerm& term : fit.list.terms) ofTerms.push_back(FindDependencies(term, params, eval, made));
  DecideMasters(made);
  const std::vector<int> placeOf = SortParams(made);
  NumberMasters(fit, made);
  for (std::size_t t = 0; t < ofTerms.size(); ++t) {
    for (int& param : ofTerms[t]) param = placeOf[static_cast<std::size_t>(param)];
    std::sort(ofTerms[t].begin(), ofTerms[t].end());
    fit.list.terms[t].params = std::move(ofTerms[t]);
  }
  fit.params = std::move(made.params);
  fit.startValues.clear();
  fit.UndoAvailable = fit.startValuesStored = false;
}

void RebuildFitLists(FitState& fit, ParamTables& params, EvalContext& eval) {
  RebuildFitPoints(fit, eval);
  RebuildFitParams(fit, params, eval);
  ComputeChiSq(fit, eval);
}

FitCells CellsOfFit(FitState& fit, ParamTables& params, EvalContext& eval) {
  FitCells cells;
  for (const FitParam& param : fit.params) cells.push_back(FindParam(params, param.place, param.modelNumber));
  if (std::find(cells.begin(), cells.end(), nullptr) == cells.end()) return cells;
  RebuildFitParams(fit, params, eval);
  cells.clear();
  for (const FitParam& param : fit.params) cells.push_back(&ParamAt(params, param.place));
  return cells;
}

SpectrumRequest RequestOf(const FitSpectrum& spectrum) {
  SpectrumRequest request;
  request.x = spectrum.x;
  request.wanted = spectrum.wanted;
  return request;
}

std::size_t FrequencyOf(const TermPoints& points, std::size_t p) {
  const auto& firsts = points.firstOfBlock;
  const auto after = std::upper_bound(firsts.begin(), firsts.end(), p) - firsts.begin();
  return static_cast<std::size_t>(after - 1) * kSpectrumBlock + points.at[p];
}

PointRange PointsInBlock(const TermPoints& points, const SpectrumBlock& block) {
  const std::size_t b = block.first / kSpectrumBlock;
  return {points.firstOfBlock[b], points.firstOfBlock[b + 1]};
}

bool AreSuccessive(const TermPoints& points, PointRange range) {
  return points.oneEach && points.at[range.end - 1] - points.at[range.first] + std::size_t{1} == range.Count();
}

double ChiSqInBlock(const TermPoints& points, const SpectrumBlock& block) {
  const PointRange range = PointsInBlock(points, block);
  if (range.Count() == 0) return 0;
  const auto sumOfSquares = WidestKernels<SpectrumKernels>().sumOfSquares;
  const double* const values = block.Values(points.quantity);
  const double* const y = points.y.data();
  const double* const sigma = points.sigma.data();
  if (points.period > 0) {
    double sum = 0;
    for (std::size_t p = range.first; p < range.end; ++p) {
      const double r = points.Residual(values[points.at[p]], p);
      sum += r * r;
    }
    return sum;
  }
  // If the term has a point at each frequency of the block, the positions are known and need not be read from memory.
  const bool everywhere = points.oneEach && range.Count() == block.count;
  if (everywhere || AreSuccessive(points, range)) {
    const std::size_t at = everywhere ? 0 : points.at[range.first];
    return sumOfSquares(values + at, y + range.first, sigma + range.first, range.Count());
  }
  double sum = 0;
  for (std::size_t first = range.first; first < range.end; first += kSpectrumBlock) {
    const std::size_t count = std::min(kSpectrumBlock, range.end - first);
    double picked[kSpectrumBlock];
    for (std::size_t i = 0; i < count; ++i) picked[i] = values[points.at[first + i]];
    sum += sumOfSquares(picked, y + first, sigma + first, count);
  }
  return sum;
}

void ComputeChiSq(FitState& fit, EvalContext& eval) {
  fit.TotalChiSq = 0;
  for (ChiSqTerm& term : fit.list.terms) term.termChiSq = 0;
  for (const FitSpectrum& spectrum : fit.spectra) {
    if (const Model* const model = GetModelByNumber(*eval.params, spectrum.modelId))
      AddChiSq(fit, eval, *model, spectrum);
  }
}

}  // namespace kalvex
