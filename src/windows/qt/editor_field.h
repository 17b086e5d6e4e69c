// The field in which a person types a parameter's value, laid over the field that shows it.
#pragma once

#include <QLineEdit>
#include <functional>

#include "windows/cell_editor.h"

namespace kalvex {

class EditorField : public QLineEdit {
 public:
  // record gives the editor that this field fills, null if there is none any more. press is asked first about each key,
  // and takes it or leaves it to the field.
  EditorField(QWidget* window, std::function<CellEditor*()> record, std::function<bool(const QKeyEvent&)> press);

  // Shows the record over a place of the window, if it is open, and takes the keys; hides otherwise.
  void Refresh(const CellEditor& editor, const QRect& place);

 protected:
  void keyPressEvent(QKeyEvent*) override;
  bool focusNextPrevChild(bool) override { return false; }  // Tab is a key of the window

 private:
  void TakeTyped();

  std::function<CellEditor*()> record_;
  std::function<bool(const QKeyEvent&)> press_;
};

}  // namespace kalvex
