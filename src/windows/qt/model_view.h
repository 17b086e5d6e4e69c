// The window of a model: the leading parameter, the table of its rows, its buttons and the panel of the variational
// dielectric function.
#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <map>

#include "windows/qt/shown_model.h"

namespace kalvex {

class EditorField;
class RowsTable;
class VdfDialogView;
class VdfPanel;

class ModelView : public QWidget {
 public:
  ModelView(Keeper& keeper, std::uint32_t number);

  // Shows the present state of the model.
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
  QLayout* TopRow();
  QPushButton* AddButton(const char* text, const char* objectName, ModelButton button);
  bool Press(const QKeyEvent& event);
  void NotePlace();
  bool IsOnEpsInf(const QMouseEvent& event) const;
  void RefreshControls(const Model& model);
  void RefreshEditor();
  void ShowPlace(const ModelWindow& record);
  void ShowDialog();

  ShownModel shown_;
  QGroupBox* einfGroup_;
  QLabel* epsInf_;
  QGroupBox* rowsGroup_;
  RowsTable* rows_;
  VdfPanel* vdf_;
  EditorField* editor_;
  std::map<ModelButton, QPushButton*> buttons_;
  VdfDialogView* dialog_ = nullptr;
};

}  // namespace kalvex
