// The main window: menu and toolbar.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <map>
#include <optional>

class QMessageBox;
class QToolBar;

namespace kalvex {

class Keeper;

class MainView : public QMainWindow {
 public:
  explicit MainView(Keeper& keeper);
  void Refresh();
  // The button or entry of a command; null if there is none.
  QAction* actionOf(int command) const;

 protected:
  void changeEvent(QEvent*) override;
  void closeEvent(QCloseEvent*) override;
  void moveEvent(QMoveEvent*) override;
  void resizeEvent(QResizeEvent*) override;

 private:
  void AddCommand(QAction* action, int command);
  // In colours that are seen on the ground of the toolbar.
  void DrawIcons();
  void ShowAbout();
  QRect PlaceInRecord() const;
  void FollowRecord();
  // The record follows the user's hand.
  void NotePlace();

  Keeper& keeper_;
  QToolBar* bar_ = nullptr;
  std::multimap<int, QAction*> actions_;
  QPointer<QMessageBox> about_;
  std::optional<QPoint> asked_;  // where a macro wants the window, until that is sure
  QRect placed_;                 // by the record as it was last followed; the system chooses the first place
};

}  // namespace kalvex
