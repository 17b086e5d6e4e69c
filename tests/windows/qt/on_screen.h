// A program with real windows, controlled by keys and mouse.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <functional>

#include "graphs/graph_table.h"
#include "macro/run_macro.h"
#include "records/model_table.h"
#include "support/open_session.h"
#include "support/scratch_folder.h"
#include "windows/qt/keeper.h"
#include "windows/qt/qt_platform.h"

namespace kalvex {

class OnScreen : public testing::Test {
 protected:
  // threads: number of threads for computing.
  explicit OnScreen(int threads = 1) : inside(folder.Name()), session(headless, threads, Defaults::kFormer) {
    session.UsePlatform(platform);
  }
  ~OnScreen() override {
    session.UsePlatform(headless);
    // After a quit the toolkit refuses all further event loops, including those of dialogs, until its main loop has run
    // once more.
    QTimer::singleShot(0, [] { QCoreApplication::exit(); });
    QCoreApplication::exec();
  }

  // Runs a macro and updates the windows.
  int Run(const std::string& text) {
    folder.Write("m.kvs", text);
    const int result = RunMacro(desk, "m.kvs");
    Settle();
    return result;
  }
  void Settle() {
    keeper.Reconcile();
    QCoreApplication::processEvents();
    keeper.Reconcile();
  }
  Graph& GraphNo(std::uint32_t number) { return *GetGraphByNumber(graphs, number); }
  Model& ModelNo(std::uint32_t number) { return *GetModelByNumber(params, number); }
  // A visible widget by type and object name, anywhere on the screen; null if there is none.
  template <class Widget>
  static Widget* Find(const QString& name) {
    for (QWidget* const widget : QApplication::allWidgets()) {
      auto* const found = qobject_cast<Widget*>(widget);
      if (found && found->objectName() == name && found->isVisible()) return found;
    }
    return nullptr;
  }

  // Clicks a button, or the square of a check box.
  void Press(const char* name) {
    auto* const button = Find<QAbstractButton>(name);
    ASSERT_NE(button, nullptr) << name;
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    Settle();
  }
  // Calls a function as soon as a dialog runs its own event loop.
  static void Meanwhile(std::function<void()> act) { QTimer::singleShot(50, qApp, std::move(act)); }

  // Replaces the contents of a field by typing.
  void Type(const char* field, const char* text) {
    auto* const edit = Find<QLineEdit>(field);
    edit->selectAll();
    QTest::keyClicks(edit, text);
  }
  std::string FieldText(const char* field) { return Find<QLineEdit>(field)->text().toStdString(); }
  // Clicks a row of a list.
  void Click(QTreeWidget& of, int row, Qt::KeyboardModifiers keys = Qt::NoModifier) {
    QTest::mouseClick(of.viewport(), Qt::LeftButton, keys, of.visualItemRect(of.topLevelItem(row)).center());
    Settle();
  }

  ScratchFolder folder;
  InFolder inside;
  HeadlessPlatform headless;
  Session session;
  ParamTables& params = SessionAccess::Tables(session).params;
  DatasetTable& datasets = SessionAccess::Tables(session).datasets;
  FitState& fit = SessionAccess::Tables(session).fit;
  GraphTable& graphs = SessionAccess::Tables(session).graphs;
  EvalContext& eval = SessionAccess::Eval(session);
  Desk desk{session};
  Keeper keeper{desk};
  QtPlatform platform{keeper};
};

}  // namespace kalvex
