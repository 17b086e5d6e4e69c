#include "windows/graph_dialogs.h"

#include <algorithm>

#include "core/text.h"
#include "graphs/curve_samples.h"
#include "graphs/graph_table.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

AxisForm FormOf(const Axis& axis) { return {TextG(axis.min), TextG(axis.max), axis.log, axis.title, axis.titleShown}; }

AxisEdit EditOf(const AxisForm& form) {
  return {RealOf(form.min), RealOf(form.max), form.log, form.titleShown, form.title};
}

// ---- the dialog "Graph contents"

bool IsSameCurve(const Curve& a, const Curve& b) {
  return a.kind == b.kind && a.quantity == b.quantity && a.datasetId == b.datasetId && a.modelId == b.modelId;
}

ListedCurve* Find(std::vector<ListedCurve>& list, const Curve& curve) {
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const ListedCurve& listed) { return IsSameCurve(listed.curve, curve); });
  return found == list.end() ? nullptr : &*found;
}

void Deselect(std::vector<ListedCurve>& list) {
  for (ListedCurve& listed : list) listed.selected = false;
}

// A new curve from the dialog shows everything that its kind can show.
Curve WithUsualLook(Curve curve) {
  curve.ShowLine = true;
  if (curve.kind == CurveKind::kData) {
    curve.ShowSymbol = curve.ShowError = true;
    curve.nSymbolSize = 2;
  } else {
    curve.nSymbolSize = curve.nSymbolShape = -1;
  }
  return curve;
}

void SetOrders(std::vector<ListedCurve>& list) {
  std::uint32_t order = 0;
  for (ListedCurve& listed : list) listed.curve.order = order++;
}

void Renumber(std::vector<ListedCurve>& list) {
  SetOrders(list);
  std::vector<Curve> curves;
  curves.reserve(list.size());
  for (const ListedCurve& listed : list) curves.push_back(listed.curve);
  AssignColors(curves);
  for (std::size_t i = 0; i < list.size(); ++i) list[i].curve.colorIndex = curves[i].colorIndex;
}

// The value that all selected curves share.
template <class Get>
auto Common(const GraphContents& contents, Get get) {
  std::optional<decltype(get(Curve()))> common;
  bool differ = false;
  for (const ListedCurve& listed : contents.chosen) {
    if (!listed.selected) continue;
    const auto value = get(listed.curve);
    differ = differ || (common && *common != value);
    common = value;
  }
  if (differ) common.reset();
  return common;
}

std::string TextOf(std::optional<double> number) { return number ? TextG(*number) : ""; }

template <class T>
void SetIfKnown(T& field, const std::optional<T>& value) {
  if (value) field = *value;
}

}  // namespace

GraphPropertiesForm PropertiesOf(const Graph& graph) {
  return {graph.name + texts::kPropertiesTitle, FormOf(graph.X), FormOf(graph.Y), graph.ShowFitted};
}

GraphEdit EditOf(const GraphPropertiesForm& form) { return {EditOf(form.X), EditOf(form.Y), form.ShowFitted}; }

GraphContents ContentsOf(const Graph& graph, const DatasetTable& datasets, const ParamTables& params) {
  GraphContents contents;
  contents.caption = graph.name + texts::kContentsTitle;
  contents.kinds.fill(true);
  contents.quantities.fill(true);
  for (const Curve& curve : graph.curves) contents.chosen.push_back({curve, false});
  std::stable_sort(contents.chosen.begin(), contents.chosen.end(),
                   [](const ListedCurve& a, const ListedCurve& b) { return a.curve.order < b.curve.order; });
  // Storing sorts the list. Without different orders, curves could change their painting order.
  SetOrders(contents.chosen);
  OfferCurves(contents, datasets, params);
  return contents;
}

void OfferCurves(GraphContents& contents, const DatasetTable& datasets, const ParamTables& params) {
  contents.available.clear();
  const auto isTicked = [&](CurveKind kind) { return contents.kinds[kind]; };
  const auto offer = [&](const Curve& curve) { contents.available.push_back({WithUsualLook(curve), false}); };
  const auto forEachDataset = [&](auto visit) {
    for (const Dataset& dataset : datasets.slots) {
      if (dataset.id != 0 && contents.quantities[dataset.Quantity]) visit(dataset);
    }
  };
  const auto forEachModel = [&](auto visit) {
    for (const Model& model : params.models) {
      if (model.number != 0) visit(model);
    }
  };
  const auto forEachQuantity = [&](auto visit) {
    for (const Quantity q : kEveryQuantity) {
      if (contents.quantities[q]) visit(q);
    }
  };

  if (isTicked(CurveKind::kData)) forEachDataset([&](const Dataset& dataset) { offer(DataCurve(dataset)); });
  if (isTicked(CurveKind::kModel)) {
    forEachModel([&](const Model& model) { forEachQuantity([&](Quantity q) { offer(ModelCurve(model, q)); }); });
  }
  if (isTicked(CurveKind::kChiSq)) {
    forEachDataset(
        [&](const Dataset& dataset) { forEachModel([&](const Model& model) { offer(ChiSqCurve(dataset, model)); }); });
  }
  if (isTicked(CurveKind::kMulti)) {
    forEachModel([&](const Model& model) {
      forEachQuantity([&](Quantity q) {
        if (HasRowContributions(q)) offer(MultiCurve(model, q));
      });
    });
  }
  if (isTicked(CurveKind::kFreq)) forEachModel([&](const Model& model) { offer(FreqCurve(model)); });
}

