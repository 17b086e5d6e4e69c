// The field in which a person types a parameter's value. It covers the cell that shows the value.
#pragma once

#include <QLineEdit>
#include <functional>

#include "windows/cell_editor.h"

namespace kalvex {

class EditorField : public QLineEdit {
 public:
  // record returns the editor to show; null if it does not exist any more. press receives each key first and returns
  // whether it used the key; other keys go to the field.
  EditorField(QWidget* window, std::function<CellEditor*()> record, std::function<bool(const QKeyEvent&)> press);

  // Shows the field over `place` and gives it the focus if the editor is open; hides it otherwise.
  void Refresh(const CellEditor& editor, const QRect& place);

 protected:
  void keyPressEvent(QKeyEvent*) override;
  bool focusNextPrevChild(bool) override { return false; }  // the window uses Tab

 private:
  void TakeTyped();

  std::function<CellEditor*()> record_;
  std::function<bool(const QKeyEvent&)> press_;
};

}  // namespace kalvex
