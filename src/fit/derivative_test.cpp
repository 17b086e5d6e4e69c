#include "fit/derivative_test.h"

#include <cmath>
#include <string>
#include <vector>

#include "core/files.h"
#include "core/text.h"
#include "evaluation/eval_model.h"
#include "evaluation/eval_spectrum.h"
#include "fit/fit_lists.h"
#include "records/model_table.h"
#include "records/param_value.h"

namespace kalvex {
namespace {

constexpr double kDefaultStep = 1e-5;
constexpr double kRelativeStepSignal = 777;
constexpr double kTestFrequency = 100.0;  // cm-1

double StepFromFile() {
  std::string text;
  double step = kDefaultStep;
  if (ReadTextFile("DELTA.DAT", text)) ParseReal(text.data(), text.data() + text.size(), step);
  return step;
}

double StepFor(double wanted, double value) {
  if (wanted != kRelativeStepSignal) return wanted;
  return value == 0 ? kDefaultStep : kDefaultStep * value;
}

// %+11.4E
void AppendSigned(std::string& text, double value) {
  std::string number = std::signbit(value) ? "" : "+";
  AppendScientific(number, value, 4, 0);
  text.append(number.size() < 11 ? 11 - number.size() : 0, ' ');
  text += number;
}

std::string Heading(const ParamPlace& at) {
  const std::string stars = std::string(54, '*') + '\n';
  const auto field = [](const char* name, int value) {
    return std::string(", ") + name + " = " + std::to_string(value);
  };
  return stars + KindText(at.Where) + field("nm", at.nm) + field("nl", at.nl) + field("nc", at.nc) +
         field("nep", at.nep) + field("nen", at.nen) + '\n' + stars;
}

void AppendComparison(std::string& text, double analytic, double numeric) {
  const double size = std::fabs(analytic) + std::fabs(numeric);
  const double difference = size < 1e-10 ? 1.0 : std::fabs(analytic - numeric) / size;
  AppendSigned(text, analytic);
  text += ' ';
  AppendSigned(text, numeric);
  text += "        ";
  AppendScientific(text, difference, 1, 11);
  text += difference >= 0.01 ? " (!!!)\n" : "      \n";
}

// d(sum of squares)/d(parameter): a row per term, a column per fit parameter. The slopes of coupled parameters are
// added to their master.
std::vector<std::vector<double>> AnalyticGradients(FitState& fit, ParamTables& params, EvalContext& eval) {
  std::vector<std::vector<double>> gradients(fit.list.terms.size(), std::vector<double>(fit.params.size()));
  for (ChiSqTerm& term : fit.list.terms) term.termChiSq = 0;
  const auto addPoint = [&](const TermPoints& points, std::size_t p) {
    const Quantity q = points.quantity;
    const auto t = static_cast<std::size_t>(points.term);
    const double sigma = points.sigma[p], d = (points.y[p] - eval.quantities[q].value) / sigma;
    fit.list.terms[t].termChiSq += d * d;
    for (const int j : fit.list.terms[t].params) {
      const auto i = static_cast<std::size_t>(j), master = static_cast<std::size_t>(fit.params[i].master);
      gradients[t][master] += -2 * d * SlopesAt(eval.slopes, fit.params[i].place).dQuantity[q] / sigma;
    }
  };
  for (const FitSpectrum& spectrum : fit.spectra) {
    const Model* const model = GetModelByNumber(params, spectrum.modelId);
    if (!model) continue;
    std::vector<std::size_t> next(spectrum.terms.size());
    for (std::size_t i = 0; i < spectrum.x.size(); ++i) {
      WantOnly(eval.quantities, spectrum.wanted[i]);
      EvalModel(eval, *model, spectrum.x[i], true);
      TakeOverSlopes(params, eval.slopes);
      for (std::size_t t = 0; t < next.size(); ++t) {
        const TermPoints& points = spectrum.terms[t];
        while (next[t] < points.y.size() && FrequencyOf(points, next[t]) == i) addPoint(points, next[t]++);
      }
    }
  }
  return gradients;
}

}  // namespace

Status TestDerivatives(FitState& fit, ParamTables& params, EvalContext& eval) {
  const double wantedStep = StepFromFile();
  const FitCells cells = CellsOfFit(fit, params, eval);
  const auto gradients = AnalyticGradients(fit, params, eval);
  ComputeChiSq(fit, eval);
  for (ChiSqTerm& term : fit.list.terms) term.prevChiSq = term.termChiSq;
  std::string text = "NumParams = " + std::to_string(fit.NumFitParams) + '\n';
  for (std::size_t i = 0; i < static_cast<std::size_t>(fit.NumFreeParams); ++i) {
    ModelParam& cell = *cells[i];
    const double h = StepFor(wantedStep, cell.value);
    SetValue(params, cell, cell.value + h);
    ComputeChiSq(fit, eval);
    SetValue(params, cell, cell.value - h);
    text += Heading(fit.params[i].place);
    double analyticSum = 0, numericSum = 0;
    for (std::size_t t = 0; t < fit.list.terms.size(); ++t) {
      const ChiSqTerm& term = fit.list.terms[t];
      const double numeric = (term.termChiSq - term.prevChiSq) / h;
      analyticSum += gradients[t][i];
      numericSum += numeric;
      text += "ChiSq=" + std::to_string(t) + " : ";
      AppendComparison(text, gradients[t][i], numeric);
    }
    text += "\nChiSqTot: ";
    AppendComparison(text, analyticSum, numericSum);
  }
  ComputeChiSq(fit, eval);
  return WriteWholeFile("TestDeriv1.txt", text);
}

Status TestQuantityDerivatives(FitState& fit, ParamTables& params, EvalContext& eval) {
  const double step = StepFromFile();
  const FitCells cells = CellsOfFit(fit, params, eval);
  const auto values = [&](const Model& model, bool derivatives) {
    EvalModel(eval, model, kTestFrequency, derivatives);
    return eval.quantities;
  };
  std::string text;
  for (const ChiSqTerm& term : fit.list.terms) {
    const Model* const model = GetModelByNumber(params, term.modelId);
    if (!model) continue;
    WantOnly(eval.quantities, kEveryQuantity);
    const QuantityTable before = values(*model, false);
    values(*model, true);
    TakeOverSlopes(params, eval.slopes);
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const auto& analytic = SlopesAt(eval.slopes, fit.params[i].place).dQuantity;
      const double value = cells[i]->value;
      cells[i]->value += step;
      const QuantityTable after = values(*model, false);
      cells[i]->value = value;
      text += Heading(fit.params[i].place);
      for (const Quantity q : kEveryQuantity) {
        const double numeric = (after[q].value - before[q].value) / step;
        const std::string name = NamesOf(q).shortName;
        text += std::string(name.size() < 3 ? 3 - name.size() : 0, ' ') + name + " : ";
        AppendSigned(text, analytic[q]);
        text += ' ';
        AppendSigned(text, numeric);
        const bool wrong = std::fabs(analytic[q] - numeric) > 0.01 * std::fabs(analytic[q] + numeric);
        text += std::string("         ") + (wrong ? "FALSE" : "     ") + '\n';
      }
    }
  }
  return WriteWholeFile("TestDeriv.txt", text);
}

}  // namespace kalvex
