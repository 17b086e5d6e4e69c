// The main window: menu and toolbar.
#pragma once

#include <QMainWindow>
#include <map>

namespace kalvex {

class Keeper;

class MainView : public QMainWindow {
 public:
  explicit MainView(Keeper& keeper);
  void Refresh();
  // The button or entry of a command; null if there is none.
  QAction* actionOf(int command) const;

 protected:
  void closeEvent(QCloseEvent*) override;

 private:
  void AddCommand(QAction* action, int command);
  void ShowAbout();

  Keeper& keeper_;
  std::multimap<int, QAction*> actions_;
  bool aboutShown_ = false;
};

}  // namespace kalvex
