// A model with one row at 300 cm-1, whose window is active.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>

#include "records/model_rows.h"
#include "windows/colours.h"
#include "windows/qt/on_screen.h"

namespace kalvex {

class ModelOnScreen : public OnScreen {
 protected:
  ModelOnScreen() {
    Run("NewModel(XPos=50,YPos=150,Width=330,Height=280);"
        "SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=300);");
    Activate(view());
  }
  // Waits until the window is active. The screen reports activations later, in the order of the requests.
  void Activate(QWidget& window) {
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    window.setFocus();
    Settle();
  }
  // Without a window manager no window is active after a dialog closes. The screen reports that up to 100 ms later.
  void ActivateAfterDialog() {
    QTest::qWait(150);
    Activate(view());
  }
  // Makes a second model. Its window lies over the first.
  Model& SecondModel() {
    Run("NewModel(XPos=420,YPos=150,Width=330,Height=280);");
    Activate(view(2));
    return ModelNo(2);
  }
  void AddRows(int count) {
    for (int row = 0; row < count; ++row) {
      InsertRow(ModelNo(1), RowCount(ModelNo(1)));
      kalvex::Cell(ModelNo(1), RowCount(ModelNo(1)) - 1, Wo).value = 400 + 100 * row;
    }
    Settle();
  }
  QWidget& view(std::uint32_t number = 1) { return *keeper.modelWidget(number); }
  QTableView& rows(std::uint32_t number = 1) { return *view(number).findChild<QTableView*>("rows"); }
  ModelWindow& window() { return desk.models.at(1); }
  ModelParam& param(int row, int column) { return kalvex::Cell(ModelNo(1), row, column); }

  void Press(Qt::Key key) {
    QWidget* const to = QApplication::focusWidget() ? QApplication::focusWidget() : keeper.modelWidget(1);
    if (to) QTest::keyClick(to, key);  // without a window the key is dropped
    Settle();
  }
  void Press(std::initializer_list<Qt::Key> keys) {
    for (const Qt::Key key : keys) Press(key);
  }
  void Click(const char* button) {
    auto* const found = Find<QAbstractButton>(button);
    ASSERT_NE(found, nullptr) << button;
    // A check box reacts only on its square and text, however wide it is.
    const bool check = qobject_cast<QCheckBox*>(found) != nullptr;
    QTest::mouseClick(found, Qt::LeftButton, {}, check ? QPoint(7, found->height() / 2) : QPoint());
    Settle();
  }
  QPoint Cell(int row, int column) { return rows().visualRect(rows().model()->index(row, column)).center(); }
  void ClickCell(int row, int column, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(rows().viewport(), button, {}, Cell(row, column));
    Settle();
  }
  void DoubleClickCell(int row, int column) {
    QTest::mouseDClick(rows().viewport(), Qt::LeftButton, {}, Cell(row, column));
    Settle();
  }
  QVariant Look(int row, int column, int role) { return rows().model()->index(row, column).data(role); }
  std::string Shown(int row, int column) { return Look(row, column, Qt::DisplayRole).toString().toStdString(); }
  // The open editor; null if none is open.
  QLineEdit* Editor() { return Find<QLineEdit>("editor"); }

  // Answers the next file dialog. Its title is appended to `asked`.
  void AnswerFileDialog(const QString& file) {
    QTimer::singleShot(50, qApp, [this, file] {
      auto* const dialog = Find<QFileDialog>("file");
      ASSERT_NE(dialog, nullptr);
      asked = dialog->windowTitle().toStdString();
      auto* const name = dialog->findChild<QLineEdit*>("fileNameEdit");
      name->setText(QDir::current().filePath(file));
      QTest::keyClick(name, Qt::Key_Return);
    });
  }
  std::string asked;
};

}  // namespace kalvex
