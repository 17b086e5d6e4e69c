// The window of the experimental parameters.
#pragma once

#include <QLabel>
#include <array>
#include <optional>

#include "records/model.h"
#include "windows/qt/single_view.h"

namespace kalvex {

class EditorField;

class ExpParamsView : public SingleView {
 public:
  explicit ExpParamsView(Keeper& keeper);

  // Shows the present parameters.
  void Refresh();

 protected:
  void keyPressEvent(QKeyEvent*) override;
  void mousePressEvent(QMouseEvent*) override;
  void mouseDoubleClickEvent(QMouseEvent*) override;
  void changeEvent(QEvent*) override;
  bool focusNextPrevChild(bool) override { return false; }  // Tab moves the cursor

 private:
  void LayOut();
  bool Press(const QKeyEvent& event);
  // The index of the value under the mouse; nothing if there is none.
  std::optional<int> IndexAt(const QMouseEvent& event) const;

  std::array<QLabel*, kExpParamCount> labels_;
  std::array<QLabel*, kExpParamCount> values_;
  EditorField* editor_;
};

}  // namespace kalvex
