// The window of the experimental parameters.
#pragma once

#include <QLabel>
#include <QWidget>
#include <array>
#include <optional>

#include "core/limits.h"

namespace kalvex {

class EditorField;
class Keeper;

class ExpParamsView : public QWidget {
 public:
  explicit ExpParamsView(Keeper& keeper);

  // Shows the parameters as they are now.
  void Refresh();

 protected:
  void keyPressEvent(QKeyEvent*) override;
  void mousePressEvent(QMouseEvent*) override;
  void mouseDoubleClickEvent(QMouseEvent*) override;
  void moveEvent(QMoveEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  void closeEvent(QCloseEvent*) override;
  void changeEvent(QEvent*) override;
  bool focusNextPrevChild(bool) override { return false; }  // Tab moves the cursor

 private:
  void LayOut();
  bool Press(const QKeyEvent& event);
  // The value under the mouse.
  std::optional<int> IndexAt(const QMouseEvent& event) const;

  Keeper& keeper_;
  std::array<QLabel*, kExpParamCount> labels_;
  std::array<QLabel*, kExpParamCount> values_;
  EditorField* editor_;
};

}  // namespace kalvex
