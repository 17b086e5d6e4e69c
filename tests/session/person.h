// A person who works with a session: random operations, often with wrong arguments.
#pragma once

#include <array>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "graphs/graph_table.h"
#include "session/session.h"

namespace kalvex {

// The file that a Person loads, in the current folder.
inline constexpr const char* kSpectrumFile = "R_spectrum.dat";

// The text of a spectrum that a model can describe.
inline std::string SpectrumText() {
  std::string text;
  for (int i = 0; i < 40; ++i)
    text += std::to_string(50 + 10 * i) + ' ' + std::to_string(0.3 + 0.01 * (i % 7)) + " 0.01\n";
  return text;
}

class Person {
 public:
  Person(Session& session, unsigned seed) : session_(session), random_(seed) {}

  bool byHand = true;  // some runs of the fit are started by hand

  void DoSomething() {
    switch (Below(6)) {
      case 0:
        return WorkOnDatasets();
      case 1:
        return WorkOnModels();
      case 2:
        return SetParams();
      case 3:
        return WorkOnMeshes();
      case 4:
        return WorkOnFit();
      default:
        return WorkOnGraphs();
    }
  }

 private:
  void WorkOnDatasets() {
    const int slot = Below(4);
    switch (Below(10)) {
      case 0:
      case 1:
        return session_.LoadDataset(slot, Source()).Ignore();
      case 2:
        return session_.UnloadDataset(slot).Ignore();
      case 3:
        if (!session_.FindDataset(slot)) session_.ClearDataset(slot).Ignore();
        return;
      case 4:
        return session_.TransformDataset(slot, 1 + Uneven(), -0.5).Ignore();
      case 5:
        return session_.AddNoise(slot, 0.125 * Uneven()).Ignore();
      case 6:
      case 7:
        return session_.CutDataset(slot, Frequency(), MaybeFrequency(), AnyHeard()).Ignore();
      case 8:
        return session_.ExportDataset(slot, "exported.dat", Coin(), Coin()).Ignore();
      default:
        return session_.SetDatasetQuantity(slot, AnyQuantity(), AnyHeard()).Ignore();
    }
  }

  void WorkOnModels() {
    const std::uint32_t model = Number();
    const int row = Below(4);
    switch (Below(14)) {
      case 0:
      case 1:
      case 2:
        return session_.NewModel().GetStatus().Ignore();
      case 3:
        return session_.CloseModel(model).Ignore();
      case 4:
      case 5:
        return session_.InsertRow(model, row).Ignore();
      case 6:
        return session_.RemoveRow(model, row).Ignore();
      case 7:
        return session_.MoveRow(model, row, Coin()).Ignore();
      case 8:
        return session_.SortRows(model, Below(7)).Ignore();
      case 9:
        return session_.FixAllParams(model, Coin()).Ignore();
      case 10:
        return session_.SaveModel(model, "saved.kvm").Ignore();
      case 11:
        return session_.LoadModel(model, "saved.kvm").Ignore();
      case 12:
        return session_.SaveParams("saved.kvp").Ignore();
      default:
        return session_.LoadParams("saved.kvp").Ignore();
    }
  }

  void SetParams() {
    if (Below(8) == 0) {
      return session_.CopyParam(ParamRef::Row(Number(), Below(4), Below(3)), ParamRef::EpsInf(Number())).Ignore();
    }
    session_.SetParam(Param(), Edit()).Ignore();
    if (Coin()) session_.EndGesture();
  }