bool AllTicked(const EnumArray<CurveKind, bool>& kinds) {
  return std::all_of(kinds.begin(), kinds.end(), [](bool ticked) { return ticked; });
}
bool AllTicked(const PerQuantity<bool>& quantities) {
  return std::all_of(quantities.begin(), quantities.end(), [](bool ticked) { return ticked; });
}

void SelectAvailable(GraphContents& contents, std::size_t curve, bool selected) {
  if (curve < contents.available.size()) contents.available[curve].selected = selected;
}

void SelectChosen(GraphContents& contents, std::size_t curve, bool selected) {
  if (curve >= contents.chosen.size()) return;
  contents.chosen[curve].selected = selected;
  contents.look = LookOf(contents);
}

void MoveToGraph(GraphContents& contents) {
  Deselect(contents.chosen);
  for (const ListedCurve& listed : contents.available) {
    if (!listed.selected) continue;
    if (ListedCurve* const there = Find(contents.chosen, listed.curve)) {
      there->selected = true;
    } else {
      contents.chosen.push_back(listed);
    }
  }
  Renumber(contents.chosen);
  contents.look = LookOf(contents);
}

void MoveFromGraph(GraphContents& contents) {
  Deselect(contents.available);
  for (const ListedCurve& listed : contents.chosen) {
    if (!listed.selected) continue;
    if (ListedCurve* const there = Find(contents.available, listed.curve)) {
      there->selected = true;
    } else {
      contents.available.push_back(listed);
    }
  }
  std::erase_if(contents.chosen, [](const ListedCurve& listed) { return listed.selected; });
  Renumber(contents.chosen);
  contents.look = LookOf(contents);
}

CurveLook LookOf(const GraphContents& contents) {
  const auto isData = Common(contents, [](const Curve& c) { return c.kind == CurveKind::kData; });
  const auto isSelected = [](const ListedCurve& listed) { return listed.selected; };
  CurveLook look;
  look.any = std::any_of(contents.chosen.begin(), contents.chosen.end(), isSelected);
  look.allData = isData.value_or(false);
  look.nColor = Common(contents, [](const Curve& c) { return c.nColor; });
  look.line = Common(contents, [](const Curve& c) { return c.ShowLine; });
  look.error = Common(contents, [](const Curve& c) { return c.ShowError; });
  look.symbol = Common(contents, [](const Curve& c) { return c.ShowSymbol; });
  look.open = Common(contents, [](const Curve& c) { return c.SymbolOpen; });
  look.colorIndex = Common(contents, [](const Curve& c) { return c.colorIndex; });
  look.size = Common(contents, [](const Curve& c) { return c.nSymbolSize; });
  look.shape = Common(contents, [](const Curve& c) { return c.nSymbolShape; });
  look.scale = TextOf(Common(contents, [](const Curve& c) { return c.Scale; }));
  look.shift = TextOf(Common(contents, [](const Curve& c) { return c.Shift; }));
  return look;
}

void SetLook(GraphContents& contents, const CurveLook& look) {
  for (auto& [curve, selected] : contents.chosen) {
    if (!selected) continue;
    SetIfKnown(curve.nColor, look.nColor);
    if (!look.scale.empty()) curve.Scale = RealOf(look.scale);
    if (!look.shift.empty()) curve.Shift = RealOf(look.shift);
    if (curve.kind != CurveKind::kData) continue;
    SetIfKnown(curve.ShowLine, look.line);
    SetIfKnown(curve.ShowError, look.error);
    SetIfKnown(curve.ShowSymbol, look.symbol);
    SetIfKnown(curve.SymbolOpen, look.open);
    SetIfKnown(curve.nSymbolSize, look.size);
    SetIfKnown(curve.nSymbolShape, look.shape);
  }
  Renumber(contents.chosen);
  contents.look = look;
  contents.look.colorIndex = LookOf(contents).colorIndex;
}

std::vector<Curve> CurvesOf(const GraphContents& contents) {
  std::vector<Curve> curves;
  for (const ListedCurve& listed : contents.chosen) curves.push_back(listed.curve);
  std::stable_sort(curves.begin(), curves.end(), IsBuiltBefore);
  return curves;
}

}  // namespace kalvex
