// A magnified view of a curve's symbol.
#pragma once

#include <QWidget>

#include "windows/graph_dialogs.h"

namespace kalvex {

class SymbolView : public QWidget {
 public:
  SymbolView();
  // Empty if the curves have different symbols.
  void Show(const CurveLook& look);

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  Curve curve_;
};

}  // namespace kalvex