  void WorkOnMeshes() {
    const std::uint32_t model = Number();
    switch (Below(8)) {
      case 0:
      case 1: {
        std::array<VdfSource, 3> sources;
        for (VdfSource& source : sources) {
          const Dataset* const dataset = session_.FindDataset(Below(6));
          if (dataset) source = {dataset->id, Coin()};
        }
        return session_.InitMesh(model, sources, Coin(), Coin(), Coin()).Ignore();
      }
      case 2:
        return session_.ToggleMeshKK(model).Ignore();
      case 3:
        return session_.ToggleMeshOn(model).Ignore();
      case 4:
        return session_.ToggleMeshFitActive(model).Ignore();
      case 5:
        return session_.MakeMeshPositive(model).Ignore();
      case 6:
        return (Coin() ? session_.SaveMesh(model, "saved.kvd") : session_.LoadMesh(model, "saved.kvd")).Ignore();
      default:
        return session_.SwitchMesh(model, MaybeFlag(), MaybeFlag(), MaybeFlag()).Ignore();
    }
  }

  void WorkOnFit() {
    switch (Below(17)) {
      case 0:
      case 1:
        return session_.OpenFit().Ignore();
      case 2:
      case 3:
      case 4:
      case 5:
        return session_.AddTerm(Below(4), Number(), Coin() ? std::optional(Uneven()) : std::nullopt).Ignore();
      case 6:
        return session_.DeleteTerm(Below(4), Below(4)).Ignore();
      case 7:
      case 8:
      case 9: {
        FitRequest request;
        request.iterations = 2;
        request.byHand = byHand && Coin();
        return session_.RunFit(request).Ignore();
      }
      case 10:
        return session_.UndoFit().Ignore();
      case 11: {
        FitOptions options = session_.Fit().options;
        options.InitialLambda *= 1 + Uneven();
        if (Below(4) == 0) options.SingularDet *= 2;
        return session_.SetFitOptions(options).Ignore();
      }
      case 12: {
        const std::array<TermPair, 1> pairs = {TermPair{Number(), Number()}};
        return session_.AddTerms(pairs).Ignore();
      }
      case 13: {
        const std::array<int, 2> ids = {Below(10), Below(10)};
        return (Coin() ? session_.RemoveTerms(ids) : session_.WeighTerms(ids, Uneven())).Ignore();
      }
      case 14:
        return session_.Recompute().Ignore();
      case 15:
        return (Coin() ? session_.TestDerivatives() : session_.WriteQuantityErrorBars()).Ignore();
      default:
        if (Below(4) == 0) session_.CloseFit().Ignore();
    }
  }

  void WorkOnGraphs() {
    const std::uint32_t graph = Number();
    switch (Below(11)) {
      case 0:
      case 1:
        return (Coin() ? session_.NewGraph() : session_.NewGraph(300, MaybeSize())).GetStatus().Ignore();
      case 2:
        return session_.CloseGraph(graph).Ignore();
      case 3:
        return session_.ResizeGraph(graph, MaybeSize(), MaybeSize()).Ignore();
      case 4:
      case 5:
        return session_.EditGraph(graph, AnyGraphEdit()).Ignore();
      case 6:
      case 7:
        if (const auto curve = AnyCurve()) session_.AddCurve(graph, *curve).Ignore();
        return;
      case 8: {
        const Graph* const shown = session_.FindGraph(graph);
        if (!shown || shown->curves.empty()) return;
        const Curve curve = shown->curves[static_cast<std::size_t>(Below(static_cast<int>(shown->curves.size())))];
        const std::uint32_t of = curve.kind == CurveKind::kData ? curve.datasetId : curve.modelId;
        const auto quantity = Coin() ? std::optional(curve.quantity) : std::nullopt;
        return session_.RemoveCurve(graph, curve.kind, of, quantity).Ignore();
      }
      case 9:
        return session_.SetCurves(graph, {}).Ignore();
      default:
        return (Coin() ? session_.SetAutoScreenUpdate(Coin()) : session_.SetGraphReader(Coin())).Ignore();
    }
  }

