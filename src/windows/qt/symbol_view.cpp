#include "windows/qt/symbol_view.h"

#include <QPainter>

#include "graphs/strokes.h"

namespace kalvex {
namespace {

constexpr int kMagnified = 2;  // size of a pixel of the graph
constexpr int kSide = 2 * 21;  // the largest symbol and a margin

Curve CurveOf(const CurveLook& look) {
  constexpr int kBlackRow = 1;
  Curve curve;
  curve.ShowSymbol = look.allData && look.symbol.value_or(false);
  curve.SymbolOpen = look.open.value_or(false);
  curve.nSymbolSize = look.size.value_or(-1);
  curve.nSymbolShape = look.shape.value_or(-1);
  curve.colorIndex = look.colorIndex.value_or(kBlackRow);
  return curve;
}

bool LooksAlike(const Curve& a, const Curve& b) {
  return a.ShowSymbol == b.ShowSymbol && a.SymbolOpen == b.SymbolOpen && a.nSymbolSize == b.nSymbolSize &&
         a.nSymbolShape == b.nSymbolShape && a.colorIndex == b.colorIndex;
}

// Rows of the symbol are counted upwards from its middle.
void PaintRows(QPainter& painter, int column, int first, int last, const QColor& color) {
  constexpr int kMiddle = kSide / kMagnified / 2;
  painter.fillRect(kMagnified * (kMiddle + column), kMagnified * (kMiddle - last), kMagnified,
                   kMagnified * (last - first + 1), color);
}

}  // namespace

SymbolView::SymbolView() { setFixedSize(kSide, kSide); }

void SymbolView::Show(const CurveLook& look) {
  const Curve curve = CurveOf(look);
  if (LooksAlike(curve, curve_)) return;
  curve_ = curve;
  update();
}

void SymbolView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);  // the background of a graph
  painter.setPen(Qt::gray);
  painter.drawRect(0, 0, kSide - 1, kSide - 1);
  const int size = SymbolSizeOf(curve_);
  if (size == 0) return;
  const QColor color = QColor::fromRgb(ColorOf(curve_).rgb | 0xFF000000u);
  int distance = 0;
  for (const SymbolColumn& column : SymbolColumns(static_cast<SymbolShape>(curve_.nSymbolShape), size)) {
    for (const int side : {-distance, distance}) {
      PaintRows(painter, side, column.first, column.last, color);
      if (curve_.SymbolOpen && column.HasHole()) {
        PaintRows(painter, side, column.holeFirst, column.holeLast, Qt::white);
      }
    }
    ++distance;
  }
}

}  // namespace kalvex
