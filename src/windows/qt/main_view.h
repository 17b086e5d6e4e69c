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
  void moveEvent(QMoveEvent*) override;
  void resizeEvent(QResizeEvent*) override;

 private:
  void AddCommand(QAction* action, int command);
  void ShowAbout();
  QRect PlaceInRecord() const;
  // The record follows the user's hand.
  void NotePlace();

  Keeper& keeper_;
  std::multimap<int, QAction*> actions_;
  bool aboutShown_ = false;
  QRect placed_;  // by the record as it was last followed; the system chooses the first place
};

}  // namespace kalvex
