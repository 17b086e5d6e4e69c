// The contents of a session as exact text, except for caches and strokes.
#pragma once

#include <sstream>
#include <string>

#include "session/session.h"

namespace kalvex {

class StateText {
 public:
  template <class... Fields>
  StateText& Line(const char* what, const Fields&... fields) {
    text_ << what;
    (Add(fields), ...);
    text_ << '\n';
    return *this;
  }
  std::string Text() const { return text_.str(); }

 private:
  void Add(double number) { text_ << ' ' << std::hexfloat << number << std::defaultfloat; }
  void Add(const std::string& text) { text_ << " '" << text << '\''; }
  template <class Whole>
  void Add(const Whole& number) {
    text_ << ' ' << static_cast<long long>(number);
  }
  std::ostringstream text_;
};

inline void AddParam(StateText& out, const ModelParam& p) {
  out.Line("param", std::string(NameOf(p)), p.value, p.error, p.adjustable, p.min, p.max, p.useMin, p.useMax,
           p.coupling, p.reserved);
}

inline void AddDataset(StateText& out, const Dataset& d) {
  out.Line("dataset", d.id, d.name, d.MasterFile, d.XFile, d.YErrFile, d.XMethod, d.YMethod, d.YErrMethod, d.YVal,
           d.YErrVal, d.XGrid, d.Match, d.Quantity, d.XMin, d.XMax, d.XPts, d.CutMin, d.CutMax, d.nActive,
           d.firstActive, d.lastActive);
  for (const DataRow& row : d.points) out.Line("row", row.x, row.y, row.sigma);
}

inline void AddModel(StateText& out, const Model& m) {
  out.Line("model", m.number, m.name, m.rows.size(), m.dirty);
  AddParam(out, m.epsInf);
  for (const ModelParam& p : m.rows) AddParam(out, p);
  const VarDielFunc& v = m.vdf;
  out.Line("mesh", v.On, v.KK, v.FitActive, v.initOn, v.initKK, v.initFitActive, v.mesh.size());
  for (const VdfSource& source : v.source) out.Line("source", source.datasetId, source.every2nd);
  for (const VdfMeshPoint& point : v.mesh) {
    out.Line("point", point.x);
    AddParam(out, point.e1);
    AddParam(out, point.e2);
  }
}

inline void AddFit(StateText& out, const FitState& f) {
  out.Line("fit", f.nextTermId, f.NumFitParams, f.NumFreeParams, f.TotalChiSq, f.Lambda, f.IterationCount,
           f.ChiSqChange, f.FitRunning, f.UndoAvailable, f.startValuesStored, f.report.stop, f.report.startChiSq);
  for (const ChiSqTerm& t : f.list.terms) {
    out.Line("term", t.id, t.datasetId, t.modelId, t.weight, t.termChiSq, t.params.size());
  }
  for (const FitParam& p : f.params) {
    out.Line("free", p.place.Where, p.place.nm, p.place.nl, p.place.nc, p.place.nep, p.place.nen, p.place.isIm,
             p.modelNumber, p.master, p.isMaster);
  }
  for (const double value : f.startValues) out.Line("start", value);
  for (const FitSpectrum& s : f.spectra) {
    out.Line("spectrum", s.modelId, s.x.size());
    for (const TermPoints& points : s.terms) {
      for (std::size_t p = 0; p < points.y.size(); ++p) out.Line("held", points.term, points.y[p], points.sigma[p]);
    }
  }
  const FitOptions& o = f.options;
  out.Line("options", o.StopOnIterations, o.MaxIterations, o.StopOnTime, o.MaxSeconds, o.StopOnReduction,
           o.ReductionIterations, o.ReductionAmount, o.StopOnLambda, o.MaxLambda, o.CalcConfidence, o.DeltaChiSq,
           o.LogFit, o.InitialLambda);
}

inline void AddGraph(StateText& out, const Graph& g) {
  out.Line("graph", g.number, g.name, g.Width, g.Height, g.ShowFitted, g.plotWidth, g.plotHeight);
  for (const Axis* const axis : {&g.X, &g.Y}) {
    out.Line("axis", axis->min, axis->max, axis->tick, axis->log, axis->title, axis->titleShown);
  }
  for (const Curve& c : g.curves) {
    out.Line("curve", c.order, c.kind, c.quantity, c.datasetId, c.modelId, c.nColor, c.colorIndex, c.ShowLine,
             c.ShowSymbol, c.ShowError, c.nSymbolSize, c.nSymbolShape, c.SymbolOpen, c.Scale, c.Shift);
  }
}

inline std::string StateOf(const Session& session) {
  StateText out;
  for (const Dataset& dataset : session.Datasets().slots) AddDataset(out, dataset);
  for (const Model& model : session.Params().models) AddModel(out, model);
  for (const ModelParam& param : session.Params().ExpParams) AddParam(out, param);
  AddFit(out, session.Fit());
  for (const Graph& graph : session.Graphs().slots) AddGraph(out, graph);
  out.Line("counters", session.Datasets().nextId, session.Params().nextModelNumber, session.Graphs().nextNumber);
  out.Line("switches", session.AutoScreenUpdate(), session.GraphReader(), session.FitFollows());
  return out.Text();
}

}  // namespace kalvex