  int Below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }
  bool Coin() { return Below(2) == 0; }
  // A number that needs all its digits, below 1.
  double Uneven() { return std::uniform_real_distribution<double>(0, 1)(random_); }
  double Frequency() { return 50.0 * Below(12) + Uneven(); }
  std::optional<double> MaybeFrequency() { return Coin() ? std::optional(Frequency()) : std::nullopt; }
  std::optional<bool> MaybeFlag() { return Coin() ? std::optional(Coin()) : std::nullopt; }
  std::optional<int> MaybeSize() { return Coin() ? std::optional(200 + Below(100)) : std::nullopt; }
  Heard AnyHeard() { return Coin() ? Heard::kAtOnce : Heard::kLater; }
  Quantity AnyQuantity() { return *QuantityOfNumber(Below(kQuantityCount)); }
  std::uint32_t Number() { return static_cast<std::uint32_t>(Below(5)); }

  DatasetSource Source() {
    DatasetSource source;
    source.MasterFile = Below(6) == 0 ? "none.dat" : kSpectrumFile;
    if (Coin()) source.Quantity = AnyQuantity();
    if (Coin()) source.XMethod = XSource{Below(3)};
    if (Coin()) source.XFile = kSpectrumFile;
    if (Coin()) source.XGrid = Grid::kLogarithmic;
    if (Coin()) source.XMin = 60 + Uneven(), source.XMax = 300 + Uneven(), source.XPts = 20 + Below(20);
    if (Below(4) == 0) source.YMethod = YSource::kFixed;
    if (Coin()) source.YVal = Uneven();
    if (Coin()) source.YErrMethod = ErrorSource{Below(3)}, source.YErrFile = kSpectrumFile;
    if (Below(4) == 0) source.YErrVal = Uneven() - 0.2;
    if (Coin()) source.Match = Matching::kAveraging;
    return source;
  }

  ParamRef Param() {
    if (Below(5) == 0) return ParamRef::Exp(Below(6));
    if (Below(4) == 0) return ParamRef::EpsInf(Number());
    return ParamRef::Row(Number(), Below(4), Below(3));
  }
  ParamEdit Edit() {
    ParamEdit edit;
    if (Coin()) edit.value = 10.0 * Below(30) + Uneven();
    if (Below(4) == 0) edit.adjustable = Coin();
    if (Below(6) == 0) edit.min = 5.0 * Below(10) + Uneven(), edit.useMin = 1;
    if (Below(6) == 0) edit.max = 100 + 1 / Uneven(), edit.useMax = Coin();
    if (Below(3) == 0) edit.coupling = Below(3);
    edit.holdInLimits = Coin();
    edit.told = Below(5) != 0;
    return edit;
  }

  GraphEdit AnyGraphEdit() {
    static const std::vector<std::string> kTitles = {"a title", "50 % of R, # 2", std::string(60, '%'), "a \"b\" c"};
    GraphEdit edit;
    edit.x.max = Frequency();
    edit.y.log = MaybeFlag();
    edit.x.title = kTitles[static_cast<std::size_t>(Below(4))];
    edit.showFitted = MaybeFlag();
    if (Below(4) == 0) edit.y.titleShown = Coin();
    return edit;
  }

  std::optional<Curve> AnyCurve() {
    const Model* const model = session_.FindModel(Number());
    const Dataset* const dataset = session_.FindDataset(Below(4));
    if (!model || !dataset) return std::nullopt;
    Curve curve = AnyCurveOf(*model, *dataset);
    curve.nColor = Below(4);
    curve.ShowSymbol = Coin();  // only a curve of data can show symbols
    if (Coin()) curve.Scale = Uneven();
    return curve;
  }
  Curve AnyCurveOf(const Model& model, const Dataset& dataset) {
    switch (Below(kCurveKinds)) {
      case 0:
        return DataCurve(dataset);
      case 1:
        return ModelCurve(model, AnyQuantity());
      case 2:
        return ChiSqCurve(dataset, model);
      case 3:
        return MultiCurve(model, AnyQuantity());
      default:
        return FreqCurve(model);
    }
  }

  Session& session_;
  std::mt19937 random_;
};

}  // namespace kalvex
